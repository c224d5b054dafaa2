#pragma once

#include <optional>

#include "coach/follow_score.h"

namespace sodam {

// The one joint that best shows a repetition of a motion, its signed travel
// from the first key to the peak, and the repetitions in one loop. A
// repetition is a crossing of half the travel after a fall to a quarter.
struct RepGoal {
  static constexpr double armedShare = 0.5;
  static constexpr double releasedShare = 0.25;

  FollowScore::Joint joint = FollowScore::Joint::neckSide;
  double amplitude = 0;
  int perCycle = 1;

  // Nothing when the stage can read none of the motion's joints.
  static std::optional<RepGoal> of(const Motion& motion, Stage stage);

  bool operator==(const RepGoal&) const = default;
};

}  // namespace sodam
