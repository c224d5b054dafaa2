#include "posture/probe_format.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

Measurement seated() {
  Measurement m;
  m.size = {1280, 720};
  m.eyeL = {590, 400};
  m.eyeR = {690, 400};
  m.yaw = 0.1;
  m.torsoWidth = 402.6;
  m.faceRatio = 0.41234;
  m.aperture = 0.31;
  m.phone = 0.25f;
  return m;
}

TEST(ProbeFormat, FrameLinesPrintAbsentNumbersAsDashes) {
  EXPECT_EQ(probeFrameLine(7, seated(), 612.4),
            "probe frame 7 size=1280x720 ipd=100 top=612 torso=403 tilt=- ratio=0.412 yaw=5.7 "
            "turn=0.0 pitch=- aperture=0.310 fromBody=false neck=- shape=- phone=0.25");
  EXPECT_EQ(probeFrameLine(8, std::nullopt, 612), "probe frame 8 no face");

  auto tilted = seated();
  tilted.shoulderL = Point{500, 200};
  tilted.shoulderR = Point{780, 210};
  const auto line = probeFrameLine(9, tilted, std::nullopt);
  EXPECT_NE(line.find(" top=- "), std::string::npos);
  EXPECT_NE(line.find(" tilt=2.0 "), std::string::npos) << "right shoulder higher: positive";
}

TEST(ProbeFormat, SideLinesAndTheClosingCount) {
  SideBody side({100, 100}, 50);
  side.torso = SideBody::Torso{30, 130, 60, false};
  side.confL = 0.5f;
  side.confR = 0.25f;
  side.sideways = true;
  EXPECT_EQ(probeSideLine(side),
            "probe side head=50 torso=2.00 clipped=false confL=0.50 confR=0.25 sideways=true "
            "face=-");
  EXPECT_EQ(probeSideLine(SideBody({1, 1}, 0)),
            "probe side head=0 torso=- clipped=- confL=0.00 confR=0.00 sideways=- face=-");
  EXPECT_EQ(probeSideLine(std::nullopt), "probe side none");
  EXPECT_EQ(probeNoPermissionLine(), "probe no camera permission");

  ProbeTally tally;
  tally.add(seated());
  tally.add(std::nullopt);
  auto standIn = seated();
  standIn.fromBody = true;
  standIn.faceRatio.reset();
  tally.add(standIn);
  EXPECT_EQ(probeDoneLine(tally), "probe done frames=3 faces=1 ratios=1");
}

}  // namespace
}  // namespace sodam
