#pragma once

#include <optional>
#include <string_view>

namespace sodam {

// The word by which a member's situation travels to the study group; its
// raw value is the case's name.
class MateState {
 public:
  enum Value : int { focus, desk, away, phone, turtle, slouch, drowsy, stretch, offline };

  constexpr MateState(Value value) : value_(value) {}
  constexpr operator Value() const { return value_; }
  // An unknown word reads as offline, as a member whose state can't be read.
  static MateState fromRaw(std::string_view raw);

  std::string_view raw() const;
  std::string_view title() const;
  std::string_view symbol() const;

 private:
  Value value_;
};

}  // namespace sodam
