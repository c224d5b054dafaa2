#pragma once

#include <map>
#include <string>
#include <vector>

#include "coach/stretch.h"
#include "posture/issue_kind.h"

namespace sodam {

// What the stretch page shows while no session runs: the day's routine card
// with its reasons and length, and the whole library by area.
struct StretchPage {
  struct Area {
    BodyArea area;
    std::vector<Stretch> stretches;
  };

  std::vector<Stretch> routine;
  std::vector<std::string> reasons;
  std::vector<Area> areas;  // in the order the library first names them

  static StretchPage of(const std::map<IssueKind, double>& weights);

  // "3분 20초", "45초": a length in whole seconds as the page says it.
  static std::string length(int seconds);
  int routineSeconds() const;
};

}  // namespace sodam
