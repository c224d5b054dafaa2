#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "coach/pose.h"

namespace sodam {

// One key pose of a motion: reached in `move` seconds from the key before,
// then held for `hold` seconds, with the line shown while it is current.
struct Key {
  Pose pose;
  double move = 0;
  double hold = 0;
  std::optional<std::string> cue;

  bool operator==(const Key&) const = default;
};

// A closed loop of key poses that the figure plays and the user imitates:
// the key before the first is the last.
struct Motion {
  // The pose and the line of one moment; `cue` points into the motion's keys
  // and lives as long as the motion.
  struct Moment {
    Pose pose;
    const std::string* cue = nullptr;
  };

  std::vector<Key> keys;

  // The sum of every key's move and hold; 0 without keys.
  double duration() const;
  // The moment `seconds` into the loop; negative times play it backwards
  // from the end. A key's line shows from the start of its move.
  Moment pose(double seconds) const;
  // The same motion for the other side: sideways angles negated, the two
  // shoulders and the two arms exchanged, the lines' sides swapped.
  Motion mirrored() const;

  bool operator==(const Motion&) const = default;
};

namespace Sidedness {
// Exchanges every "오른" with "왼" and back.
std::string swap(std::string_view text);
}  // namespace Sidedness

}  // namespace sodam
