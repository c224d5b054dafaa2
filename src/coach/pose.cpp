#include "coach/pose.h"

namespace sodam {

namespace {

double mix(double a, double b, double t) {
  return a + (b - a) * t;
}

Limb mix(const Limb& a, const Limb& b, double t) {
  return {mix(a.upper, b.upper, t), mix(a.fore, b.fore, t), mix(a.hand, b.hand, t),
          t < 0.5 ? a.behind : b.behind};
}

}  // namespace

Pose Pose::side() {
  Pose pose;
  pose.armL = {28, 56, 0, false};
  pose.armR = {28, 56, 0, false};
  return pose;
}

Pose Pose::lerp(const Pose& a, const Pose& b, double t) {
  Pose p;
  p.spineSide = mix(a.spineSide, b.spineSide, t);
  p.spineFlex = mix(a.spineFlex, b.spineFlex, t);
  p.twist = mix(a.twist, b.twist, t);
  p.neckSide = mix(a.neckSide, b.neckSide, t);
  p.neckFlex = mix(a.neckFlex, b.neckFlex, t);
  p.headForward = mix(a.headForward, b.headForward, t);
  p.headTurn = mix(a.headTurn, b.headTurn, t);
  p.shrugL = mix(a.shrugL, b.shrugL, t);
  p.shrugR = mix(a.shrugR, b.shrugR, t);
  p.retract = mix(a.retract, b.retract, t);
  p.armL = mix(a.armL, b.armL, t);
  p.armR = mix(a.armR, b.armR, t);
  return p;
}

}  // namespace sodam
