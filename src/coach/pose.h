#pragma once

namespace sodam {

// One arm of the figure, in degrees. On the front stage 0 hangs straight down
// and a positive angle swings the arm out; on the side stage a positive angle
// swings it forward. `fore` is measured in the same frame as `upper`, not
// from it.
struct Limb {
  double upper = 0;
  double fore = 0;
  double hand = 0;      // wrist flexion; positive points the fingers down
  bool behind = false;  // drawn behind the trunk

  bool operator==(const Limb&) const = default;
};

// A seated upper body, as the stretch figure shows it and as the mirror
// reads the user. Angles in degrees; `L` and `R` are the person's own sides.
struct Pose {
  double spineSide = 0;    // trunk side bend, positive towards the person's right
  double spineFlex = 0;    // positive rounds forward
  double twist = 0;        // trunk rotation
  double neckSide = 0;     // head side tilt
  double neckFlex = 0;     // positive chin to chest, negative looking up
  double headForward = 0;  // -1 a full chin tuck, positive a forward head
  double headTurn = 0;
  double shrugL = 0;  // 1 a full shrug, negative pressed down
  double shrugR = 0;
  double retract = 0;  // 0 to 1, shoulder blades drawn together
  Limb armL{14, -32, 0, false};
  Limb armR{14, -32, 0, false};

  // Seated upright facing the camera: the default value.
  static Pose front() { return Pose(); }
  // Seated upright sideways, hands forward on the thighs.
  static Pose side();

  // Every number moves from a to b by t, without wrapping angles; each arm
  // is behind as in a before the halfway point and as in b from it on.
  static Pose lerp(const Pose& a, const Pose& b, double t);

  bool operator==(const Pose&) const = default;
};

}  // namespace sodam
