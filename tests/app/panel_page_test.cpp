#include "app/panel_page.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

TEST(PanelPageTest, ShortcutsAreSidebarPositions) {
  using P = PanelPage;
  const std::array<P, 10> sidebar = {P::home, P::focus,   P::groups, P::dorani, P::stretch,
                                     P::desk, P::history, P::doctor, P::camera, P::settings};
  EXPECT_EQ(orderedPanelPages(), sidebar);
  for (int shortcut = 1; shortcut <= 10; ++shortcut)
    EXPECT_EQ(pageShortcut(pageForShortcut(shortcut).value()), shortcut);
  EXPECT_EQ(pageKeyEquivalent(P::camera), '9');
  EXPECT_EQ(pageKeyEquivalent(P::settings), std::nullopt);

  // Pages reached only from inside the group pages have no shortcut.
  EXPECT_EQ(pageShortcut(P::ranking), std::nullopt);
  EXPECT_EQ(pageShortcut(P::calendar), std::nullopt);
  for (int stray : {0, -1, 11})
    EXPECT_EQ(pageForShortcut(stray), std::nullopt) << stray;
}

}  // namespace
}  // namespace sodam
