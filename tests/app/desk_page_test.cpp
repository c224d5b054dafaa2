#include "app/desk_page.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

TEST(DeskPage, EveryChangeIsKeptAndReadBack) {
  MemoryDefaults defaults;
  DeskPage page(defaults);
  EXPECT_EQ(page.setup(), DeskSetup());
  EXPECT_FALSE(defaults.data("deskSetup").value);  // nothing stored until a change

  page.switchTo(DeskKind::monitor);
  page.set(*findDeskField("seat"), 80);  // held within the slider's range
  page.setShape(ScreenShape::ultra);
  page.setFeet(Feet::dangle);
  EXPECT_EQ(page.setup().seat, 70);
  EXPECT_TRUE(page.showsShape());

  const DeskPage again(defaults);
  EXPECT_EQ(again.setup(), page.setup());
  EXPECT_EQ(again.setup().kind, DeskKind::monitor);
  EXPECT_EQ(again.geometry().feetDangle, page.geometry().feetDangle);
  EXPECT_EQ(again.checks().size(), 6u);
}

TEST(DeskPage, ResettingKeepsTheUsersHeightAndTheKind) {
  MemoryDefaults defaults;
  DeskPage page(defaults);
  page.switchTo(DeskKind::standing);
  EXPECT_FALSE(page.showsFeet());
  page.set(*findDeskField("height"), 181);
  page.set(*findDeskField("desk"), 110);
  page.reset();
  EXPECT_EQ(page.setup().kind, DeskKind::standing);
  EXPECT_EQ(page.setup().desk, 100);
  EXPECT_EQ(page.setup().height, 181);
  EXPECT_EQ(DeskPage(defaults).setup().desk, 100);
}

}  // namespace
}  // namespace sodam
