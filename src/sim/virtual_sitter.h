#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "posture/detections.h"
#include "posture/measurement.h"
#include "sim/lid_camera.h"
#include "sim/pixel_noise.h"
#include "sim/sim_person.h"
#include "sim/sitter_study.h"
#include "support/geometry.h"

namespace sodam {

// How the virtual person sits, in physical units. Sideways means towards the
// image's right, as the camera sees it; the defaults are sitting upright.
struct SitterPosture {
  double forwardHeadCm = 0;  // head moved ahead of the shoulders, towards the screen
  double headDropCm = 0;     // head sunk towards the shoulders
  double headPitchDeg = 0;   // positive: the face tips down, about the eye line
  double headRollDeg = 0;    // positive: the image-right eye rises
  // Positive: the face turns towards the image's left. The detector's yaw is
  // reported with this sign, which is also the sign of the nose-based turn.
  double headYawDeg = 0;
  double shoulderRollDeg = 0;  // positive: the image-right shoulder rises
  double leanCm = 0;           // head shifted sideways over the shoulders
  double distanceCm = 50;      // eyes to the screen's hinge, horizontally
  double sideCm = 0;           // whole body shifted sideways
};

// The person's body, which no posture changes. Defaults are an adult of
// ordinary size on a chair at a desk with the laptop on it.
struct SitterBuild {
  double eyeHeightCm = 46;           // eyes above the desk
  double neckCm = 19;                // eyes above the shoulder line
  double shoulderWidthCm = 38;       // between the shoulder joints
  double shouldersBehindEyesCm = 4;  // shoulder joints behind the eyes when upright
  double torsoWidthCm = 40;          // width of the person's outline at the torso row
  double torsoRowBelowShouldersCm = 3;
  double eyeSpacingCm = 6.3;
  double hipsBelowShouldersCm = 50;  // the trunk's pivot on the chair
  double upperArmCm = 29;
  double forearmCm = 26;
};

// One arm's two segments as directions: x outward, away from the body on the
// arm's side; y up; z forward. They turn with the chair and the trunk's twist
// but keep to the vertical when the trunk bends.
struct SitterArm {
  Vec3 upper{0, -1, 0};
  Vec3 fore{0, -1, 0};

  // In the plane of the shoulders: degrees from hanging down, positive out.
  static SitterArm frontal(double upperDeg, double foreDeg);
  // In the body's side plane: degrees from hanging down, positive forward.
  static SitterArm sagittal(double upperDeg, double foreDeg);
};

// How the upper body moves beyond the posture, for stretching; all zero is
// sitting square to the screen with the hands in the lap. Left and right are
// the person's own.
struct SitterBody {
  double turnDeg = 0;  // the chair turned to the person's right: the left shoulder to the screen
  double sideBendDeg = 0;  // the trunk bent to the person's right
  double flexDeg = 0;      // the trunk rounded forward
  double twistDeg = 0;     // the upper trunk turned to the person's right
  double shrugLCm = 0;
  double shrugRCm = 0;
  double retract = 0;  // 0 to 1, the shoulder blades drawn together
  SitterArm armL = SitterArm::frontal(14, -32);
  SitterArm armR = SitterArm::frontal(14, -32);

  // Trunk and shoulders at rest; the arms do not move the posture.
  bool still() const;
};

struct SitterLaptop {
  double lidDeg = 110;  // hinge angle: 90 is an upright screen
  double displayHeightCm = 19.6;
  Size frame{1280, 720};
};

// A seated person in front of a laptop camera, rendered into the
// measurements a pose reader would deliver, and, joint by joint, into the
// body pose and silhouette its detectors would find. Everything is placed in
// the world and projected through the lid's pinhole camera; nothing is
// computed from the measurement side's own formulas, so a reading of these
// frames is a test of those formulas. The trunk bends, twists and turns about
// the hips; the posture's own numbers are those of the upright trunk.
class VirtualSitter {
 public:
  SitterPosture posture;
  SitterBuild build;
  SitterLaptop laptop;
  SitterBody body;
  bool present = true;  // false: nobody in front of the camera
  std::optional<double> aperture = 0.3;
  std::optional<Point> pupil = Point{0.5, 0.5};
  // While studying: what the hands do, and how far the sitter has nodded
  // off, from 0 (awake) through closing eyes (to 0.3) to 1 (asleep, the head
  // sunk out of the face detector's sight).
  SitterHands hands = SitterHands::lap;
  double doze = 0;

  VirtualSitter() = default;
  // Gaussian jitter of every detected position, in pixels.
  void setNoise(double sigmaPx, std::uint32_t seed = 1);

  // One frame; nothing when no person or no eyes are in the picture, or the
  // face is turned too far from the camera for a face to be found.
  std::optional<Measurement> render();
  // The person as the camera's detectors see them: the face's reading (not
  // shown when no face is found), every body joint with the detector's
  // confidence, and, when turned or without a face, the silhouette.
  std::optional<SimPerson> view();
  // Up to count frames; frames without a person are left out.
  std::vector<Measurement> frames(int count);

  // The truth behind the frames, for checking what is read from them.
  LidCamera camera() const;
  Vec3 eyeMidWorld() const;
  Vec3 shoulderMidWorld() const;
  double eyeDistanceCm() const;  // straight line from camera to eye midpoint
  // The face's turn away from the camera: head, trunk and chair together.
  double faceYawDeg() const;
  bool faceFound() const;
  // The person's own shoulder joint, elbow and wrist.
  Vec3 shoulderWorld(bool left) const;
  Vec3 elbowWorld(bool left) const;
  Vec3 wristWorld(bool left) const;
  // The arm as it moves now: the body's own, or reaching for what the hands do.
  SitterArm arm(bool left) const;
  // A phone held in both hands; nothing while the hands do something else.
  std::optional<Vec3> phoneWorld() const;

 private:
  struct Head {
    Vec3 eyeL, eyeR, nose, chin;
  };
  Head headWorld() const;
  Vec3 turnHead(Vec3 offset) const;
  // A point of the upright upper body where the bent, twisted and turned
  // trunk carries it; a direction likewise.
  Vec3 carried(Vec3 upright) const;
  Vec3 turned(Vec3 direction) const;
  Vec3 armDirection(Vec3 inTrunk, bool left) const;
  Vec3 hipWorld() const;
  // Where the head carries a point given relative to the eyes.
  Vec3 headPoint(Vec3 offset) const;
  Detections::BodyPose bodyPose(const LidCamera& cam);
  // How studying changes the head and eyes: looking down at a phone or a
  // hand, and nodding off.
  struct Look {
    double pitchDeg = 0;  // added to the head's own
    double dropCm = 0;
    std::optional<double> aperture;
    std::optional<Point> pupil;
  };
  Look look() const;
  // Where the hand of that side reaches, when the hands do something.
  std::optional<Vec3> handTarget(bool left) const;
  // The hand pose joints of the hands that do something, and the phone.
  void addHands(SimPerson& person, const LidCamera& cam);
  Outline outline(const LidCamera& cam) const;
  // Where the frame shows a world point, jittered; nothing outside the frame.
  std::optional<Point> detected(const LidCamera& cam, Vec3 world);
  void addFace(Measurement& m, const LidCamera& cam, const Head& head);
  void addShoulders(Measurement& m, const LidCamera& cam);
  void addTorso(Measurement& m, const LidCamera& cam);

  PixelNoise noise_;
  // The body pose's own jitter, apart from the face's, so that the face's
  // frames stay the same whether or not the body is drawn.
  PixelNoise bodyNoise_;
};

}  // namespace sodam
