#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/sensitivity.h"
#include "posture/baseline.h"
#include "posture/issue_kind.h"
#include "posture/measurement.h"

namespace sodam {

// How far one frame, or several combined, lies from the learned posture.
struct Metrics {
  std::optional<double> headForward;
  std::optional<double> torsoForward;
  std::optional<double> neckDrop;
  std::optional<double> flexion;
  std::optional<double> shoulderTilt;
  double headTilt = 0;
  std::optional<double> lean;
  double closer = 0;
  double viewDistance = 0;
  double headX = 0;
  double yaw = 0;
  double turn = 0;
  std::optional<double> gazeDown;
  std::optional<double> gazeSide;
  bool lookingAway = false;

  Metrics() = default;
  // lidDegrees: the hinge angle now, absent when the sensor gives none.
  // displayHeightCm feeds the lid geometry; absent means the default screen.
  // An unusable measurement (see Measurement::usable) gives the default
  // value: every optional metric absent, every other number 0, not looking
  // away. Whatever can't be computed from a damaged baseline is absent (or 0)
  // too, so no field is ever NaN.
  Metrics(const Measurement& m, const Baseline& base, std::optional<double> lidDegrees,
          std::optional<double> displayHeightCm = std::nullopt);
  // The same, but nothing for an unusable measurement: what a caller that
  // gathers frames for a verdict should use, so a bad frame is skipped rather
  // than counted as a good one.
  static std::optional<Metrics> of(const Measurement& m, const Baseline& base,
                                   std::optional<double> lidDegrees,
                                   std::optional<double> displayHeightCm = std::nullopt);

  std::vector<Issue> issues(Sensitivity sensitivity) const;
  double severity(Sensitivity sensitivity) const;
  // Meant for a list that is not empty; an empty one gives the default value.
  static Metrics combine(const std::vector<Metrics>& frames);
  std::string summary() const;

  bool operator==(const Metrics&) const = default;
};

}  // namespace sodam
