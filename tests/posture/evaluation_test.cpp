#include "platform/sensitivity.h"
#include "posture/issue_kind.h"
#include "posture/metrics.h"
#include "posture/reading.h"

#include <gtest/gtest.h>

#include <limits>

#include "posture/pinhole.h"

namespace sodam {
namespace {

using pinhole::Sitter;
constexpr Sensitivity normal = Sensitivity::normal;

std::vector<IssueKind> kindsOf(const std::vector<Issue>& issues) {
  std::vector<IssueKind> kinds;
  for (const auto& issue : issues)
    kinds.push_back(issue.kind);
  return kinds;
}

TEST(MetricsIssues, AMetricExactlyAtItsLineIsAnIssueOfScoreOne) {
  using Set = void (*)(Metrics&, double);
  const std::tuple<Set, double, IssueKind> cases[] = {
      {[](Metrics& m, double v) { m.headForward = v; }, 4, IssueKind::forwardHead},
      {[](Metrics& m, double v) { m.neckDrop = v; }, 4, IssueKind::slouch},
      {[](Metrics& m, double v) { m.flexion = v; }, 15, IssueKind::lookingDown},
      {[](Metrics& m, double v) { m.shoulderTilt = v; }, -5, IssueKind::shoulderTilt},
      {[](Metrics& m, double v) { m.headTilt = v; }, -8, IssueKind::headTilt},
      {[](Metrics& m, double v) { m.lean = v; }, -5, IssueKind::lean},
      {[](Metrics& m, double v) { m.closer = v; }, 12, IssueKind::tooClose},
  };
  for (const auto& [set, line, kind] : cases) {
    Metrics at, below;
    set(at, line);
    set(below, line * 0.9975);  // 3.99 for the 4 cm lines
    ASSERT_EQ(at.issues(normal).size(), 1u) << line;
    EXPECT_EQ(at.issues(normal)[0].kind, kind);
    EXPECT_EQ(at.issues(normal)[0].score, 1.0);
    EXPECT_TRUE(below.issues(normal).empty()) << line;
  }
  Metrics m;
  m.headForward = 3;  // 4 * 0.75
  EXPECT_EQ(m.issues(Sensitivity::strict).size(), 1u);
  m.headForward = 5.39;  // below 4 * 1.35
  EXPECT_TRUE(m.issues(Sensitivity::relaxed).empty());
}

TEST(MetricsIssues, ForwardHeadIsLeaningWhenTheShouldersCameSixCentimetresNearer) {
  Metrics m;
  m.headForward = 6;
  for (auto [torso, kind] : {std::pair{std::optional(6.0), IssueKind::leaning},
                             {std::optional(5.99), IssueKind::forwardHead},
                             {std::optional<double>(), IssueKind::forwardHead}}) {
    m.torsoForward = torso;
    EXPECT_EQ(m.issues(Sensitivity::relaxed).at(0).kind, kind);  // the 6 is not scaled
  }
}

TEST(MetricsIssues, WorstFirstAndEqualScoresKeepTheirOrder) {
  Metrics m;
  m.lean = 5;
  m.shoulderTilt = -5;
  m.neckDrop = 4;
  m.flexion = 30;
  EXPECT_EQ(kindsOf(m.issues(normal)),
            (std::vector<IssueKind>{IssueKind::lookingDown, IssueKind::slouch,
                                    IssueKind::shoulderTilt, IssueKind::lean}));
}

TEST(MetricsIssues, DetailsRoundHalvesAwayAndNameTheSide) {
  using Set = void (*)(Metrics&);
  const std::pair<Set, const char*> cases[] = {
      {[](Metrics& m) { m.headForward = 4.5; }, "머리가 어깨보다 5센티 앞으로 나왔어요"},
      {[](Metrics& m) { m.headForward = 7.4, m.torsoForward = 8; },
       "상체가 화면 쪽으로 숙여져 머리가 7센티 앞으로 나왔어요"},
      {[](Metrics& m) { m.shoulderTilt = 6.5; }, "오른쪽 어깨가 7도 처졌어요"},
      {[](Metrics& m) { m.headTilt = -8.4; }, "고개가 왼쪽으로 8도 기울었어요"},
      // A lean to the image's right is told as the other side.
      {[](Metrics& m) { m.lean = 5.5; }, "몸이 왼쪽으로 6센티 쏠렸어요"},
      {[](Metrics& m) { m.lean = -5; }, "몸이 오른쪽으로 5센티 쏠렸어요"},
  };
  for (const auto& [set, detail] : cases) {
    Metrics m;
    set(m);
    EXPECT_EQ(m.issues(normal).at(0).detail, detail);
  }
}

TEST(MetricsSeverity, IsTheLargestRatioCountingOnlyTheBadDirection) {
  Metrics m;
  m.headForward = -20;
  m.closer = -30;
  m.neckDrop = 2;
  EXPECT_DOUBLE_EQ(m.severity(normal), 0.5);
  m.lean = -7.5;
  EXPECT_DOUBLE_EQ(m.severity(normal), 1.5);
  EXPECT_DOUBLE_EQ(m.severity(Sensitivity::strict), 2.0);
}

TEST(MetricsCombine, MediansOfWhatIsPresentButTheFirstHeadX) {
  std::vector<Metrics> frames(4);
  for (int i = 0; i < 4; ++i) {
    frames[i].closer = i;
    frames[i].headX = 10 + i;
    frames[i].lookingAway = i < 2;
  }
  frames[1].neckDrop = 3;
  frames[3].neckDrop = 6;
  const auto combined = Metrics::combine(frames);
  EXPECT_EQ(combined.closer, 1.5);
  EXPECT_EQ(combined.headX, 10);
  EXPECT_EQ(combined.neckDrop, 4.5);
  EXPECT_FALSE(combined.flexion);
  EXPECT_FALSE(combined.lookingAway);  // 2 of 4 is not more than half
  frames.push_back(frames[0]);
  EXPECT_TRUE(Metrics::combine(frames).lookingAway);
}

Metrics frame(double closer, double neckDrop, double headTilt = 0, bool away = false) {
  Metrics m;
  m.closer = closer;
  m.neckDrop = neckDrop;
  m.headTilt = headTilt;
  m.lookingAway = away;
  return m;
}

TEST(Reading, TooFewFramesOnTheScreenMeanTheUserLooksAway) {
  const Reading twoOfThree({frame(0, 5, 0, true), frame(0, 5, 0, true), frame(0, 5)}, normal);
  EXPECT_TRUE(twoOfThree.away);
  EXPECT_FALSE(twoOfThree.bad());
  const auto lookingAway = frame(0, 0, 0, true);
  const Reading threeOfFive({lookingAway, lookingAway, lookingAway, frame(0, 6), frame(0, 8)},
                            normal);
  EXPECT_FALSE(threeOfFive.away);
  EXPECT_EQ(threeOfFive.metrics.neckDrop, 7);  // from the two on the screen
  EXPECT_EQ(kindsOf(threeOfFive.issues), std::vector<IssueKind>{IssueKind::slouch});
}

TEST(Reading, FarBackTheFramesMustAgreeOrTheVerdictIsWithheld) {
  const Reading tooFar({frame(-30, 9)}, normal);
  EXPECT_TRUE(tooFar.tooFar);
  EXPECT_FALSE(tooFar.bad());
  std::vector<Metrics> split{frame(-20, 6), frame(-20, 6), frame(-20, 0, 9), frame(-20, 0, 9)};
  EXPECT_TRUE(Reading::ambiguous(split, normal));  // 2 < 0.6 * 4
  split[3] = frame(-20, 6);
  EXPECT_FALSE(Reading::ambiguous(split, normal));
  EXPECT_FALSE(Reading::ambiguous({frame(-20, 6), frame(-20, 0, 9)}, normal));  // fewer than 3
  EXPECT_FALSE(Reading::ambiguous({frame(-11.9, 6, 9)}, normal));
}

// The learned posture: upright, level camera, shoulders measured.
Baseline uprightBaseline() {
  auto frames = pinhole::frames(Sitter{});
  for (auto& m : frames) {
    m.faceRatio = 0.32;
    m.aperture = 0.3;
  }
  return *Baseline::learn(frames, std::nullopt, Date{});
}

TEST(Metrics, MeasuresPostureChangesInCentimetresAndDegrees) {
  const auto base = uprightBaseline();
  Sitter s;
  s.eyeZ -= 6;  // the head alone 6 cm forward
  s.shoulderBack += 6;
  auto m = Metrics(s.measure(), base, std::nullopt);
  EXPECT_NEAR(*m.headForward, 6, 1e-6);
  EXPECT_NEAR(*m.torsoForward, 0, 1e-6);

  s = Sitter{};
  s.eyeZ -= 12;  // the whole upper body: shoulders 7 cm nearer, head 12
  s.shoulderBack -= 7 - 12;
  m = Metrics(s.measure(), base, std::nullopt);
  // Learning put the shoulders in the eyes' plane (55 of their 60 cm), so
  // their depth, and how far they move, reads at that scale.
  EXPECT_NEAR(*m.torsoForward, 7 * 55.0 / 60, 1e-6);
  EXPECT_NEAR(*m.headForward, 12 - 7 * 55.0 / 60, 1e-6);
  EXPECT_EQ(m.issues(normal).at(0).kind, IssueKind::leaning);

  s = Sitter{};
  s.eyeX = 6;  // the head 6 cm to the image's right over still shoulders
  s.shoulderX = -6;
  s.rollDeg = 10;
  m = Metrics(s.measure(), base, std::nullopt);
  EXPECT_NEAR(*m.lean, 6, 0.01);
  EXPECT_NEAR(m.headTilt, 10, 0.01);
  EXPECT_NEAR(*m.shoulderTilt, 0, 1e-6);
}

TEST(Metrics, WithoutShouldersAHeadThatCameNearerAndSankIsForward) {
  Sitter s;
  s.shoulders = false;
  const auto base = *Baseline::learn(pinhole::frames(s), std::nullopt, Date{});
  s.eyeZ -= 5;
  s.eyeY -= 2;
  const Metrics m(s.measure(), base, std::nullopt);
  EXPECT_NEAR(*m.neckDrop, 2, 1e-6);
  EXPECT_NEAR(m.closer, std::hypot(5, 55) - std::hypot(3, 50), 1e-6);
  EXPECT_EQ(m.headForward, m.closer);
  EXPECT_FALSE(m.torsoForward || m.lean || m.shoulderTilt);
  s.eyeY += 0.6;  // sunk only 1.4 cm
  EXPECT_FALSE(Metrics(s.measure(), base, std::nullopt).headForward);
}

TEST(Metrics, AShoulderRayShiftOfThreeDegreesIsNoCameraTilt) {
  Sitter s;
  s.torso = false;
  auto base = *Baseline::learn(pinhole::frames(s), std::nullopt, Date{});
  const auto still = Metrics(s.measure(), base, std::nullopt);
  base.shoulderRay = *base.shoulderRay + 3;
  EXPECT_EQ(Metrics(s.measure(), base, std::nullopt), still);
  base.shoulderRay = *base.shoulderRay + 2;
  EXPECT_NE(Metrics(s.measure(), base, std::nullopt).neckDrop, still.neckDrop);
}

TEST(Metrics, GazeLeavesTheScreenButShutEyesNeverDo) {
  const auto base = uprightBaseline();
  const auto look = [&](std::optional<double> aperture, double faceRatio = 0.32) {
    auto m = Sitter{}.measure();
    m.aperture = aperture;
    m.faceRatio = faceRatio;
    return Metrics(m, base, std::nullopt);
  };
  EXPECT_FALSE(look(0.3).lookingAway);
  EXPECT_FALSE(look(0.09).lookingAway);  // 30 % of the learned opening: shut
  EXPECT_FALSE(look(0.09).gazeDown);
  EXPECT_TRUE(look(0.2).lookingAway);  // (1 - 2/3) * 80 = 26.7 down
  EXPECT_FALSE(look(std::nullopt).gazeDown);
  // A head pitched 13° down adds to eyes looking 13° down: 26 > 24.
  const auto tipped = look(0.25, 0.35428);
  EXPECT_NEAR(*tipped.flexion, 13, 0.01);
  EXPECT_TRUE(tipped.lookingAway);
  EXPECT_FALSE(look(0.25).lookingAway);
}

TEST(Metrics, BadInputGivesAbsentValuesNotNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto base = uprightBaseline();
  auto m = Sitter{}.measure();
  m.eyeR = m.eyeL;
  EXPECT_EQ(Metrics(m, base, 110), Metrics{});
  EXPECT_FALSE(Metrics::of(m, base, 110));

  m = Sitter{}.measure();
  m.shoulderL = Point{nan, 0};
  m.faceRatio = nan;
  auto damaged = base;
  damaged.gaze->aperture = 0;
  damaged.shoulderWidthCm = 0;
  const auto metrics = Metrics::of(m, damaged, nan);
  ASSERT_TRUE(metrics);
  EXPECT_FALSE(metrics->lean || metrics->flexion || metrics->gazeDown);
  EXPECT_TRUE(std::isfinite(metrics->closer) && std::isfinite(metrics->headTilt));
}

TEST(Metrics, SummaryJoinsThePresentParts) {
  Metrics m;
  EXPECT_EQ(m.summary(), "고개 0.0도");
  m.headForward = 6;
  m.neckDrop = -1.25;
  m.flexion = 3;
  m.shoulderTilt = -2.5;
  m.headTilt = -4;
  m.lean = 1;
  EXPECT_EQ(m.summary(),
            "거북목 +6.0센티 · 머리 내려옴 -1.2센티 · 숙임 +3.0도 · 어깨 2.5도 · 고개 4.0도 · "
            "쏠림 1.0센티");
}

TEST(IssueKind, RawNamesRoundTripForTheLog) {
  ASSERT_EQ(IssueKind::all().size(), 8u);
  for (auto kind : IssueKind::all())
    EXPECT_EQ(IssueKind::fromRaw(kind.raw()), kind);
  EXPECT_EQ(IssueKind(IssueKind::forwardHead).raw(), "forwardHead");
  EXPECT_FALSE(IssueKind::fromRaw("ForwardHead"));
  EXPECT_FALSE(Sensitivity::fromRaw(3));
}

}  // namespace
}  // namespace sodam
