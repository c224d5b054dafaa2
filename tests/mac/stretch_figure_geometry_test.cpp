#include "mac/stretch_figure_geometry.h"

#include <gtest/gtest.h>

#include "coach/stretch_library.h"

namespace sodam {
namespace {

using Arm = FigureSkeleton::Arm;

TEST(StretchFigure, AtRestFacingTheFigureIsSymmetric) {
  const auto f = figure::front(Pose::front());
  EXPECT_NEAR(f.neck.x, 0, 1e-12);
  EXPECT_NEAR(f.shoulder[Arm::right].x, -f.shoulder[Arm::left].x, 1e-12);
  EXPECT_NEAR(f.elbow[Arm::right].x, -f.elbow[Arm::left].x, 1e-12);
  EXPECT_GT(f.head.y, f.neck.y);
  // The forearms turn in towards the lap.
  EXPECT_LT(f.wrist[Arm::right].x, f.elbow[Arm::right].x);
}

TEST(StretchFigure, FacingTheFiguresRightIsTheScreensRight) {
  const Pose peak = StretchLibrary::find("neckSide")->motion.keys[2].pose;
  const auto f = figure::front(peak);
  // The right hand over the head, the head tilted to the right.
  EXPECT_GT(f.elbow[Arm::right].y, f.head.y);
  EXPECT_GT(f.head.x, 0);
  Pose bent;
  bent.spineSide = 20;
  EXPECT_GT(figure::front(bent).neck.x, 1);
  Pose shrugged;
  shrugged.shrugL = 1;
  const auto s = figure::front(shrugged);
  EXPECT_GT(s.shoulder[Arm::left].y, s.shoulder[Arm::right].y);
}

TEST(StretchFigure, SidewaysTheFigureFacesRightWithTheFarArmBehind) {
  const Pose chest = StretchLibrary::find("chest")->motion.keys[2].pose;
  const auto f = figure::side(chest);
  EXPECT_LT(f.elbow[Arm::right].x, f.shoulder[Arm::right].x);  // arms back
  EXPECT_TRUE(f.behind[Arm::left]);
  EXPECT_FALSE(f.behind[Arm::right]);
  EXPECT_LT(f.neck.x, 0);  // the trunk arches back
  Pose rounded = Pose::side();
  rounded.spineFlex = 20;
  rounded.neckFlex = 26;
  const auto r = figure::side(rounded);
  EXPECT_GT(r.neck.x, 1);
  EXPECT_LT(r.face.y, r.head.y);  // looking down
}

TEST(StretchFigure, HighlightsLieOnTheirPart) {
  const auto f = figure::front(Pose::front());
  const auto left = figure::glows(f, {Focus::neckSide(-1)}, Stage::front);
  ASSERT_EQ(left.size(), 1u);
  EXPECT_LT(left[0].centre.x, 0);
  EXPECT_EQ(figure::glows(f, {{Focus::Part::shoulders}}, Stage::front).size(), 2u);
  const auto wrists = figure::glows(f, {{Focus::Part::wrists}}, Stage::front);
  EXPECT_EQ(wrists[1].centre, f.wrist[Arm::right]);
}

}  // namespace
}  // namespace sodam
