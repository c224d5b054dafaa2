#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/app_delegate.h"
#include "coach/stretch.h"
#include "platform/alert_style.h"
#include "platform/defaults.h"
#include "platform/lockdown.h"
#include "platform/sensitivity.h"
#include "sim/buffered_defaults.h"
#include "sim/coach_narrator.h"
#include "sim/scenario.h"
#include "sim/sim_machine.h"
#include "sim/stretch_follower.h"
#include "sim/study_room.h"
#include "sim/transcript.h"
#include "support/calendar.h"
#include "support/manual_scheduler.h"

namespace sodam {

// What a simulated day came to.
struct SimulationSummary {
  int checks = 0;
  std::optional<double> goodShare;
  std::map<std::string, int> alertsByIssue;  // by the issue's title
  int corrections = 0;
  double seatedMinutes = 0;
  int breaks = 0;
  double simulatedSeconds = 0;
  double cameraSeconds = 0;
  int framesProcessed = 0;
  // When the focus watcher ran: the day's focus and habits, and how much of
  // each analysed frame its light reading asked for.
  struct Focus {
    double minutes = 0;
    std::vector<std::pair<std::string, int>> habits;  // by title, in the habits' order
    double framesPerSecond = 0;                       // analysed while the camera ran
    double maskShare = 0;                             // of the analysed frames
    double bodyShare = 0;
    double sceneShare = 0;
  };
  std::optional<Focus> focus;
  // The run was asked to stop before the scenario's end.
  bool stopped = false;

  // 도란이 at the end of the run.
  struct Companion {
    int today = 0;
    int total = 0;
    int level = 1;
    std::string title;
    std::optional<std::string> nextTitle;
    int pointsToNext = 0;
  };
  Companion companion;
  // A run over several days: a row for each day, and the week's insights.
  struct DayRow {
    std::string label;  // "3월 9일 (월)"
    int checks = 0;
    std::optional<double> goodShare;
    double seatedMinutes = 0;
    int points = 0;
  };
  std::vector<DayRow> days;
  std::vector<std::string> insights;
  // The camera watch's record of the run, oldest first, one line each.
  std::vector<std::string> cameraUses;
  // A day with the study group: its rankings, one line each.
  std::vector<std::string> group;

  double cameraShare() const { return simulatedSeconds > 0 ? cameraSeconds / simulatedSeconds : 0; }
  std::vector<std::string> lines() const;

 private:
  void addCompanionLines(std::vector<std::string>& out) const;
};

// The whole product on a simulated laptop: the real application core, wired
// as on the Mac, with the virtual sitter before the camera, a scripted
// machine, and a transcript for a screen. A scenario drives the day; the
// sitter sits up a few seconds after an alert, as a person would, and goes
// through the learning guide when it opens. Main thread only.
class Simulation {
 public:
  struct Options {
    std::optional<bool> live;  // overrides the scenario's mode
    std::optional<Sensitivity> sensitivity;
    std::optional<AlertStyle> style;
    // Virtual seconds per real second; none runs as fast as it can.
    std::optional<double> speed;
    // Waits the given real seconds; called only with a speed.
    std::function<void(double)> sleep;
    // The real process, for the hardening checks; none looks harmless.
    const ProcessInspector* process = nullptr;
    // How the sitter follows a stretch routine.
    StretchFollower::Habits follower = StretchFollower::good();
    // Asked before each step; true ends the run there.
    std::function<bool()> stopRequested;
    // The real privacy lock to engage; none engages nothing.
    Confinement* confinement = nullptr;
    // The user signed in, with a study group of two simulated friends on an
    // in-process double of the service.
    bool group = false;
  };

  // The sitter's reaction time to an alert pill.
  static constexpr double reactionSeconds = 3;
  // The sitter looks at a finished routine this long before closing it.
  static constexpr double doneLookSeconds = 3;

  // `day` is any moment of the simulated day in the calendar.
  Simulation(Scenario scenario, Defaults& defaults, Calendar calendar, Date day,
             Transcript::Sink sink, Options options);
  ~Simulation();

  // The day a run starting `today` simulates: today, or the day after the
  // last record when earlier runs already reach today, so that runs on the
  // same records follow each other like days, but never later than
  // tomorrow. A record dated more than a day after `today` comes from a
  // wrong clock and decides nothing: it must not carry the day, and with it
  // the 30-day prune, into its future.
  static Date dayToSimulate(Defaults& defaults, const Calendar& calendar, Date today);

  SimulationSummary run();
  // Launches, then runs a coach session of these stretches, or of the day's
  // routine without any, until it is finished and closed. The lines of its
  // summary; empty when it never finished.
  std::vector<std::string> runStretch(std::optional<std::vector<Stretch>> items);
  // A line of the transcript from outside the product, stamped like the rest.
  void say(const std::string& text) { transcript_.say(text); }
  AppDelegate& app() { return *app_; }
  const Lockdown& lock() const { return *lock_; }
  const Clock& clock() const { return clock_; }

 private:
  Date dayStart(int day) const;
  Date momentOf(const ScenarioEvent& event) const;
  Date end() const;
  void apply(const ScenarioEvent& event);
  void apply(const ScenarioChange& change);
  void step();
  void step(double seconds);
  void watchTheScreen();
  void actLikeAUser();
  void stretchAlong();
  void takeNudge();
  void updateIdle();
  void watchTheDay();
  // Each level 도란이 reaches.
  void watchTheCompanion();
  SimulationSummary summarize() const;
  void summarizeCompanion(SimulationSummary& summary) const;
  // The focus coach, as the user and the transcript meet it.
  void followFocus();
  void applyStudy(const ScenarioChange& change);
  void studyLikeAUser();
  void tellWatcher();
  void tellFocus();
  std::optional<SimulationSummary::Focus> summarizeFocus() const;

  Scenario scenario_;
  Options options_;
  BufferedDefaults defaults_;
  Calendar calendar_;
  Date midnight_;
  ManualClock clock_;
  ManualScheduler scheduler_;
  SimMachine machine_;
  Transcript transcript_;
  NoConfinement confinement_;
  QuietProcess quietProcess_;
  std::unique_ptr<Lockdown> lock_;
  std::unique_ptr<LogLink> link_;
  // Before the application, which holds its cloud ports.
  std::unique_ptr<StudyRoom> room_;
  std::unique_ptr<AppDelegate> app_;

  std::optional<Date> inputPauseSince_;
  std::optional<Date> leftChairAt_;
  bool sawAlert_ = false;
  std::optional<Date> sitUpAt_;
  std::optional<Date> lastReport_;
  long long blurTenths_ = 0;
  CoachSession* followed_ = nullptr;
  std::unique_ptr<StretchFollower> follower_;
  std::unique_ptr<CoachNarrator> narrator_;
  std::optional<Date> doneAt_;
  bool takesNudge_ = false;
  std::vector<std::string> stretchSummary_;
  bool asleep_ = false;
  std::optional<Date> shownDay_;
  int shownLevel_ = 0;

  // What the transcript last told of the focus coach.
  struct FocusTold {
    WatchEngine::Phase phase = WatchEngine::Phase::off;
    std::optional<MateState> state;
    std::optional<std::string> note;
    std::optional<std::string> hint;
    bool session = false;
    std::size_t records = 0;
    Signal<>::Token watcherToken = 0;
    Signal<>::Token focusToken = 0;
  };
  FocusTold focusTold_;
  bool watcherRan_ = false;
  bool dozing_ = false;
};

}  // namespace sodam
