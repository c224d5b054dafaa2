#include "coach/rep_goal.h"

#include <cmath>

namespace sodam {

namespace {
// Arms travel far with little effort, so their travel counts for less.
constexpr double armPreference = 0.4;
}  // namespace

std::optional<RepGoal> RepGoal::of(const Motion& motion, Stage stage) {
  using namespace FollowScore;
  const JointSet canRead = readable(stage);
  std::optional<Used> chosen;
  double best = 0;
  for (const auto& used : joints(motion)) {
    if (!canRead.contains(used.joint)) continue;
    const double strength =
        used.range / minRange(used.joint) * (isArm(used.joint) ? armPreference : 1);
    if (!chosen || strength > best) {
      chosen = used;
      best = strength;
    }
  }
  if (!chosen) return std::nullopt;

  const double first = value(motion.keys.front().pose, chosen->joint);
  double amplitude = 0;
  for (const auto& key : motion.keys) {
    const double offset = value(key.pose, chosen->joint) - first;
    if (std::abs(offset) > std::abs(amplitude)) amplitude = offset;
  }
  if (amplitude == 0) return std::nullopt;

  auto share = [&](const Key& key) { return (value(key.pose, chosen->joint) - first) / amplitude; };
  bool high = share(motion.keys.back()) >= armedShare;
  int count = 0;
  for (const auto& key : motion.keys) {
    const double n = share(key);
    if (high && n <= releasedShare) {
      high = false;
    } else if (!high && n >= armedShare) {
      high = true;
      ++count;
    }
  }
  return RepGoal{chosen->joint, amplitude, std::max(count, 1)};
}

}  // namespace sodam
