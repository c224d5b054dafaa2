#include "app/stretch_page.h"

#include <algorithm>

#include "coach/stretch_library.h"
#include "support/text.h"

namespace sodam {

StretchPage StretchPage::of(const std::map<IssueKind, double>& weights) {
  StretchPage page;
  page.routine = StretchLibrary::routine(weights, StretchLibrary::routineCount);
  page.reasons = StretchLibrary::reasons(weights);
  for (const auto& stretch : StretchLibrary::all()) {
    auto area = std::find_if(page.areas.begin(), page.areas.end(),
                             [&](const Area& a) { return a.area == stretch.area; });
    if (area == page.areas.end()) area = page.areas.insert(page.areas.end(), {stretch.area, {}});
    area->stretches.push_back(stretch);
  }
  return page;
}

std::string StretchPage::length(int seconds) {
  const int minutes = seconds / 60;
  const int rest = seconds % 60;
  if (minutes == 0) return format("%d초", rest);
  if (rest == 0) return format("%d분", minutes);
  return format("%d분 %d초", minutes, rest);
}

int StretchPage::routineSeconds() const {
  return StretchLibrary::totalSeconds(routine);
}

}  // namespace sodam
