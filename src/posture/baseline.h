#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "posture/measurement.h"
#include "support/date.h"

namespace sodam {

// This user's good posture at this desk, learned from a few seconds of frames.
struct Baseline {
  struct Gaze {
    double aperture = 0;
    std::optional<double> pupilX;
    std::optional<double> pupilY;
    double turn = 0;

    static std::optional<Gaze> learn(const std::vector<Measurement>& frames);
    bool operator==(const Gaze&) const = default;
  };

  // How the user fills the picture, independent of the camera's tilt.
  struct Frame {
    double eyeRay = 0;
    double distance = 0;
    std::optional<double> neck;
    std::optional<double> torso;

    static std::optional<Frame> learn(const std::vector<Measurement>& frames);
    bool operator==(const Frame&) const = default;
  };

  static constexpr int currentVersion = 3;
  static constexpr double farthest = 100.0;

  int version = currentVersion;
  double eyeDistance = 0;
  double eyeHeight = 0;
  double eyeAngle = 0;
  std::optional<double> faceRatio;
  double faceElevation = 0;
  std::optional<double> shoulderWidthCm;
  std::optional<double> depthGap;
  std::optional<double> shoulderDepth;
  std::optional<double> neck;
  std::optional<double> lateral;
  std::optional<double> shoulderAngle;
  std::optional<double> shoulderRay;
  double pitch = 0;
  std::optional<double> lid;
  Date learnedAt;
  std::optional<Gaze> gaze;
  std::optional<Frame> frame;

  bool hasShoulders() const { return neck.has_value(); }
  bool plausible() const { return eyeDistance >= 25 && eyeDistance <= farthest; }

  // `now` stamps learnedAt.
  static std::optional<Baseline> learn(const std::vector<Measurement>& frames,
                                       std::optional<double> lid, Date now);
  // The baseline adjusted to a moved setup; keeps base's learnedAt.
  static std::optional<Baseline> moved(const Baseline& base, const std::vector<Measurement>& frames,
                                       std::optional<double> lid);
  // Why a freshly learned baseline is not good enough to keep, in order.
  static std::vector<std::string> concerns(const std::vector<Measurement>& frames,
                                           const Baseline& base);

  // Nothing when the JSON lacks a required key, has a wrong type or another
  // version: an old or damaged baseline is no baseline.
  static std::optional<Baseline> fromJson(const nlohmann::json& json);
  nlohmann::json toJson() const;

  bool operator==(const Baseline&) const = default;
};

}  // namespace sodam
