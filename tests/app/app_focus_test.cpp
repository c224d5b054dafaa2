#include <gtest/gtest.h>

#include "app/app_harness.h"
#include "app/focus_page.h"

namespace sodam {
namespace {

using testing::AppHarness;
using Phase = WatchEngine::Phase;

const std::string laptopId = FocusPreset::defaults()[0].id;
const std::string watchId = FocusPreset::defaults()[1].id;

// The application with the watcher started on the focus coach's preset
// and calibrated on the sitter as it sits.
struct Watching : AppHarness {
  Watching() {
    launch(true);
    app->perform(MenuAction::pickMode, std::nullopt, watchId);
    app->startWatching();
    advance(11);
  }
};

TEST(AppFocus, PickingTheWatchPresetOpensTheSetUpWithTheCameraOn) {
  AppHarness h;
  h.launch(true);
  h.app->perform(MenuAction::pickMode, std::nullopt, "no such preset");
  h.app->perform(MenuAction::pickMode);
  EXPECT_EQ(h.app->focus().active().id, laptopId);
  EXPECT_TRUE(h.shell.pages.empty());

  h.app->perform(MenuAction::pickMode, std::nullopt, watchId);
  EXPECT_EQ(h.app->focus().active().id, watchId);
  EXPECT_EQ(h.pill(),
            "나의 집중코치 | 공부하는 모습을 카메라가 지켜보며 휴대폰·졸음·자세를 짚어 줘요");
  EXPECT_EQ(h.app->pills().current()->tint, Theme::red);
  EXPECT_EQ(h.shell.pages, std::vector<PanelPage>{PanelPage::home});  // the page last shown
  EXPECT_TRUE(h.app->panelModel().watchSetupOpen());
  EXPECT_EQ(h.app->watcher().phase(), Phase::setup);
  EXPECT_EQ(h.app->monitor().holdReasons(), std::set<std::string>{"watch"});

  // Closing the sheet without starting gives the camera back.
  h.app->panelModel().setWatchSetupOpen(false);
  EXPECT_EQ(h.app->watcher().phase(), Phase::off);
  EXPECT_TRUE(h.app->monitor().holdReasons().empty());

  const auto menu = h.app->quickMenu();
  const auto start = std::find_if(menu.begin(), menu.end(),
                                  [](const MenuItem& i) { return i.title == "집중코치 시작…"; });
  ASSERT_NE(start, menu.end());
  h.app->perform(start->action);
  EXPECT_TRUE(h.app->panelModel().watchSetupOpen());
}

TEST(AppFocus, TheWatcherCalibratesRunsAndEndsFromTheMenu) {
  Watching h;
  EXPECT_FALSE(h.app->panelModel().watchSetupOpen());
  EXPECT_EQ(h.app->watcher().phase(), Phase::running);
  EXPECT_TRUE(h.app->watcher().reference());
  EXPECT_TRUE(h.app->capture().checkPhone()) << "the preset watches the phone";
  EXPECT_EQ(h.app->currentState(), MateState::focus);

  h.advance(10);  // a tick of the ten-second timer
  ASSERT_TRUE(h.app->focus().session());
  EXPECT_EQ(h.app->quickMenu().back().title, "소담자리 종료");
  const auto menu = h.app->quickMenu();
  EXPECT_TRUE(std::any_of(menu.begin(), menu.end(),
                          [](const MenuItem& i) { return i.title == "집중코치 끝내기"; }));

  h.app->perform(MenuAction::toggleWatch);
  EXPECT_EQ(h.app->watcher().phase(), Phase::off);
  EXPECT_FALSE(h.app->focus().session());
  EXPECT_TRUE(h.app->monitor().holdReasons().empty());
}

TEST(AppFocus, TheTickCountsTheSeatFromTheWatcherWhileItRuns) {
  Watching h;
  h.advance(60);
  ASSERT_TRUE(h.app->focus().session());
  const double focused = h.app->focus().session()->focused;
  EXPECT_GE(focused, 50);
  // Reading on paper: no input for long, yet the watcher sees the user.
  h.machine.power.idle = 600;
  h.advance(30);
  EXPECT_NEAR(h.app->focus().session()->focused, focused + 30, 0.001);

  h.machine.sitter.present = false;
  h.advance(30);
  EXPECT_EQ(h.app->watcher().state(), MateState::away);
  EXPECT_EQ(h.app->currentState(), MateState::away);
  EXPECT_TRUE(h.app->focus().session()->away);
  h.advance(180);
  EXPECT_FALSE(h.app->focus().session()) << "three minutes away end the session";
  ASSERT_EQ(h.app->focus().records().size(), 1u);
  EXPECT_EQ(h.app->focus().records().front().preset, "나의 집중코치");

  // Asleep, the watcher judges nothing and the day's own rules decide.
  h.machine.sitter.present = true;
  h.app->willSleep();
  EXPECT_TRUE(h.app->watcher().paused());
  h.app->didWake();
  EXPECT_FALSE(h.app->watcher().paused());
}

TEST(AppFocus, AHabitIsCountedAlwaysAndShownWhenNothingElseIsUp) {
  Watching h;
  h.advance(10);
  ASSERT_TRUE(h.app->focus().session());
  h.app->watcher().onHabit(WatchHabit::drowsy);
  EXPECT_EQ(h.pill(), "졸리면 일어나서 기지개 한 번 켜요 | 나의 집중코치 · 꾸벅꾸벅 졸기");
  EXPECT_EQ(h.app->pills().current()->art.describe(),
            Pill::Art::say(PillEyes::Mood::sleepy).describe());
  h.app->watcher().onHabit(WatchHabit::away);
  EXPECT_EQ(h.pill(), "다시 왔네요. 이어서 해요 | ");
  h.advance(7);
  EXPECT_EQ(h.pill(), "");

  h.app->screenLocked();
  h.app->watcher().onHabit(WatchHabit::chinRest);
  EXPECT_EQ(h.pill(), "");
  const Date now = h.clock.now();
  EXPECT_EQ(h.app->focus().habitCount(WatchHabit::chinRest, now), 1);
  EXPECT_EQ(h.app->focus().habitCount(WatchHabit::drowsy, now), 1);
}

TEST(AppFocus, TheGoalPillAndTheStandNudgeFollowThePreset) {
  Watching h;
  FocusPreset quick = h.app->focus().active();
  quick.goal = 1;
  quick.stretch = false;
  h.app->focus().save(quick);
  h.advance(60);  // the session began at the first tick, ten seconds after the launch
  EXPECT_EQ(h.pill(), "1분 집중했어요! | 잠깐 일어나 몸을 풀고 와요");
  h.app->work().onNudge(WorkLife::Nudge::stand(50));
  EXPECT_EQ(h.pill(), "1분 집중했어요! | 잠깐 일어나 몸을 풀고 와요")
      << "no stretch nudge for a preset without it";
}

TEST(AppFocus, ChangingToTheLaptopPresetStopsTheWatcherAndSetsTheChecks) {
  Watching h;
  FocusPreset noPosture = FocusPreset::defaults()[0];
  noPosture.posture = false;
  h.app->focus().save(noPosture);
  h.app->perform(MenuAction::pickMode, std::nullopt, laptopId);
  EXPECT_EQ(h.app->watcher().phase(), Phase::off);
  EXPECT_FALSE(h.app->monitor().enabled());
  EXPECT_EQ(h.pill(), "자세만 확인 | 노트북을 쓰는 동안 자세만 살피고, 흐트러지면 알려 줘요");
}

TEST(AppFocus, EditingTheRunningPresetChangesWhatIsWatched) {
  Watching h;
  FocusPreset edited = h.app->focus().active();
  edited.habits = {WatchHabit::mouth};
  h.app->focus().save(edited);
  EXPECT_EQ(h.app->watcher().habits(), std::vector<WatchHabit>{WatchHabit::mouth});
  EXPECT_FALSE(h.app->capture().checkPhone());
  EXPECT_EQ(h.app->watcher().phase(), Phase::running);
}

TEST(FocusPageModel, ShowsThePresetsTheSessionAndTodaysRecords) {
  Watching h;
  h.advance(100);
  h.app->watcher().onHabit(WatchHabit::phone);
  const auto page =
      FocusPage::make(h.app->focus(), &h.app->watcher(), h.app->calendar(), h.clock.now());
  ASSERT_EQ(page.presets.size(), 2u);
  EXPECT_TRUE(page.presets[1].active);
  EXPECT_EQ(page.presets[1].detail,
            "나의 집중코치 · 휴대폰 보기, 꾸벅꾸벅 졸기, 턱 괴기 · 목표 50분");
  EXPECT_EQ(page.presets[0].detail, "자세만 확인");
  ASSERT_TRUE(page.session);
  EXPECT_EQ(page.session->goal, "목표 50분 · 3%");
  ASSERT_EQ(page.session->habits.size(), 1u);
  EXPECT_EQ(page.session->habits[0].title, "휴대폰 보기");
  EXPECT_EQ(page.watcher.status, "지켜보는 중");
  EXPECT_EQ(page.watcher.checks.size(), 3u);

  h.app->perform(MenuAction::toggleWatch);
  const auto after =
      FocusPage::make(h.app->focus(), &h.app->watcher(), h.app->calendar(), h.clock.now());
  EXPECT_FALSE(after.session);
  ASSERT_EQ(after.records.size(), 1u);
  EXPECT_EQ(after.records[0].preset, "나의 집중코치");
  EXPECT_EQ(after.records[0].habits, "휴대폰 보기 1번");
  EXPECT_EQ(after.todayTotal, "오늘 2분 집중");

  EXPECT_EQ(presetColor(7), Theme::red);
  EXPECT_EQ(presetColor(-1), Theme::gray);
}

}  // namespace
}  // namespace sodam
