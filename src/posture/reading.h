#pragma once

#include <vector>

#include "platform/sensitivity.h"
#include "posture/metrics.h"

namespace sodam {

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
