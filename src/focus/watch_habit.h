#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace sodam {

// A habit the focus watcher spots while the user studies. The raw value is
// the case's name, which presets and the records' habit counts store.
class WatchHabit {
 public:
  enum Value : int { phone, drowsy, chinRest, mouth, away, posture };
  static constexpr int count = 6;

  constexpr WatchHabit(Value value) : value_(value) {}
  constexpr operator Value() const { return value_; }
  static std::optional<WatchHabit> fromRaw(std::string_view raw);
  // The habits a preset may choose; posture has a switch of its own there.
  static const std::array<WatchHabit, 5>& pickable();
  bool isPickable() const;

  std::string_view raw() const;
  std::string_view title() const;
  // What the pill says when the habit is caught.
  std::string_view say() const;

 private:
  Value value_;
};

}  // namespace sodam
