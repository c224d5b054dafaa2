#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "coach/motion.h"
#include "coach/stretch.h"

namespace sodam {

// How well the user follows the figure: the joints a motion uses, a live
// match value, and whether the camera can follow the motion at all. Pure
// functions.
namespace FollowScore {

// A joint the mirror can read, in the table's order.
enum class Joint : std::uint8_t {
  neckSide,
  headTurn,
  neckFlex,
  headForward,
  shrugL,
  shrugR,
  spineSide,
  spineFlex,
  armL,
  armR,
};
inline constexpr std::size_t jointCount = 10;
const std::array<Joint, jointCount>& allJoints();

// A joint's travel over a motion below which the motion does not use it.
double minRange(Joint joint);
// How far its reading is trusted: shoulders and trunk less than head and arms.
double weight(Joint joint);
bool isArm(Joint joint);
std::string_view name(Joint joint);
// The joint's value in a pose; an arm is its upper arm.
double value(const Pose& pose, Joint joint);
void setValue(Pose& pose, Joint joint, double value);

// A small set of joints, without allocation.
class JointSet {
 public:
  JointSet() = default;
  JointSet(std::initializer_list<Joint> joints);
  void insert(Joint joint) { bits_ |= bit(joint); }
  void erase(Joint joint) { bits_ &= static_cast<std::uint16_t>(~bit(joint)); }
  bool contains(Joint joint) const { return (bits_ & bit(joint)) != 0; }
  bool empty() const { return bits_ == 0; }
  JointSet intersect(JointSet other) const;
  bool operator==(const JointSet&) const = default;

 private:
  static std::uint16_t bit(Joint joint) {
    return static_cast<std::uint16_t>(1u << static_cast<unsigned>(joint));
  }
  std::uint16_t bits_ = 0;
};

// The joints a stage lets the camera read.
JointSet readable(Stage stage);

struct Used {
  Joint joint;
  double range = 0;  // greatest minus smallest value over the keys
  bool operator==(const Used&) const = default;
};
// The joints the motion moves by at least their minRange, in table order.
std::vector<Used> joints(const Motion& motion);
JointSet jointSet(const Motion& motion);

// 0 to 1: the best of the user's match with the figure now, 0.35 and 0.7
// seconds ago, over the used joints that were measured. Nothing when no used
// joint was measured, which is not a bad score.
std::optional<double> score(const Pose& pose, const Motion& motion, double seconds,
                            JointSet measured);
// The same with the motion's used joints already at hand, for a caller that
// scores every tick.
std::optional<double> score(const Pose& pose, const Motion& motion, double seconds,
                            JointSet measured, const std::vector<Used>& used);
// Whether the camera can follow the motion on this stage.
bool tracksAnything(const Motion& motion, Stage stage);

// The difference of two readings of a joint; arms wrap to -180..180.
double difference(Joint joint, double a, double b);

}  // namespace FollowScore

}  // namespace sodam
