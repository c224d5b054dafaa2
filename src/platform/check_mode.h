#pragma once

#include <optional>
#include <string_view>

namespace sodam {

// The rhythm of the checks: a look now and then, or a camera kept on.
// Stored as its raw value.
class CheckMode {
 public:
  enum Value : int { interval = 0, live = 1 };

  constexpr CheckMode(Value value = interval) : value_(value) {}
  static constexpr std::optional<CheckMode> fromRaw(int raw) {
    if (raw == interval) return CheckMode(interval);
    if (raw == live) return CheckMode(live);
    return std::nullopt;
  }
  constexpr operator Value() const { return value_; }
  constexpr int raw() const { return value_; }

  constexpr std::string_view title() const { return value_ == interval ? "가볍게" : "실시간"; }

 private:
  Value value_;
};

}  // namespace sodam
