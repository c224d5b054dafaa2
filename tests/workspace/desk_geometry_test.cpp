#include "workspace/desk_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace sodam {
namespace {

void expectNear(V2 actual, V2 expected, double within = 1e-6) {
  EXPECT_NEAR(actual.x, expected.x, within);
  EXPECT_NEAR(actual.y, expected.y, within);
}

DeskSetup of(DeskKind kind) {
  return DeskSetup().switched(kind);
}

TEST(DeskGeometry, TheDefaultLaptopPlacesEveryJointAndEdge) {
  const DeskGeometry g{DeskSetup()};
  EXPECT_DOUBLE_EQ(g.seatTop, 45);
  expectNear(g.hip, {-24, 54});
  // The leg just reaches the floor: the knee sits 3 above the seat.
  EXPECT_DOUBLE_EQ(g.legReach, 45);
  EXPECT_DOUBLE_EQ(g.feetDangle, 0);
  expectNear(g.knee, {17.215561, 48});
  expectNear(g.ankle, {20.215561, 8.5});
  expectNear(g.toe, {37.215561, 3.5});
  expectNear(g.shoulder, {-23, 102.8});
  expectNear(g.eye, {-15, 121.84});
  expectNear(g.head, {-21, 124.34});
  expectNear(g.elbowRest, {-21, 68.8});
  EXPECT_DOUBLE_EQ(g.seatBack, -38);
  EXPECT_NEAR(g.seatFront, 9.215561, 1e-6);
  expectNear(g.keyboard, {21.9858, 75.4});
  expectNear(*g.laptopHinge, {34, 73.6});
  expectNear(g.screenTop, {41.129068, 93.186953});
  expectNear(g.screenBottom, {34.752444, 75.667324});
  EXPECT_EQ(g.camera, g.screenTop);
  EXPECT_FALSE(g.monitorTop.has_value());
  // The hands rest on the keys with the elbow bent below the line.
  expectNear(g.hand, {21.9858, 76.9});
  expectNear(g.elbow, {-10.174389, 73.897957});
  EXPECT_TRUE(g.handReaches());
  EXPECT_NEAR(g.elbowDegrees(), 108.596890, 1e-5);
  EXPECT_NEAR(g.viewDistance(), 64.826275, 1e-5);
  EXPECT_NEAR(g.gazeDownDegrees(), 35.248581, 1e-5);
}

TEST(DeskGeometry, AHighSeatLeavesTheFeetHangingAndAShortThighKeepsTheKneeUnderTheHip) {
  DeskSetup high;
  high.seat = 70;  // more than 16 above the natural reach of 45.34
  const DeskGeometry dangling(high);
  EXPECT_DOUBLE_EQ(dangling.legReach, 45.34 + 16);
  EXPECT_NEAR(dangling.feetDangle, 8.66, 1e-9);

  // Feet far above the seat lift the knee more than a thigh's length above
  // the hip: the root's argument stays at 0.
  DeskSetup cramped;
  cramped.seat = 30;
  cramped.footrest = 60;
  const DeskGeometry g(cramped);
  EXPECT_GT(g.knee.y - g.hip.y, DeskGeometry::thighShare * 170);
  EXPECT_DOUBLE_EQ(g.knee.x, g.hip.x);
}

TEST(DeskGeometry, TheFeetGoOnTheFootrestOnlyWhenItIsThereOrTold) {
  DeskSetup s;
  s.footrest = 0.5;  // not above half a centimetre: still the floor
  EXPECT_DOUBLE_EQ(DeskGeometry(s).footY, 0);
  s.footrest = 8;
  EXPECT_DOUBLE_EQ(DeskGeometry(s).footY, 8);
  s.feet = Feet::dangle;
  const DeskGeometry hanging(s);
  EXPECT_DOUBLE_EQ(hanging.footY, 0);
  // Dangling legs hang 3 short of the drop, within 12 of the natural reach.
  EXPECT_DOUBLE_EQ(hanging.legReach, 45 - 3);
  EXPECT_DOUBLE_EQ(hanging.feetDangle, 3);
}

TEST(DeskGeometry, AGivenReachKeepsTheLegsLengthWhileTheSeatMoves) {
  DeskSetup s;
  s.seat = 55;
  const DeskGeometry dragged(s, 45);
  EXPECT_DOUBLE_EQ(dragged.legReach, 45);
  EXPECT_DOUBLE_EQ(dragged.feetDangle, 10);
}

TEST(DeskGeometry, AKeyboardOutOfReachStraightensTheArmShortOfIt) {
  DeskSetup s = of(DeskKind::monitor);
  s.gap = 60;  // the keyboard stays at 16 from the edge
  const DeskGeometry g(s);
  EXPECT_FALSE(g.handReaches());
  const double arm = (DeskGeometry::upperArmShare + DeskGeometry::forearmShare) * 170;
  EXPECT_NEAR((g.hand - g.shoulder).length(), arm, 1e-9);
  EXPECT_LT((g.hand - g.shoulder).length(), (g.keyTarget() - g.shoulder).length());
  EXPECT_NEAR(g.elbowDegrees(), 180, 1e-6);

  // Keys right at the shoulder: the solver divides by at least 1.
  DeskSetup close = of(DeskKind::monitor);
  close.desk = 99.5;
  close.gap = -27;
  const DeskGeometry folded(close);
  EXPECT_TRUE(folded.handReaches());
  EXPECT_FALSE(std::isnan(folded.elbow.x));
}

TEST(DeskGeometry, ASlumpBendsTheTrunkUntilTheEyeFallsThatFar) {
  DeskSetup s;
  s.slump = 0.05;
  EXPECT_DOUBLE_EQ(DeskGeometry(s).hunch, 0);
  EXPECT_DOUBLE_EQ(DeskGeometry(s).trunkAngle, 0);
  s.slump = 3;
  const DeskGeometry g(s);
  EXPECT_NEAR(g.hunch, 0.225677, 1e-6);
  EXPECT_NEAR(DeskGeometry(DeskSetup()).eye.y - g.eye.y, 3, 1e-4);
  EXPECT_NEAR(g.trunkAngle, -8 * g.hunch, 1e-12);
  EXPECT_NEAR(g.neckAngle, -20 * g.hunch, 1e-12);
  // A camera's fit lengthens the trunk by half.
  s.slump.reset();
  s.sitFit = 4;
  EXPECT_NEAR(DeskGeometry(s).shoulder.y, 104.8, 1e-9);
}

TEST(DeskGeometry, EachKindPutsItsScreensWhereItsTableSays) {
  DeskSetup lm = of(DeskKind::laptopMonitor);
  lm.depth = 40;
  const DeskGeometry both(lm);
  EXPECT_DOUBLE_EQ(both.laptopHinge->x, 30);
  // The camera rides on the laptop beside the monitor of record.
  EXPECT_EQ(both.camera, *both.laptopTop);
  EXPECT_EQ(both.screenTop, *both.monitorTop);
  expectNear(*both.monitorBottom, {40, 82});
  const double P = 24 * 2.54 * 9 / std::sqrt(337.0) + 3;
  const double tilt = 8 * std::numbers::pi / 180;
  expectNear(*both.monitorTop, V2{40, 82} + V2{P * std::sin(tilt), P * std::cos(tilt)});
  expectNear(both.keyboard, {16, 73.8});

  const DeskGeometry stand(of(DeskKind::laptopStand));
  expectNear(*stand.laptopHinge, {42, 72 + 14 + 1.6});
  expectNear(stand.keyboard, {16, 73.8});

  const DeskGeometry sofa(of(DeskKind::sofa));
  EXPECT_DOUBLE_EQ(sofa.hip.x, -48);
  EXPECT_DOUBLE_EQ(sofa.surface, std::max(sofa.hip.y, sofa.knee.y) + 7);
  expectNear(*sofa.laptopHinge, {sofa.knee.x + 4, sofa.surface + 1.6});

  const DeskGeometry standing(of(DeskKind::standing));
  expectNear(standing.hip, {-22, 90.1});
  expectNear(standing.eye, {-14, 159.12});
  EXPECT_DOUBLE_EQ(standing.seatTop, 0);
  EXPECT_EQ(standing.camera, *standing.monitorTop);
  expectNear(standing.neck, {(standing.shoulder.x + standing.head.x) / 2 + 1,
                             standing.shoulder.y + 0.42 * (standing.head.y - standing.shoulder.y)});
}

TEST(ScreenShape, HeightsAndWidthsPerInchFollowTheAspect) {
  EXPECT_NEAR(ScreenShape(ScreenShape::wide).heightPerInch(), 1.24526, 1e-5);
  EXPECT_NEAR(ScreenShape(ScreenShape::wide).widthPerInch(), 2.21380, 1e-5);
  EXPECT_NEAR(ScreenShape(ScreenShape::ultra).widthPerInch(), 2.33463, 1e-5);
  EXPECT_DOUBLE_EQ(ScreenShape(ScreenShape::vertical).heightPerInch(),
                   ScreenShape(ScreenShape::wide).widthPerInch());
}

}  // namespace
}  // namespace sodam
