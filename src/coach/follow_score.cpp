#include "coach/follow_score.h"

#include <algorithm>
#include <cmath>

#include "support/numeric.h"

namespace sodam {

namespace FollowScore {

namespace {

struct JointInfo {
  std::string_view name;
  double minRange;
  double weight;
  bool arm;
};

constexpr std::array<JointInfo, jointCount> info{{
    {"neckSide", 8, 1, false},
    {"headTurn", 15, 1, false},
    {"neckFlex", 10, 1, false},
    {"headForward", 0.5, 1, false},
    {"shrugL", 0.8, 0.7, false},
    {"shrugR", 0.8, 0.7, false},
    {"spineSide", 8, 0.5, false},
    {"spineFlex", 12, 0.5, false},
    {"armL", 40, 1, true},
    {"armR", 40, 1, true},
}};

const JointInfo& of(Joint joint) {
  return info[static_cast<std::size_t>(joint)];
}

// The user may trail the figure by up to the last of these without penalty.
constexpr std::array<double, 3> lagsSeconds{0, 0.35, 0.7};
// A miss of four fifths of the joint's own travel scores nothing.
constexpr double missFactor = 1.25;

double scoreAt(const Pose& pose, const Pose& demo, const std::vector<Used>& used,
               JointSet measured) {
  double sum = 0;
  double weights = 0;
  for (const auto& u : used) {
    if (!measured.contains(u.joint)) continue;
    const double diff = difference(u.joint, value(pose, u.joint), value(demo, u.joint));
    sum += weight(u.joint) * clamp(1 - missFactor * std::abs(diff) / u.range, 0, 1);
    weights += weight(u.joint);
  }
  return weights > 0 ? sum / weights : 0;
}

}  // namespace

const std::array<Joint, jointCount>& allJoints() {
  static constexpr std::array<Joint, jointCount> joints{
      Joint::neckSide, Joint::headTurn,  Joint::neckFlex,  Joint::headForward, Joint::shrugL,
      Joint::shrugR,   Joint::spineSide, Joint::spineFlex, Joint::armL,        Joint::armR};
  return joints;
}

double minRange(Joint joint) {
  return of(joint).minRange;
}
double weight(Joint joint) {
  return of(joint).weight;
}
bool isArm(Joint joint) {
  return of(joint).arm;
}
std::string_view name(Joint joint) {
  return of(joint).name;
}

double value(const Pose& pose, Joint joint) {
  switch (joint) {
    case Joint::neckSide:
      return pose.neckSide;
    case Joint::headTurn:
      return pose.headTurn;
    case Joint::neckFlex:
      return pose.neckFlex;
    case Joint::headForward:
      return pose.headForward;
    case Joint::shrugL:
      return pose.shrugL;
    case Joint::shrugR:
      return pose.shrugR;
    case Joint::spineSide:
      return pose.spineSide;
    case Joint::spineFlex:
      return pose.spineFlex;
    case Joint::armL:
      return pose.armL.upper;
    case Joint::armR:
      return pose.armR.upper;
  }
  return 0;
}

void setValue(Pose& pose, Joint joint, double v) {
  switch (joint) {
    case Joint::neckSide:
      pose.neckSide = v;
      break;
    case Joint::headTurn:
      pose.headTurn = v;
      break;
    case Joint::neckFlex:
      pose.neckFlex = v;
      break;
    case Joint::headForward:
      pose.headForward = v;
      break;
    case Joint::shrugL:
      pose.shrugL = v;
      break;
    case Joint::shrugR:
      pose.shrugR = v;
      break;
    case Joint::spineSide:
      pose.spineSide = v;
      break;
    case Joint::spineFlex:
      pose.spineFlex = v;
      break;
    case Joint::armL:
      pose.armL.upper = v;
      break;
    case Joint::armR:
      pose.armR.upper = v;
      break;
  }
}

JointSet::JointSet(std::initializer_list<Joint> joints) {
  for (Joint j : joints)
    insert(j);
}

JointSet JointSet::intersect(JointSet other) const {
  JointSet both;
  both.bits_ = bits_ & other.bits_;
  return both;
}

JointSet readable(Stage stage) {
  if (stage == Stage::side) {
    return {Joint::neckFlex, Joint::headForward, Joint::spineFlex, Joint::armL, Joint::armR};
  }
  return {Joint::neckSide, Joint::headTurn,  Joint::neckFlex, Joint::headForward, Joint::shrugL,
          Joint::shrugR,   Joint::spineSide, Joint::armL,     Joint::armR};
}

std::vector<Used> joints(const Motion& motion) {
  std::vector<Used> used;
  if (motion.keys.empty()) return used;
  for (Joint joint : allJoints()) {
    double low = value(motion.keys.front().pose, joint);
    double high = low;
    for (const auto& key : motion.keys) {
      low = std::min(low, value(key.pose, joint));
      high = std::max(high, value(key.pose, joint));
    }
    if (high - low >= minRange(joint)) used.push_back({joint, high - low});
  }
  return used;
}

JointSet jointSet(const Motion& motion) {
  JointSet set;
  for (const auto& u : joints(motion))
    set.insert(u.joint);
  return set;
}

std::optional<double> score(const Pose& pose, const Motion& motion, double seconds,
                            JointSet measured) {
  return score(pose, motion, seconds, measured, joints(motion));
}

std::optional<double> score(const Pose& pose, const Motion& motion, double seconds,
                            JointSet measured, const std::vector<Used>& used) {
  const bool any = std::any_of(used.begin(), used.end(),
                               [&](const Used& u) { return measured.contains(u.joint); });
  if (!any) return std::nullopt;
  double best = 0;
  for (double lag : lagsSeconds) {
    const Pose demo = motion.pose(std::max(seconds - lag, 0.0)).pose;
    best = std::max(best, scoreAt(pose, demo, used, measured));
  }
  return best;
}

bool tracksAnything(const Motion& motion, Stage stage) {
  return !jointSet(motion).intersect(readable(stage)).empty();
}

double difference(Joint joint, double a, double b) {
  double diff = a - b;
  if (!isArm(joint)) return diff;
  diff = std::fmod(diff, 360.0);
  if (diff > 180) diff -= 360;
  if (diff <= -180) diff += 360;
  return diff;
}

}  // namespace FollowScore

}  // namespace sodam
