#pragma once

#include <optional>
#include <vector>

#include "posture/baseline.h"
#include "posture/measurement.h"

namespace sodam {

// Whether the frames say the screen or the chair moved, and whether the
// baseline may simply follow.
struct SetupShift {
  bool strong = false;
  bool fixable = false;

  static std::optional<SetupShift> check(const std::vector<Measurement>& frames,
                                         const Baseline& base, std::optional<double> lid);
  bool operator==(const SetupShift&) const = default;
};

}  // namespace sodam
