#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "health/habit.h"

namespace sodam {

// The rule tree of the consult: where it hurts, on which side, how it
// feels and when it is worse, read with the user's habits, give possible
// causes, stretches to try, everyday tips and the signs that call for a
// doctor. Fixed texts, no state, no language model: it always answers.
struct Consult {
  // Each case's raw value is also its id and its title.
  enum class Area { neckBack, neckSide, blades, lowBack, head, eyes, wrist, jaw };
  enum class Side { left, right, both };
  enum class Feeling { stiff, tingle, ache };
  enum class When { sitting, morning, moving, always };

  struct Answer {
    std::vector<std::string> causes;
    std::vector<std::string> stretches;  // stretch ids
    std::vector<std::string> tips;
    std::vector<std::string> warnings;
    bool operator==(const Answer&) const = default;
  };

  static const std::vector<Area>& areas();
  static const std::vector<Side>& sides();
  static const std::vector<Feeling>& feelings();
  static const std::vector<When>& whens();

  static std::string_view raw(Area area);
  static std::string_view raw(Side side);
  static std::string_view raw(Feeling feeling);
  static std::string_view raw(When when);
  // The case names: "neckBack", "left", "stiff", "sitting".
  static std::string_view name(Area area);
  static std::string_view name(Side side);
  static std::string_view name(Feeling feeling);
  static std::string_view name(When when);
  // The small line under a feeling's choice.
  static std::string_view detail(Feeling feeling);
  static bool asksSide(Area area);

  // `side` only where the area asks for one.
  static Answer answer(Area area, std::optional<Side> side, Feeling feeling, When when,
                       const HabitReport& report);
};

}  // namespace sodam
