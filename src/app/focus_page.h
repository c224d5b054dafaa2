#pragma once

#include <optional>
#include <string>
#include <vector>

#include "alerts/theme.h"
#include "companion/mate_state.h"
#include "focus/focus_center.h"
#include "focus/watch_engine.h"
#include "support/calendar.h"

namespace sodam {

// The colour of a preset's tint: green, red, orange, blue, coral, gray, in
// turn, so any index has one.
Theme presetColor(int tint);
// A new preset for the editor: a fresh id, the watcher's mode and habits.
// `count` is how many presets exist, which picks its colour.
FocusPreset presetDraft(std::size_t count);

// What the focus page shows: the presets, the running session, the
// watcher's set-up and today's sessions. A plain value for the panel's view,
// `sodamjari focus` and the tests.
struct FocusPage {
  struct Preset {
    std::string id;
    std::string name;
    std::string symbol;
    Theme color;
    bool active = false;
    // "나의 집중코치 · 휴대폰 보기, 꾸벅꾸벅 졸기 · 목표 50분"
    std::string detail;
  };
  // A habit with its count.
  struct Count {
    WatchHabit habit;
    std::string title;
    int count = 0;
  };
  struct Session {
    std::string started;  // "오후 2:05부터"
    std::string focused;  // "52분"
    // The share of the goal reached, 0 to 1; nothing without a goal.
    std::optional<double> goalShare;
    std::optional<std::string> goal;  // "목표 50분 · 100%"
    std::vector<Count> habits;        // the habits counted so far
    MateState state = MateState::focus;
    bool away = false;
  };
  // One line of the set-up's checklist.
  struct Check {
    std::string title;
    bool ok = false;
  };
  struct Watcher {
    WatchEngine::Phase phase = WatchEngine::Phase::off;
    std::string status;  // what the watcher does, in a word or two
    std::vector<Check> checks;
    std::optional<std::string> hint;
    double progress = 0;  // calibration, 0 to 1
    MateState state = MateState::focus;
    std::optional<std::string> note;
    // The sheet's start: the framing is good enough to calibrate.
    bool canStart = false;
  };
  struct Record {
    std::string time;  // "오후 2:05 – 오후 2:57"
    std::string preset;
    std::string focused;  // "50분"
    std::string habits;   // "휴대폰 보기 1번 · 턱 괴기 1번", or empty
  };

  std::vector<Preset> presets;
  bool watchMode = false;  // the active preset uses the watcher
  std::optional<Session> session;
  Watcher watcher;
  std::string todayTotal;          // "오늘 1시간 12분 집중"
  std::vector<Count> todayHabits;  // habits seen today, in the order of the habits
  std::vector<Record> records;     // today's finished sessions, oldest first

  // `watcher` is the application's watcher if it was made.
  static FocusPage make(const FocusCenter& focus, const WatchEngine* watcher,
                        const Calendar& calendar, Date now);
};

}  // namespace sodam
