#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "posture/measurement.h"
#include "sim/lid_camera.h"
#include "sim/pixel_noise.h"
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
};

struct SitterLaptop {
  double lidDeg = 110;  // hinge angle: 90 is an upright screen
  double displayHeightCm = 19.6;
  Size frame{1280, 720};
};

// A seated person in front of a laptop camera, rendered into the
// measurements a pose reader would deliver. Everything is placed in the
// world and projected through the lid's pinhole camera; nothing is computed
// from the measurement side's own formulas, so a reading of these frames is
// a test of those formulas.
class VirtualSitter {
 public:
  SitterPosture posture;
  SitterBuild build;
  SitterLaptop laptop;
  bool present = true;  // false: nobody in front of the camera
  std::optional<double> aperture = 0.3;
  std::optional<Point> pupil = Point{0.5, 0.5};

  VirtualSitter() = default;
  // Gaussian jitter of every detected position, in pixels.
  void setNoise(double sigmaPx, std::uint32_t seed = 1);

  // One frame; nothing when no person or no eyes are in the picture.
  std::optional<Measurement> render();
  // Up to count frames; frames without a person are left out.
  std::vector<Measurement> frames(int count);

  // The truth behind the frames, for checking what is read from them.
  LidCamera camera() const;
  Vec3 eyeMidWorld() const;
  Vec3 shoulderMidWorld() const;
  double eyeDistanceCm() const;  // straight line from camera to eye midpoint

 private:
  struct Head {
    Vec3 eyeL, eyeR, nose, chin;
  };
  Head headWorld() const;
  Vec3 turnHead(Vec3 offset) const;
  // Where the frame shows a world point, jittered; nothing outside the frame.
  std::optional<Point> detected(const LidCamera& cam, Vec3 world);
  void addFace(Measurement& m, const LidCamera& cam, const Head& head);
  void addShoulders(Measurement& m, const LidCamera& cam);
  void addTorso(Measurement& m, const LidCamera& cam);

  PixelNoise noise_;
};

}  // namespace sodam
