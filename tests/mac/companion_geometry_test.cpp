#include "mac/companion_geometry.h"

#include <gtest/gtest.h>

#include "alerts/pill_center.h"

namespace sodam {
namespace {

TEST(CompanionGeometry, EyesBlinkBrieflyAtTheEndOfEachPeriodUnlessStill) {
  const Date start{100};
  const double blinkStart = blinkEverySeconds - blinkSeconds;
  EXPECT_EQ(eyeOpenness(start, start, false), 1);
  EXPECT_NEAR(eyeOpenness(start, start + blinkStart, false), 1, 1e-9);
  EXPECT_NEAR(eyeOpenness(start, start + blinkStart + blinkSeconds / 2, false), 0, 1e-6);
  EXPECT_NEAR(eyeOpenness(start, start + blinkEverySeconds + blinkStart + blinkSeconds / 4, false),
              1 - std::sqrt(0.5), 1e-6);
  EXPECT_EQ(eyeOpenness(start, start + blinkStart + blinkSeconds / 2, true), 1);
  EXPECT_EQ(eyeOpenness(start, start - 1, false), 1);  // a clock set back
}

TEST(CompanionGeometry, EverythingOnTheHeadStaysBelowTheMenuBar) {
  // A companion pill with a hat hangs this far below the bar.
  const double room = PillCenter::topGap + PillCenter::hatRoom;
  for (PillTrim trim : lookOptions<PillTrim>()) {
    const TrimBox box = trimBox(trim);
    EXPECT_LE(box.top(), room) << lookTitle(trim);
    if (trim == PillTrim::none) continue;
    EXPECT_GT(box.width, 0) << lookTitle(trim);
    EXPECT_GT(box.top(), 0) << lookTitle(trim) << " shows above the head";
  }
}

TEST(CompanionGeometry, PatternSpotsFillTheAreaInShiftedRows) {
  const auto spots = patternSpots({40, 20}, 10);
  EXPECT_EQ(spots,
            (std::vector<Point>{{5, 5}, {15, 5}, {25, 5}, {35, 5}, {10, 15}, {20, 15}, {30, 15}}));
  EXPECT_TRUE(patternSpots({40, 20}, 0).empty());
}

}  // namespace
}  // namespace sodam
