#pragma once

#include <optional>
#include <vector>

#include "coach/follow_score.h"
#include "coach/pose.h"
#include "coach/stretch.h"
#include "posture/measurement.h"
#include "posture/metrics.h"
#include "posture/side_body.h"

namespace sodam {

// Turns what the camera sees into the figure's Pose, so that the user and the
// demonstration are compared and drawn alike. Facing the camera it reads the
// Metrics and the Measurement; sideways a SideBody against the user's own
// neutral side posture. Each conversion says which joints it really
// measured; the rest is the stage's rest pose. Pure functions.
namespace BodyMirror {

// The person's own arm: the left arm is on the image's right.
enum class ArmSide { left, right };

// The user's neutral side posture, or the raw values of one frame.
struct SideNeutral {
  double facing = -1;               // -1 faces the image's left, 1 its right
  double scale = 10;                // image units per centimetre
  std::optional<double> lean;       // degrees, head over the torso's centre
  std::optional<double> forward;    // centimetres, head ahead of the near shoulder
  std::optional<double> front;      // image units, the body band's front edge
  std::optional<double> width;      // image units, the torso's row at rest
  std::optional<double> faceRatio;  // as the side view gives it
  std::optional<double> pitch;      // degrees, nose over ear

  bool operator==(const SideNeutral&) const = default;
};

struct Reading {
  Pose pose;
  FollowScore::JointSet measured;
};

// Facing the camera. `shoulders`: the shoulders' height can be trusted in
// this frame.
Reading pose(const Metrics& metrics, const Measurement& measurement, bool shoulders, Stage stage);
// The arm's limb from the arm joints, the shoulders and the eyes; nothing
// when neither elbow nor wrist was seen.
std::optional<Limb> arm(const Measurement& measurement, ArmSide side, Stage stage);

// Which way a sideways person faces the image, when the frame can tell.
std::optional<double> facingVote(const SideBody& body);
// The neutral of some sideways frames: medians of what they give.
SideNeutral calibrate(const std::vector<SideBody>& samples);
// `restWidth`, the torso's row at rest, lets a row widened by the arms be
// read from its other edge.
SideNeutral sideRaw(const SideBody& body, double facing,
                    std::optional<double> restWidth = std::nullopt);
// Sideways, against the neutral. The near arm is the figure's right arm and
// the far one its left, drawn behind the trunk.
Reading sidePose(const SideBody& body, const SideNeutral& neutral);

}  // namespace BodyMirror

}  // namespace sodam
