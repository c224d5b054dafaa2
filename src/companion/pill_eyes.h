#pragma once

#include <string_view>

#include "companion/pill_look.h"
#include "support/date.h"

namespace sodam {

// The companion's drawn pair of eyes: the mood's shape in the look's colour.
// They blink now and then from `start` unless `still`, and follow the user's
// face when `follow`.
struct PillEyes {
  enum class Mood {
    looking,
    focus,
    happy,
    curious,
    sleepy,
    love,
    sleep,
    wink,
    surprised,
    dizzy,
    pout,
  };

  static constexpr std::string_view name(Mood mood) {
    switch (mood) {
      case Mood::looking:
        return "looking";
      case Mood::focus:
        return "focus";
      case Mood::happy:
        return "happy";
      case Mood::curious:
        return "curious";
      case Mood::sleepy:
        return "sleepy";
      case Mood::love:
        return "love";
      case Mood::sleep:
        return "sleep";
      case Mood::wink:
        return "wink";
      case Mood::surprised:
        return "surprised";
      case Mood::dizzy:
        return "dizzy";
      case Mood::pout:
        return "pout";
    }
    return "looking";
  }

  Mood mood = Mood::looking;
  Date start;
  bool still = false;
  PillEyeColor color = PillEyeColor::sky;
  bool follow = false;

  bool operator==(const PillEyes&) const = default;
};

}  // namespace sodam
