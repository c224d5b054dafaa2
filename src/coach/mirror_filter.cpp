#include "coach/mirror_filter.h"

#include <cmath>
#include <numbers>

#include "support/numeric.h"

namespace sodam {

namespace {

using Part = MirrorFilter::Part;
using Joint = FollowScore::Joint;

struct PartInfo {
  Joint joint;
  double jump;  // a step beyond this is a suspect
  double unit;  // the scale of the joint's speed
  double minCutoff;
};

constexpr std::array<PartInfo, MirrorFilter::partCount> parts{{
    {Joint::spineSide, 16, 1, 0.8},
    {Joint::spineFlex, 16, 1, 0.8},
    {Joint::neckSide, 28, 1, 0.8},
    {Joint::neckFlex, 28, 1, 0.8},
    {Joint::headForward, 0.9, 1.0 / 30, 0.8},
    {Joint::headTurn, 28, 1, 0.8},
    {Joint::shrugL, 0.9, 1.0 / 30, 0.8},
    {Joint::shrugR, 0.9, 1.0 / 30, 0.8},
    {Joint::armL, 70, 1, 1.1},
    {Joint::armL, 70, 1, 1.1},
    {Joint::armR, 70, 1, 1.1},
    {Joint::armR, 70, 1, 1.1},
}};

constexpr double firstFrameSeconds = 0.066;
constexpr double shortestStep = 0.016;
constexpr double longestStep = 0.25;
// Three agreeing frames make a jump real.
constexpr int confirmingFrames = 3;
// An unmeasured joint is held this long, then fades with this time constant.
constexpr double holdUnseenSeconds = 1;
constexpr double fadeSeconds = 0.6;
constexpr double speedCutoffHz = 1.0;
constexpr double speedGain = 0.018;

bool isAngle(Part part) {
  return part >= Part::armLUpper;
}

// The pose's field of a part, writable when the pose is.
template <typename P>
auto& field(P& p, Part part) {
  switch (part) {
    case Part::spineSide:
      return p.spineSide;
    case Part::spineFlex:
      return p.spineFlex;
    case Part::neckSide:
      return p.neckSide;
    case Part::neckFlex:
      return p.neckFlex;
    case Part::headForward:
      return p.headForward;
    case Part::headTurn:
      return p.headTurn;
    case Part::shrugL:
      return p.shrugL;
    case Part::shrugR:
      return p.shrugR;
    case Part::armLUpper:
      return p.armL.upper;
    case Part::armLFore:
      return p.armL.fore;
    case Part::armRUpper:
      return p.armR.upper;
    case Part::armRFore:
      return p.armR.fore;
  }
  return p.spineSide;
}

// The difference moved by whole turns into -180..180, as angles on a circle.
double wrapped(double difference) {
  double d = std::fmod(difference, 360.0);
  if (d > 180) d -= 360;
  if (d <= -180) d += 360;
  return d;
}

double smoothing(double cutoff, double dt) {
  return 1 / (1 / (cutoff * 2 * std::numbers::pi) / dt + 1);
}

}  // namespace

void MirrorFilter::reset() {
  for (auto& channel : channels_)
    channel.reset();
  last_.reset();
}

Pose MirrorFilter::filter(const Pose& pose, FollowScore::JointSet measured, const Pose& demo,
                          const Pose& rest, FollowScore::JointSet tracked, Date now) {
  const double dt = clamp(last_ ? now - *last_ : firstFrameSeconds, shortestStep, longestStep);
  last_ = now;
  Pose out = demo;
  for (std::size_t i = 0; i < partCount; ++i) {
    const auto part = static_cast<Part>(i);
    const Joint joint = parts[i].joint;
    if (!tracked.contains(joint)) {
      channels_[i].reset();
      continue;
    }
    step(part, pose, measured.contains(joint), field(rest, part), now, dt, field(out, part));
  }
  return out;
}

void MirrorFilter::step(Part part, const Pose& pose, bool measured, double rest, Date now,
                        double dt, double& out) {
  const PartInfo& info = parts[static_cast<std::size_t>(part)];
  auto& slot = channels_[static_cast<std::size_t>(part)];
  if (!slot) slot = Channel{rest, 0, Date::distantPast(), std::nullopt};
  Channel& c = *slot;
  if (!measured) {
    if (now - c.seen > holdUnseenSeconds) {
      const double towards = isAngle(part) ? wrapped(rest - c.value) : rest - c.value;
      c.value += (1 - std::exp(-dt / fadeSeconds)) * towards;
    }
    out = c.value;
    return;
  }
  double x = field(pose, part);
  if (isAngle(part)) x = c.value + wrapped(x - c.value);
  const bool fresh = c.seen == Date::distantPast();
  bool accept = fresh || std::abs(x - c.value) <= info.jump;
  if (!accept) {
    if (c.pending && std::abs(c.pending->value - x) < info.jump) {
      c.pending = Channel::Pending{x, c.pending->count + 1};
      accept = c.pending->count >= confirmingFrames;
    } else {
      c.pending = Channel::Pending{x, 1};
    }
  }
  if (accept) {
    c.pending.reset();
    c.seen = now;
    const double delta = x - c.value;
    const double alphaD = smoothing(speedCutoffHz, dt);
    c.speed += alphaD * (delta / dt - c.speed);
    const double cutoff = info.minCutoff + std::abs(c.speed) * speedGain / info.unit;
    c.value += delta * smoothing(cutoff, dt);
  }
  out = c.value;
}

}  // namespace sodam
