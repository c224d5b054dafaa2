// End-to-end: frames of the virtual sitter through baseline and evaluation,
// one posture quantity moved at a time, compared with what was done to the body.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <optional>

#include "platform/sensitivity.h"
#include "posture/baseline.h"
#include "posture/issue_kind.h"
#include "posture/metrics.h"
#include "posture/reading.h"
#include "posture/setup_shift.h"
#include "sim/virtual_sitter.h"

namespace sodam {
namespace {

constexpr int framesPerReading = 30;

struct Probe {
  const char* quantity;
  const char* metric;
  double injected;
  void (*apply)(SitterPosture&, double);
  std::optional<double> (*read)(const Metrics&);
  // Reading expected from the geometry of the scene, given the sitter
  // before and after; most quantities read back as they were injected.
  double (*expected)(const VirtualSitter& before, const VirtualSitter& after, double injected);
  double cleanTolerance;
  double noisyTolerance;
};

double asInjected(const VirtualSitter&, const VirtualSitter&, double injected) {
  return injected;
}

// Tolerances. With 1 px of noise per landmark the eye line of ~82 px gives
// the eye depth a per-frame spread of about 1.1 cm and the eye line's roll
// about 1°; a median of 30 frames, on both the baseline's side and the
// reading's, leaves a spread of about 0.35 cm and 0.3°. The torso outline is
// ~560 px wide and the shoulder line ~520 px, so the shoulder depth and roll
// hardly move. Noisy tolerances are about three of those spreads.
const Probe probes[] = {
    // Eye depth from the eye line and shoulder depth from the torso width are
    // both exact for a frontal head; only the noise is left.
    {"forward head", "headForward", 6, [](SitterPosture& p, double v) { p.forwardHeadCm = v; },
     [](const Metrics& m) { return m.headForward; }, asInjected, 0.3, 1.0},
    {"head drop", "neckDrop", 4, [](SitterPosture& p, double v) { p.headDropCm = v; },
     [](const Metrics& m) { return m.neckDrop; }, asInjected, 0.3, 0.6},
    // The proportion model is flat: it ignores that a nod about the eye line
    // carries the chin ~3 cm away from a camera ~60 cm off, which shrinks the
    // chin's drop by ~6% and already makes a 20° nod read 26° for a camera
    // level with the eyes. This camera also looks up at the face from 24°
    // below, where the upright proportion is that of a face tipped back and
    // the division by it overstates a nod by another fifth. Together a nod
    // reads about 1.6 times its size; noise moves 30-frame medians by ±2.5°.
    {"head pitch", "flexion", 20, [](SitterPosture& p, double v) { p.headPitchDeg = v; },
     [](const Metrics& m) { return m.flexion; },
     [](const VirtualSitter&, const VirtualSitter&, double v) { return v * 1.6; }, 1.0, 3.5},
    // A roll in the body's upright plane looks steeper or flatter by
    // cos(elevation of the line of sight) / cos(angle off the optical axis):
    // for the shoulders 5° and 15°, a factor of 1.03; for the eyes 24° and
    // 4°, a factor of 0.915.
    {"shoulder roll", "shoulderTilt", 8, [](SitterPosture& p, double v) { p.shoulderRollDeg = v; },
     [](const Metrics& m) { return m.shoulderTilt; },
     [](const VirtualSitter&, const VirtualSitter&, double v) { return v * 1.03; }, 0.2, 0.4},
    {"head roll", "headTilt", 10, [](SitterPosture& p, double v) { p.headRollDeg = v; },
     [](const Metrics& m) { return std::optional<double>(m.headTilt); },
     [](const VirtualSitter&, const VirtualSitter&, double v) { return v * 0.915; }, 0.2, 1.0},
    {"lean", "lean", 5, [](SitterPosture& p, double v) { p.leanCm = v; },
     [](const Metrics& m) { return m.lean; }, asInjected, 0.2, 0.3},
    // The eyes sit ~26 cm above the camera: a move along the desk shortens
    // the straight line to the camera by less than the move itself. Noise
    // makes the baseline's distance, a 0.3 quantile, about 0.5 cm nearer.
    {"closer", "closer", 10, [](SitterPosture& p, double v) { p.distanceCm -= v; },
     [](const Metrics& m) { return std::optional<double>(m.closer); },
     [](const VirtualSitter& before, const VirtualSitter& after, double) {
       return before.eyeDistanceCm() - after.eyeDistanceCm();
     },
     0.2, 1.5},
};

VirtualSitter sitterWithNoise(double sigmaPx) {
  VirtualSitter sitter;
  sitter.setNoise(sigmaPx, 2024);
  return sitter;
}

std::optional<Baseline> learnUpright(VirtualSitter& sitter) {
  return Baseline::learn(sitter.frames(framesPerReading), sitter.laptop.lidDeg, Date{});
}

Metrics combined(VirtualSitter& sitter, const Baseline& base) {
  std::vector<Metrics> each;
  for (const Measurement& m : sitter.frames(framesPerReading))
    each.emplace_back(m, base, sitter.laptop.lidDeg);
  return Metrics::combine(each);
}

TEST(Accuracy, EachPostureQuantityReadsBackThroughBaselineAndMetrics) {
  std::printf("%-14s %-13s %8s %8s %8s %8s\n", "moved", "metric", "injected", "expected", "clean",
              "1px");
  for (const Probe& probe : probes) {
    double readings[2] = {NAN, NAN};
    double expected = 0;
    for (int noisy = 0; noisy < 2; ++noisy) {
      VirtualSitter sitter = sitterWithNoise(noisy);
      const VirtualSitter upright = sitter;
      const auto base = learnUpright(sitter);
      ASSERT_TRUE(base.has_value());
      probe.apply(sitter.posture, probe.injected);
      expected = probe.expected(upright, sitter, probe.injected);
      const auto value = probe.read(combined(sitter, *base));
      ASSERT_TRUE(value.has_value()) << probe.metric;
      readings[noisy] = *value;
      EXPECT_NEAR(*value, expected, noisy ? probe.noisyTolerance : probe.cleanTolerance)
          << probe.quantity << (noisy ? " with 1 px noise" : " without noise");
    }
    std::printf("%-14s %-13s %8.2f %8.2f %8.2f %8.2f\n", probe.quantity, probe.metric,
                probe.injected, expected, readings[0], readings[1]);
  }
}

TEST(Accuracy, UprightSitterReadsGoodAndSixCentimetresForwardReadsAsForwardHead) {
  for (double noise : {0.0, 1.0}) {
    VirtualSitter sitter = sitterWithNoise(noise);
    const auto base = learnUpright(sitter);
    ASSERT_TRUE(base.has_value());
    EXPECT_TRUE(Baseline::concerns(sitter.frames(framesPerReading), *base).empty());
    EXPECT_FALSE(Reading({combined(sitter, *base)}, Sensitivity::normal).bad());

    sitter.posture.forwardHeadCm = 6;
    const Reading reading({combined(sitter, *base)}, Sensitivity::normal);
    ASSERT_FALSE(reading.issues.empty());
    EXPECT_EQ(reading.issues.front().kind, IssueKind::forwardHead);
    EXPECT_NEAR(*reading.metrics.headForward, 6, 1.0);
  }
}

TEST(Accuracy, AHeadTurnedAwayIsLookingAwayNotABadPosture) {
  VirtualSitter sitter = sitterWithNoise(1);
  const auto base = learnUpright(sitter);
  ASSERT_TRUE(base.has_value());
  sitter.posture.headYawDeg = 40;
  std::vector<Metrics> each;
  for (const Measurement& m : sitter.frames(framesPerReading))
    each.emplace_back(m, *base, sitter.laptop.lidDeg);
  const Reading reading(each, Sensitivity::normal);
  EXPECT_TRUE(reading.away);
  EXPECT_FALSE(reading.bad());
}

TEST(Accuracy, TenDegreesOfLidWithTheSameBodyIsAMovedScreenNotABadPosture) {
  for (double noise : {0.0, 1.0}) {
    VirtualSitter sitter = sitterWithNoise(noise);
    const auto base = learnUpright(sitter);
    ASSERT_TRUE(base.has_value());
    sitter.laptop.lidDeg -= 10;
    const auto frames = sitter.frames(framesPerReading);

    // Whether the lid sensor reports the new angle or the frames alone must tell.
    for (std::optional<double> lid :
         {std::optional<double>(sitter.laptop.lidDeg), std::optional<double>()}) {
      const char* how = lid ? " lid known" : " lid unknown";
      const auto shift = SetupShift::check(frames, *base, lid);
      ASSERT_TRUE(shift.has_value()) << "noise " << noise << how;
      EXPECT_TRUE(shift->strong);
      EXPECT_TRUE(shift->fixable);
      std::vector<Metrics> each;
      for (const Measurement& m : frames)
        each.emplace_back(m, *base, lid);
      EXPECT_FALSE(Reading(each, Sensitivity::normal).bad()) << "noise " << noise << how;
    }
  }
}

}  // namespace
}  // namespace sodam
