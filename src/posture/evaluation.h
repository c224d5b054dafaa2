#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "posture/baseline.h"
#include "posture/measurement.h"

namespace sodam {

// How strictly posture is judged; every threshold is multiplied by factor().
class Sensitivity {
 public:
  enum Value : int { strict = 0, normal = 1, relaxed = 2 };

  constexpr Sensitivity(Value value = normal) : value_(value) {}
  static std::optional<Sensitivity> fromRaw(int raw);
  constexpr operator Value() const { return value_; }
  constexpr int raw() const { return value_; }

  double factor() const;
  std::string_view title() const;

 private:
  Value value_;
};

// What can be wrong with a posture. The raw value is the case name, which
// the posture log stores.
class IssueKind {
 public:
  enum Value : int {
    forwardHead,
    leaning,
    slouch,
    lookingDown,
    shoulderTilt,
    headTilt,
    lean,
    tooClose,
  };
  static constexpr int count = 8;

  constexpr IssueKind(Value value) : value_(value) {}
  static std::optional<IssueKind> fromRaw(std::string_view raw);
  static const std::vector<IssueKind>& all();
  constexpr operator Value() const { return value_; }

  std::string_view raw() const;
  std::string_view title() const;
  std::string_view fix() const;
  std::string_view symbol() const;

 private:
  Value value_;
};

struct Issue {
  IssueKind kind;
  double score = 0;  // metric over threshold: 1.0 is just over the line
  std::string detail;
  bool operator==(const Issue&) const = default;
};

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

// A verdict over several frames.
struct Reading {
  Metrics metrics;
  std::vector<Issue> issues;
  bool away = false;
  bool tooFar = false;

  // Meant for a list that is not empty; an empty one gives a good reading
  // with default metrics.
  Reading(const std::vector<Metrics>& frames, Sensitivity sensitivity);
  bool bad() const { return !issues.empty(); }

  static bool ambiguous(const std::vector<Metrics>& frames, Sensitivity sensitivity);
};

}  // namespace sodam
