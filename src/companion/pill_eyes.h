#pragma once

#include <string_view>

namespace sodam {

// The companion's drawn pair of eyes. For now it carries only the moods the
// pills ask for; the drawing state (start, still, colour, follow) joins it
// with the companion's looks.
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
};

}  // namespace sodam
