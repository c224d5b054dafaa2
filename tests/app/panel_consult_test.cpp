#include <gtest/gtest.h>

#include "app/app_harness.h"
#include "app/panel_model.h"

namespace sodam {
namespace {

using testing::AppHarness;

// Checks whose head bows far enough to be a habit.
void bowedChecks(AppHarness& h, int count) {
  Metrics m;
  m.flexion = 12;
  for (int i = 0; i < count; ++i) {
    h.clock.advance(60);
    h.app->log().record(PostureEntry::Kind::good, {}, m);
  }
}

TEST(PanelConsult, TheChatIsMadeOnceAndHearsTheWeeksHabitsWhenItsPageShows) {
  AppHarness h;
  h.launch(false);
  PanelModel& panel = h.app->panelModel();
  DoctorChat& chat = panel.chat();
  EXPECT_EQ(&panel.chat(), &chat);
  EXPECT_EQ(chat.greeting(), "어디가 불편하세요?");
  EXPECT_FALSE(chat.canTalk());  // the harness offers no model

  bowedChecks(h, 10);
  EXPECT_EQ(chat.greeting(), "어디가 불편하세요?");  // not until the page shows
  panel.open(PanelPage::doctor);
  EXPECT_EQ(chat.greeting(),
            "기록을 보니 고개를 숙여 보는 습관이 있어요.\n오늘은 어디가 불편하세요?");

  // The window opens again on the doctor page: the week is read again.
  panel.setVisible(false);
  chat.update(HabitReport());
  panel.reopen();
  EXPECT_EQ(chat.greeting(),
            "기록을 보니 고개를 숙여 보는 습관이 있어요.\n오늘은 어디가 불편하세요?");
}

TEST(PanelConsult, TheConsultSheetKeepsItsAnswerWhenClosedAndReopened) {
  AppHarness h;
  h.launch(false);
  PanelModel& panel = h.app->panelModel();
  panel.expandConsult(true);  // nothing open to expand
  EXPECT_FALSE(panel.consultExpanded());
  panel.openConsult();
  panel.expandConsult(true);
  EXPECT_TRUE(panel.consultExpanded());
  DoctorChat& chat = panel.chat();
  chat.choose(Consult::Area::eyes);
  chat.choose(Consult::Feeling::stiff);
  chat.choose(Consult::When::sitting);
  panel.closeConsult();
  EXPECT_FALSE(panel.consultOpen());
  EXPECT_FALSE(panel.consultExpanded());
  panel.openConsult();
  EXPECT_EQ(panel.chat().step(), DoctorChat::Step::result);
  EXPECT_TRUE(panel.chat().answer());
}

TEST(PanelConsult, TheAnswersStretchesRunAsOneSessionInOrder) {
  AppHarness h;
  h.launch(false);
  PanelModel& panel = h.app->panelModel();
  panel.open(PanelPage::doctor);
  panel.startStretches({"chest", "yoga", "squeeze"});
  EXPECT_EQ(panel.page(), PanelPage::stretch);
  ASSERT_TRUE(panel.session());
  ASSERT_EQ(panel.session()->items().size(), 2u);
  EXPECT_EQ(panel.session()->items()[0].id, "chest");
  EXPECT_EQ(panel.session()->items()[1].id, "squeeze");
  panel.stopSession();
}

}  // namespace
}  // namespace sodam
