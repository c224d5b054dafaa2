#pragma once

#include <optional>
#include <string_view>

namespace sodam {

// How an alert shows on the screen. Stored as its raw value.
class AlertStyle {
 public:
  enum Value : int { border = 0, blur = 1 };

  constexpr AlertStyle(Value value = border) : value_(value) {}
  static constexpr std::optional<AlertStyle> fromRaw(int raw) {
    if (raw == border) return AlertStyle(border);
    if (raw == blur) return AlertStyle(blur);
    return std::nullopt;
  }
  constexpr operator Value() const { return value_; }
  constexpr int raw() const { return value_; }

  constexpr std::string_view title() const {
    return value_ == border ? "빨간 테두리 깜빡임" : "화면 흐리게";
  }

 private:
  Value value_;
};

}  // namespace sodam
