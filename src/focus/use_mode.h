#pragma once

#include <optional>
#include <string_view>

namespace sodam {

// How the user works with a focus preset: at the laptop with the posture
// checks, or studying away from the screen with the focus watcher. The raw
// value is the case's name, which presets and records store.
class UseMode {
 public:
  enum Value : int { laptop, watch };

  constexpr UseMode(Value value) : value_(value) {}
  constexpr operator Value() const { return value_; }
  static std::optional<UseMode> fromRaw(std::string_view raw);

  std::string_view raw() const;
  std::string_view shortTitle() const;
  std::string_view detail() const;
  std::string_view symbol() const;

 private:
  Value value_;
};

}  // namespace sodam
