#include "posture/metrics.h"

#include <algorithm>
#include <cmath>

#include "posture/spine_helpers.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {
// Lines at the normal sensitivity; each is scaled by the sensitivity's factor.
constexpr double headForwardLine = 4;
constexpr double neckDropLine = 4;
constexpr double flexionLine = 15;
constexpr double shoulderTiltLine = 5;
constexpr double headTiltLine = 8;
constexpr double leanLine = 5;
constexpr double closerLine = 12;
// The shoulders came this far nearer too: the whole upper body leans in.
// Not scaled by the sensitivity.
constexpr double leaningTorsoCm = 6.0;

std::optional<double> magnitude(std::optional<double> value) {
  if (!value) return std::nullopt;
  return std::abs(*value);
}

double positivePart(std::optional<double> value) {
  return value && *value > 0 ? *value : 0;
}

std::string_view rightWhenPositive(double value) {
  return value > 0 ? "오른쪽" : "왼쪽";
}

std::string detailOf(IssueKind kind, const Metrics& m) {
  switch (kind) {
    case IssueKind::forwardHead:
      return fill("머리가 어깨보다 {n}센티 앞으로 나왔어요",
                  {{"n", unsignedWhole(*m.headForward)}});
    case IssueKind::leaning:
      return fill("상체가 화면 쪽으로 숙여져 머리가 {n}센티 앞으로 나왔어요",
                  {{"n", unsignedWhole(*m.headForward)}});
    case IssueKind::slouch:
      return fill("등이 굽어 머리가 {n}센티 내려왔어요", {{"n", unsignedWhole(*m.neckDrop)}});
    case IssueKind::lookingDown:
      return fill("고개를 {n}도 숙이고 있어요", {{"n", unsignedWhole(*m.flexion)}});
    case IssueKind::shoulderTilt:
      return fill("{side} 어깨가 {n}도 처졌어요", {{"side", rightWhenPositive(*m.shoulderTilt)},
                                                   {"n", unsignedWhole(*m.shoulderTilt)}});
    case IssueKind::headTilt:
      return fill("고개가 {side}으로 {n}도 기울었어요",
                  {{"side", rightWhenPositive(m.headTilt)}, {"n", unsignedWhole(m.headTilt)}});
    case IssueKind::lean:
      // The mirror of the two tilts on purpose: a head right of the shoulders
      // in the picture is the user's body going left.
      return fill("몸이 {side}으로 {n}센티 쏠렸어요",
                  {{"side", *m.lean > 0 ? "왼쪽" : "오른쪽"}, {"n", unsignedWhole(*m.lean)}});
    case IssueKind::tooClose:
      return fill("화면에 {n}센티 다가갔어요", {{"n", unsignedWhole(m.closer)}});
  }
  return {};
}
}  // namespace

std::vector<Issue> Metrics::issues(Sensitivity sensitivity) const {
  struct Check {
    IssueKind kind;
    std::optional<double> value;
    double line;
  };
  const bool torsoLeansIn = torsoForward && *torsoForward >= leaningTorsoCm;
  const Check checks[] = {
      {torsoLeansIn ? IssueKind::leaning : IssueKind::forwardHead, headForward, headForwardLine},
      {IssueKind::slouch, neckDrop, neckDropLine},
      {IssueKind::lookingDown, flexion, flexionLine},
      {IssueKind::shoulderTilt, magnitude(shoulderTilt), shoulderTiltLine},
      {IssueKind::headTilt, std::abs(headTilt), headTiltLine},
      {IssueKind::lean, magnitude(lean), leanLine},
      {IssueKind::tooClose, closer, closerLine},
  };
  std::vector<Issue> found;
  for (const auto& check : checks) {
    const double line = check.line * sensitivity.factor();
    if (!check.value || !(line <= *check.value)) continue;
    found.push_back({check.kind, *check.value / line, detailOf(check.kind, *this)});
  }
  // Stable, so equal scores keep the order of the checks.
  std::stable_sort(found.begin(), found.end(),
                   [](const Issue& a, const Issue& b) { return a.score > b.score; });
  return found;
}

double Metrics::severity(Sensitivity sensitivity) const {
  const double factor = sensitivity.factor();
  const double ratios[] = {
      positivePart(headForward) / (headForwardLine * factor),
      positivePart(neckDrop) / (neckDropLine * factor),
      positivePart(flexion) / (flexionLine * factor),
      magnitude(shoulderTilt).value_or(0) / (shoulderTiltLine * factor),
      std::abs(headTilt) / (headTiltLine * factor),
      magnitude(lean).value_or(0) / (leanLine * factor),
      positivePart(closer) / (closerLine * factor),
  };
  return *std::max_element(std::begin(ratios), std::end(ratios));
}

Metrics Metrics::combine(const std::vector<Metrics>& frames) {
  Metrics out;
  if (frames.empty()) return out;
  const auto ofPresent = [&](std::optional<double> Metrics::*field) {
    return median(finiteValues(frames, [&](const Metrics& m) { return m.*field; }));
  };
  const auto ofAll = [&](double Metrics::*field) {
    return median(finiteValues(frames, [&](const Metrics& m) { return m.*field; })).value_or(0);
  };
  for (auto field :
       {&Metrics::headForward, &Metrics::torsoForward, &Metrics::neckDrop, &Metrics::flexion,
        &Metrics::shoulderTilt, &Metrics::lean, &Metrics::gazeDown, &Metrics::gazeSide})
    out.*field = ofPresent(field);
  for (auto field : {&Metrics::headTilt, &Metrics::closer, &Metrics::viewDistance, &Metrics::yaw,
                     &Metrics::turn})
    out.*field = ofAll(field);
  // Where the head was when the check began, not where it wandered.
  out.headX = frames.front().headX;
  const auto away =
      std::count_if(frames.begin(), frames.end(), [](const Metrics& m) { return m.lookingAway; });
  out.lookingAway = 2 * static_cast<std::size_t>(away) > frames.size();
  return out;
}

std::string Metrics::summary() const {
  std::string line;
  const auto add = [&](const std::string& part) {
    if (!line.empty()) line += " · ";
    line += part;
  };
  if (headForward) add(format("거북목 %+.1f센티", *headForward));
  if (neckDrop) add(format("머리 내려옴 %+.1f센티", *neckDrop));
  if (flexion) add(format("숙임 %+.1f도", *flexion));
  if (shoulderTilt) add(format("어깨 %.1f도", std::abs(*shoulderTilt)));
  add(format("고개 %.1f도", std::abs(headTilt)));
  if (lean) add(format("쏠림 %.1f센티", std::abs(*lean)));
  return line;
}

}  // namespace sodam
