#include <gtest/gtest.h>

#include "posture/baseline.h"
#include "posture/pinhole.h"
#include "posture/setup_shift.h"

namespace sodam {
namespace {

using pinhole::Sitter;

Sitter upright(bool shoulders = true) {
  Sitter s;
  s.pitchDeg = 10;  // the lid at 100°
  s.shoulders = shoulders;
  return s;
}

std::vector<Measurement> framesOf(Sitter s, int count = 8) {
  auto frames = pinhole::frames(s, count);
  for (auto& m : frames)
    m.faceRatio = 0.32;
  return frames;
}

Baseline learned(bool shoulders = true) {
  return *Baseline::learn(framesOf(upright(shoulders)), 100, Date{});
}

std::optional<SetupShift> shift(bool strong, bool fixable) {
  return SetupShift{strong, fixable};
}

TEST(SetupShift, TheHingeDecidesWhenItMovedAtLeastSixDegrees) {
  struct Case {
    bool shoulders;   // without them the body's shape is unknown
    double headDrop;  // cm: a changed posture changes the shape
    double lid;
    std::optional<SetupShift> expected;
  };
  const Case cases[] = {
      {true, 0, 105.9, std::nullopt},  // the picture did not change either
      {true, 0, 106, shift(false, true)},  {true, 0, 110, shift(true, true)},
      {true, 0, 124.9, shift(true, true)}, {true, 0, 125, shift(true, false)},
      {true, 0, 130, shift(true, false)},  {true, 0, 70, shift(true, false)},
      {false, 0, 110, shift(true, true)},  {false, 0, 115, shift(true, false)},
      {true, 6, 110, std::nullopt},  // a changed body falls through to the picture
      {true, 6, 115, shift(true, false)},
  };
  for (const auto& c : cases) {
    Sitter now = upright(c.shoulders);
    now.eyeY -= c.headDrop;
    now.neck -= c.headDrop;
    EXPECT_EQ(SetupShift::check(framesOf(now), learned(c.shoulders), c.lid), c.expected)
        << c.shoulders << " " << c.headDrop << " " << c.lid;
  }
}

TEST(SetupShift, ThePictureTellsAMovedChairOrATiltedCamera) {
  const auto base = learned();
  Sitter chair = upright();
  chair.eyeZ = 66;  // the same body 20 % farther
  EXPECT_EQ(SetupShift::check(framesOf(chair), base, std::nullopt), shift(true, true));
  chair.eyeZ = 58;  // 5 %: within what a sitter moves
  EXPECT_EQ(SetupShift::check(framesOf(chair), base, std::nullopt), std::nullopt);

  Sitter tilted = upright();
  tilted.pitchDeg = 18;  // everything slides 8° through the picture
  EXPECT_EQ(SetupShift::check(framesOf(tilted), base, std::nullopt), shift(true, true));
  tilted.pitchDeg = 15;
  EXPECT_EQ(SetupShift::check(framesOf(tilted), base, std::nullopt), shift(false, true));
  auto three = framesOf(tilted, 4);
  three[0].fromBody = true;  // fewer than four faces say nothing
  EXPECT_EQ(SetupShift::check(three, base, std::nullopt), std::nullopt);

  // Without shoulders the face proportion must stay to trust a tilt.
  const auto faceOnly = learned(false);
  tilted = upright(false);
  tilted.pitchDeg = 20;
  EXPECT_EQ(SetupShift::check(framesOf(tilted), faceOnly, std::nullopt), shift(true, true));
  auto nodding = framesOf(tilted);
  for (auto& m : nodding)
    m.faceRatio = 0.36;
  EXPECT_EQ(SetupShift::check(nodding, faceOnly, std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace sodam
