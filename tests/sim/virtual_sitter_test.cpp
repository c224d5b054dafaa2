#include "sim/virtual_sitter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "posture/measurement.h"
#include "support/numeric.h"

namespace sodam {
namespace {

Point mid(Point a, Point b) {
  return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

double eyePixels(const Measurement& m) {
  return std::hypot(m.eyeR.x - m.eyeL.x, m.eyeR.y - m.eyeL.y);
}

// Vertical angle of an image row above the frame's centre.
double rayDeg(double y, const Measurement& m) {
  return deg(std::atan((y - m.size.height / 2) / Optics::focal(m.size)));
}

Measurement seen(VirtualSitter sitter) {
  auto m = sitter.render();
  EXPECT_TRUE(m.has_value());
  return m.value_or(Measurement{});
}

TEST(VirtualSitter, FrontalHeadOnTheAxisShowsTheEyesAtFocalTimesSpacingOverDepth) {
  for (double depth : {35.0, 55.0, 90.0}) {
    VirtualSitter sitter;
    sitter.laptop.lidDeg = 90;  // camera level, 21.6 cm above the hinge
    sitter.build.eyeHeightCm = sitter.laptop.displayHeightCm + LidCamera::bezelCm;
    sitter.posture.distanceCm = depth;
    const Measurement m = seen(sitter);
    EXPECT_NEAR(eyePixels(m), Optics::focal(m.size) * 6.3 / depth, 1e-9) << depth;
    EXPECT_NEAR(mid(m.eyeL, m.eyeR).x, 640, 1e-9);
    EXPECT_NEAR(mid(m.eyeL, m.eyeR).y, 360, 1e-9);
    EXPECT_NEAR(sitter.eyeDistanceCm(), depth, 1e-9);
  }
}

TEST(VirtualSitter, PostureMovesTheImageTheWayTheBodyMoves) {
  const Measurement upright = seen(VirtualSitter{});
  const Point eyes = mid(upright.eyeL, upright.eyeR);
  auto with = [](auto change) {
    VirtualSitter sitter;
    change(sitter.posture);
    return seen(sitter);
  };

  const Measurement closer = with([](SitterPosture& p) { p.distanceCm -= 10; });
  EXPECT_GT(eyePixels(closer), eyePixels(upright) * 1.1);

  const Measurement dropped = with([](SitterPosture& p) { p.headDropCm = 4; });
  EXPECT_LT(mid(dropped.eyeL, dropped.eyeR).y, eyes.y - 20);
  EXPECT_EQ(dropped.shoulderL, upright.shoulderL);

  // The face's forward tilt turns about the eye line: the eyes stay, and the
  // nose comes closer to the chin's depth below them, so the proportion grows.
  const Measurement nodded = with([](SitterPosture& p) { p.headPitchDeg = 20; });
  EXPECT_NEAR(mid(nodded.eyeL, nodded.eyeR).y, eyes.y, 1e-9);
  EXPECT_GT(*nodded.faceRatio, *upright.faceRatio + 0.02);

  const Measurement leaned = with([](SitterPosture& p) { p.leanCm = 5; });
  EXPECT_GT(mid(leaned.eyeL, leaned.eyeR).x, eyes.x + 40);
  EXPECT_EQ(leaned.shoulderR, upright.shoulderR);

  // Counter-clockwise in the image, whose y axis points up.
  const Measurement rolled = with([](SitterPosture& p) { p.headRollDeg = 10; });
  EXPECT_GT(rolled.eyeR.y, rolled.eyeL.y + 10);
  const Measurement shrugged = with([](SitterPosture& p) { p.shoulderRollDeg = -6; });
  EXPECT_LT(shrugged.shoulderR->y, shrugged.shoulderL->y - 20);

  // Turning to the image's left narrows the eye line and moves the nose left.
  const Measurement turned = with([](SitterPosture& p) { p.headYawDeg = 40; });
  EXPECT_NEAR(turned.eyeR.x - turned.eyeL.x, (upright.eyeR.x - upright.eyeL.x) * std::cos(rad(40)),
              0.5);
  EXPECT_LT(turned.nose->x, mid(turned.eyeL, turned.eyeR).x - 10);
  EXPECT_DOUBLE_EQ(turned.yaw, rad(40));
}

TEST(VirtualSitter, LidTiltShiftsEyesAndShouldersByTheSameAngle) {
  VirtualSitter sitter;
  const Measurement before = seen(sitter);
  sitter.laptop.lidDeg = 100;
  const Measurement after = seen(sitter);
  const double eyeShift = rayDeg(mid(after.eyeL, after.eyeR).y, after) -
                          rayDeg(mid(before.eyeL, before.eyeR).y, before);
  const double shoulderShift = rayDeg(mid(*after.shoulderL, *after.shoulderR).y, after) -
                               rayDeg(mid(*before.shoulderL, *before.shoulderR).y, before);
  // The camera also travels 3.8 cm along its arc round the hinge; seen from
  // 60 cm that moves the two rays apart by about a degree at most.
  EXPECT_NEAR(eyeShift, 10, 1.2);
  EXPECT_NEAR(shoulderShift, 10, 1.2);
  EXPECT_NEAR(eyeShift, shoulderShift, 1.5);
}

TEST(VirtualSitter, WhatTheCameraCannotSeeIsAbsent) {
  VirtualSitter sitter;
  sitter.present = false;
  EXPECT_FALSE(sitter.render().has_value());

  // Leaning the screen far back tilts the view up past the shoulders.
  sitter.present = true;
  sitter.laptop.lidDeg = 130;
  const Measurement tilted = seen(sitter);
  EXPECT_FALSE(tilted.shoulderL || tilted.shoulderR || tilted.torsoWidth || tilted.torsoY);

  sitter.laptop.lidDeg = 110;
  sitter.posture.sideCm = 80;  // beside the laptop, out of the picture
  EXPECT_FALSE(sitter.render().has_value());
}

TEST(VirtualSitter, NoiseIsSeededAndHasTheAskedSpread) {
  VirtualSitter a, b;
  a.setNoise(1.0, 7);
  b.setNoise(1.0, 7);
  EXPECT_EQ(a.frames(5), b.frames(5));

  const Measurement clean = seen(VirtualSitter{});
  double sum = 0, squares = 0;
  const auto noisy = a.frames(2000);
  for (const Measurement& m : noisy) {
    const double d = m.eyeL.x - clean.eyeL.x;
    sum += d;
    squares += d * d;
  }
  const double n = static_cast<double>(noisy.size());
  EXPECT_NEAR(sum / n, 0, 0.08);
  EXPECT_NEAR(std::sqrt(squares / n), 1.0, 0.05);
}

}  // namespace
}  // namespace sodam
