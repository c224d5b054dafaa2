// The focus coach in the day: the ten-second tick that tells the focus
// center the user's state, the habit and goal pills, a change of preset, and
// the menu's preset items and watcher switch.
#include "app/app_delegate.h"
#include "app/focus_page.h"
#include "support/text.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
constexpr double togetherSeconds = 10;
constexpr double togetherToleranceSeconds = 2;
constexpr double habitPillSeconds = 6;
constexpr double goalPillSeconds = 10;
constexpr double modePillSeconds = 1.8;
}  // namespace

void AppDelegate::wireFocus() {
  watcher().onHabit =
      weakCall(self_, [](AppDelegate& app, WatchHabit habit) { app.habitCaught(habit); });
  focus_.onChange = weakCall(self_, [](AppDelegate& app, const FocusPreset& old,
                                       const FocusPreset& now) { app.modeChanged(old, now); });
  focus_.onGoal = weakCall(self_, [](AppDelegate& app, int minutes) { app.goalReached(minutes); });
  togetherTimer_ =
      scheduler_.schedule({togetherSeconds, togetherSeconds, togetherToleranceSeconds},
                          weakCall(self_, [](AppDelegate& app) { app.tickTogether(); }));
}

bool AppDelegate::watcherJudging() const {
  const WatchEngine* watcher = panelModel_.madeWatcher();
  return watcher && watcher->phase() == WatchEngine::Phase::running && !watcher->paused();
}

void AppDelegate::tickTogether() {
  const MateState state = currentState();
  const bool seated =
      watcherJudging() ? panelModel_.madeWatcher()->state() != MateState::away : work_.present();
  focus_.tick(state, seated && state != MateState::away);
  publishStatus();
  remindSessions();
}

void AppDelegate::habitCaught(WatchHabit habit) {
  focus_.count(habit);
  if (dropsFriendlyPills()) return;
  using Mood = PillEyes::Mood;
  const Mood mood = habit == WatchHabit::drowsy ? Mood::sleepy
                    : habit == WatchHabit::away ? Mood::happy
                                                : Mood::curious;
  std::optional<std::string> detail;
  if (habit != WatchHabit::away) detail = "나의 집중코치 · " + std::string(habit.title());
  show(Pill(now(), Pill::Art::say(mood), Theme::white, std::string(habit.say()), detail),
       habitPillSeconds);
}

void AppDelegate::goalReached(int minutes) {
  if (dropsFriendlyPills()) return;
  show(Pill(now(), Pill::Art::say(PillEyes::Mood::love), Theme::white,
            format("%d분 집중했어요!", minutes), "잠깐 일어나 몸을 풀고 와요"),
       goalPillSeconds);
}

void AppDelegate::modeChanged(const FocusPreset& old, const FocusPreset& now) {
  WatchEngine& watcher = panelModel_.watcher();
  if (now.mode != UseMode::watch && watcher.active()) {
    watcher.stop();
    focus_.stop();
  }
  if (now.mode == UseMode::laptop && monitor_->baseline() && !capture_.revoked()) {
    monitor_->setEnabled(now.posture);
  }
  if (now.mode == UseMode::watch && watcher.phase() == WatchEngine::Phase::running) {
    watcher.update(now.habits, now.posture);
  }
  if (old.id != now.id) {
    show(pill(now.symbol, presetColor(now.tint), now.name, std::string(now.mode.detail())),
         modePillSeconds);
  }
  if (social_) social_->republish();
  refresh();
}

FocusPage AppDelegate::focusPage() const {
  return FocusPage::make(focus_, panelModel_.madeWatcher(), calendar_, now());
}

void AppDelegate::pickMode(const std::string& presetId) {
  const FocusPreset* preset = focus_.preset(presetId);
  if (!preset) return;
  const bool watch = preset->mode == UseMode::watch;
  focus_.activate(*preset);
  if (!watch) return;
  panelModel_.reopen();
  panelModel_.requestWatchSetup();
}

void AppDelegate::toggleWatch() {
  if (watcher().active()) {
    watcher().stop();
    focus_.stop();
    refresh();
    return;
  }
  panelModel_.reopen();
  panelModel_.requestWatchSetup();
}

void AppDelegate::startWatching() {
  if (capture_.revoked()) return;
  const FocusPreset& preset = focus_.active();
  if (watcher().phase() == WatchEngine::Phase::setup) {
    watcher().calibrate(preset.habits, preset.posture);
  } else {
    watcher().start(preset.habits, preset.posture);
  }
  panelModel_.setWatchSetupOpen(false);
  refresh();
}

}  // namespace sodam
