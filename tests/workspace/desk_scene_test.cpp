#include "workspace/desk_scene.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

bool has(const DeskScene& scene, std::string_view part) {
  return !scene.part(part).empty();
}

TEST(DeskScene, EachKindDrawsItsOwnFurniture) {
  struct Row {
    DeskKind kind;
    bool chair, sofa, desk, laptop, monitor, keyboard;
  };
  const Row rows[] = {
      {DeskKind::laptop, true, false, true, true, false, false},
      {DeskKind::laptopStand, true, false, true, true, false, true},
      {DeskKind::monitor, true, false, true, false, true, true},
      {DeskKind::laptopMonitor, true, false, true, true, true, true},
      {DeskKind::standing, false, false, true, false, true, true},
      {DeskKind::cafe, true, false, true, true, false, false},
      {DeskKind::sofa, false, true, false, true, false, false},
  };
  for (const Row& row : rows) {
    const DeskScene scene = DeskScene::of(DeskGeometry(DeskSetup().switched(row.kind)));
    SCOPED_TRACE(std::string(row.kind.raw()));
    EXPECT_EQ(has(scene, "chair"), row.chair);
    EXPECT_EQ(has(scene, "sofa"), row.sofa);
    EXPECT_EQ(has(scene, "desk"), row.desk);
    EXPECT_EQ(has(scene, "laptop"), row.laptop);
    EXPECT_EQ(has(scene, "monitor"), row.monitor);
    EXPECT_EQ(has(scene, "keyboard"), row.keyboard);
    EXPECT_TRUE(has(scene, "body"));
    EXPECT_TRUE(has(scene, "head"));
  }
  // A cushion and a footrest only where the setup has them.
  DeskSetup s;
  EXPECT_FALSE(has(DeskScene::of(DeskGeometry(s)), "cushion"));
  EXPECT_FALSE(has(DeskScene::of(DeskGeometry(s)), "footrest"));
  s.cushion = 4;
  s.footrest = 8;
  EXPECT_TRUE(has(DeskScene::of(DeskGeometry(s)), "cushion"));
  EXPECT_TRUE(has(DeskScene::of(DeskGeometry(s)), "footrest"));
}

TEST(DeskScene, TheSightRunsFromTheEyeToTheScreensTopAndTheMeasuresAreWritten) {
  const DeskGeometry g(DeskSetup().switched(DeskKind::laptopStand));
  const DeskScene scene = DeskScene::of(g);
  const auto sight = scene.part("sight");
  ASSERT_EQ(sight.size(), 1u);
  EXPECT_TRUE(sight[0]->dashed);
  EXPECT_EQ(sight[0]->points, (std::vector<V2>{g.eye, g.screenTop}));
  ASSERT_EQ(scene.labels.size(), 3u);
  EXPECT_EQ(scene.labels[0].text, "시선 21°");
  EXPECT_EQ(scene.labels[1].text, "팔꿈치 97°");
  EXPECT_EQ(scene.labels[2].text, "화면까지 64cm");
  // Everything drawn lies inside the bounds.
  for (const auto& shape : scene.shapes) {
    for (const V2& p : shape.points) {
      EXPECT_LT(scene.low.x, p.x - shape.radius);
      EXPECT_GT(scene.high.y, p.y + shape.radius);
    }
  }
  EXPECT_LT(scene.low.y, 0);  // the floor's line has room under it
}

}  // namespace
}  // namespace sodam
