#include "posture/measurement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "posture/body3d.h"
#include "posture/face_pitch.h"
#include "posture/pinhole.h"
#include "posture/side_body.h"

namespace sodam {
namespace {

using pinhole::f;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Measurement eyesAt(Point l, Point r, double yaw = 0) {
  Measurement m;
  m.size = pinhole::frameSize;
  m.eyeL = l;
  m.eyeR = r;
  m.yaw = yaw;
  return m;
}

TEST(Measurement, UsableNeedsASizedFrameAndTwoFiniteDistinctEyes) {
  EXPECT_TRUE(eyesAt({590, 360}, {690, 360}).usable());
  auto zeroSize = eyesAt({590, 360}, {690, 360});
  zeroSize.size = {0, 0};
  EXPECT_FALSE(zeroSize.usable());
  EXPECT_FALSE(eyesAt({nan, 360}, {690, 360}).usable());
  EXPECT_FALSE(eyesAt({590, 360}, {690, INFINITY}).usable());
  EXPECT_FALSE(eyesAt({640, 360}, {640, 360}).usable());
  EXPECT_FALSE(eyesAt({590, 360}, {690, 360}, nan).usable());
}

TEST(Measurement, TurnIsAgainstTheNoseOffsetAndZeroWithoutANose) {
  auto m = eyesAt({590, 360}, {690, 360});
  EXPECT_EQ(m.turn(), 0);
  m.nose = Point{640 + 0.29 * 100 * 0.5, 330};  // half a quarter turn's offset: asin(0.5)
  EXPECT_NEAR(m.turn(), -30, 1e-9);
  m.nose = Point{640 - 100, 330};  // beyond a quarter turn: clamped
  EXPECT_NEAR(m.turn(), 90, 1e-9);
}

TEST(Measurement, ShapesAreInUnitsOfTheEyeDistanceAndStayFinite) {
  auto m = eyesAt({590, 360}, {690, 360});
  m.torsoWidth = 340;  // at the centre row, beside centred eyes
  m.torsoY = 360;
  EXPECT_NEAR(*m.torsoShape(), 3.4, 1e-9);

  pinhole::Sitter near, far;
  far.eyeZ = 70;
  EXPECT_NEAR(*near.measure().neckShape() / *far.measure().neckShape(), 1, 0.02);

  auto same = near.measure();
  same.eyeR = same.eyeL;
  EXPECT_TRUE(std::isfinite(*same.neckShape()) && std::isfinite(*same.torsoShape()));
  auto broken = near.measure();
  broken.shoulderR = Point{nan, 100};  // a shoulder the reader could not place
  EXPECT_FALSE(broken.shoulders() || broken.shoulderRay() || broken.neckShape());
}

TEST(Body3D, PlacesTheEyesByTheirPixelDistanceAndTheCameraTilt) {
  // 65° across 1280 pixels is a focal length of 1004.6 pixels.
  EXPECT_NEAR(Optics::focal(pinhole::frameSize), 1004.6, 0.05);
  const double depth = f * 6.3 / 100;  // 63.29 cm for eyes 100 px apart
  const Body3D level(eyesAt({590, 360}, {690, 360}), std::nullopt, 0);
  EXPECT_NEAR(level.eye.z, depth, 1e-9);
  EXPECT_NEAR(level.eye.y, 0, 1e-9);
  EXPECT_NEAR(level.eyeDistance, depth, 1e-9);
  const Body3D tilted(eyesAt({590, 360}, {690, 360}), std::nullopt, 10);
  EXPECT_NEAR(tilted.eye.y, depth * std::sin(10 * M_PI / 180), 1e-9);
  EXPECT_NEAR(tilted.eye.z, depth * std::cos(10 * M_PI / 180), 1e-9);
  EXPECT_NEAR(tilted.faceElevation, 10, 1e-9);

  pinhole::Sitter s;
  s.eyeX = -4;
  s.eyeY = 8;
  s.eyeZ = 60;
  const Body3D body(s.measure(), std::nullopt, 0);
  EXPECT_NEAR(body.eye.x, -4, 1e-9);
  EXPECT_NEAR(body.eye.y, 8, 1e-9);
  EXPECT_NEAR(body.eyeDistance, std::sqrt(16 + 64 + 3600), 1e-9);
  // Without a known width the shoulders stand in the eyes' plane and the
  // width follows; a known width measures their depth instead.
  EXPECT_NEAR(body.shoulder->z, 60, 1e-9);
  EXPECT_NEAR(*body.shoulderWidthCm, 34 * 60.0 / 65, 1e-9);
  const Body3D known(s.measure(), 34, 0);
  EXPECT_NEAR(known.shoulder->z, 65, 1e-9);
  EXPECT_NEAR(known.shoulder->y, 8 - 20, 1e-9);
  EXPECT_TRUE(known.torsoMeasured && !known.shoulderWidthCm);

  const auto depthAt = [](double yaw) {
    return Body3D(eyesAt({590, 360}, {690, 360}, yaw), std::nullopt, 0).eye.z;
  };
  EXPECT_NEAR(depthAt(-0.3), depth * std::cos(0.3), 1e-9);
  EXPECT_NEAR(depthAt(1.2), depthAt(0.6), 1e-12);  // the yaw counts up to 0.6
}

TEST(Body3D, RollsAreZeroWhenLevelAndPositiveWhenTheImageRightEndIsHigher) {
  const auto roll = [](Point l, Point r) { return Body3D(eyesAt(l, r), std::nullopt, 0).eyeAngle; };
  EXPECT_NEAR(roll({590, 360}, {690, 360}), 0, 1e-12);
  EXPECT_NEAR(roll({590, 360}, {690, 370}), std::atan2(10, 100) * 180 / M_PI, 1e-9);
  EXPECT_LT(roll({590, 370}, {690, 360}), 0);
  EXPECT_NEAR(roll({640, 400}, {640, 300}), 90, 1e-9);  // vertical: +90, never -90
  pinhole::Sitter s;
  s.shoulderRollDeg = 4;
  EXPECT_GT(*Body3D(s.measure(), std::nullopt, 0).shoulderAngle, 3);
}

// The rigid head of the face pitch model, written out independently.
double proportion(double degrees) {
  const double a = degrees * M_PI / 180;
  return (3.5 * std::cos(a) + 1.8 * std::sin(a)) / (11 * std::cos(a) + 0.5 * std::sin(a));
}

TEST(FacePitch, InvertsTheRigidHeadWithinTheSearchRange) {
  EXPECT_NEAR(FacePitch::degrees(0.42, 0.42), 0, 1e-6);
  for (double pitch : {-55.0, -20.0, 7.5, 30.0, 65.0})
    EXPECT_NEAR(FacePitch::degrees(0.4 * proportion(pitch) / proportion(0), 0.4), pitch, 1e-6);
  // Unreachable proportions give the ends of the search range, 69.9 and -60.2.
  EXPECT_NEAR(FacePitch::degrees(5, 0.4), 1.22 * 180 / M_PI, 1e-6);
  EXPECT_NEAR(FacePitch::degrees(-3, 0.4), -1.05 * 180 / M_PI, 1e-6);
}

TEST(SideBody, JudgesFromTheTorsoFirstThenTheShoulders) {
  struct Case {
    std::optional<SideBody::Torso> torso;
    double shoulderGap;  // px, 0 for no shoulders
    float confL, confR;
    std::optional<bool> sideways;
  };
  const SideBody::Torso narrow{0, 150, 200, false}, middle{0, 220, 200, false};
  const Case cases[] = {
      {narrow, 0, 0, 0, true},                               // 1.5 heads wide
      {SideBody::Torso{0, 150, 200, true}, 0, 0, 0, false},  // clipped: facing the camera
      {middle, 100, 0.5f, 0.5f, true},                       // shoulders 1.0 heads apart
      {middle, 120, 0.5f, 0.5f, false},
      {narrow, 300, 0.5f, 0.5f, true},         // the torso decided
      {std::nullopt, 300, 0.5f, 0.05f, true},  // the far shoulder hidden
      {std::nullopt, 300, 0.35f, 0.05f, std::nullopt},
  };
  for (const auto& c : cases) {
    SideBody body({640, 500}, 100);
    body.torso = c.torso;
    body.confL = c.confL;
    body.confR = c.confR;
    if (c.shoulderGap > 0) {
      body.shoulderL = Point{500, 300};
      body.shoulderR = Point{500 + c.shoulderGap, 300};
    }
    body.judge();
    EXPECT_EQ(body.sideways, c.sideways) << c.shoulderGap << " " << c.confL << " " << c.confR;
  }
}

}  // namespace
}  // namespace sodam
