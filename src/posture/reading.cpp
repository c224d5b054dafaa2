#include "posture/reading.h"

#include <algorithm>
#include <array>

#include "posture/spine_helpers.h"
#include "support/numeric.h"

namespace sodam {

namespace {
// Below this share of frames looking at the screen there is nothing to judge.
constexpr double attentiveShare = 0.4;
// Farther than learned by these many centimetres, the frames are doubtful;
// beyond the second they are never trusted.
constexpr double doubtfulFartherCm = 12;
constexpr double untrustedFartherCm = 30;
constexpr std::size_t fewestFirstIssues = 3;
constexpr double agreeingShare = 0.6;
}  // namespace

Reading::Reading(const std::vector<Metrics>& frames, Sensitivity sensitivity) {
  if (frames.empty()) return;
  std::vector<Metrics> attentive;
  for (const auto& m : frames)
    if (!m.lookingAway) attentive.push_back(m);
  if (attentiveShare * static_cast<double>(frames.size()) > static_cast<double>(attentive.size())) {
    metrics = Metrics::combine(frames);
    away = true;
    return;
  }
  const auto& working = attentive.empty() ? frames : attentive;
  metrics = Metrics::combine(working);
  tooFar = ambiguous(working, sensitivity);
  if (!tooFar) issues = metrics.issues(sensitivity);
}

bool Reading::ambiguous(const std::vector<Metrics>& frames, Sensitivity sensitivity) {
  const auto farther = median(finiteValues(frames, [](const Metrics& m) { return -m.closer; }));
  if (!farther) return false;
  if (*farther >= untrustedFartherCm) return true;
  if (*farther < doubtfulFartherCm) return false;

  // From a doubtful distance the frames must agree on what is wrong.
  std::array<std::size_t, IssueKind::count> firstKinds{};
  std::size_t total = 0;
  for (const auto& m : frames) {
    const auto found = m.issues(sensitivity);
    if (found.empty()) continue;
    ++firstKinds[found.front().kind];
    ++total;
  }
  if (total < fewestFirstIssues) return false;
  const auto largest = *std::max_element(firstKinds.begin(), firstKinds.end());
  return static_cast<double>(largest) < agreeingShare * static_cast<double>(total);
}

}  // namespace sodam
