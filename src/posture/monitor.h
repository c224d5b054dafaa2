#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/lid_sensor.h"
#include "platform/power.h"
#include "platform/sensitivity.h"
#include "platform/store.h"
#include "posture/frame_source.h"
#include "posture/issue_kind.h"
#include "posture/metrics.h"
#include "posture/monitor_types.h"
#include "posture/reading.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

class PostureLog;

// Decides when the camera runs, what a series of frames means and when the
// user is told. Interval mode looks in every minute or so for a couple of
// seconds; live mode keeps the camera on at a low rate. Both lead into the same
// alert. It also notices a moved screen or chair and follows it, quietly
// adjusting the baseline or learning it anew. Main thread only; frames and
// timers that outlive it do nothing.
class Monitor {
 public:
  enum class Phase { idle, sampling, rechecking, watching, alerting, relearning };
  using Outcome = MonitorOutcome;
  using Suggestion = MonitorSuggestion;
  using Report = MonitorReport;

  // The two halves of a relearning: settling, then gathering frames.
  static constexpr double relearnPrep = 3;
  static constexpr double relearnSpan = 3;

  struct Ports {
    FrameSource& capture;
    LidSensor& lid;
    PostureLog& log;
    Store& store;
    // Where the learned baseline is kept.
    Defaults& defaults;
    Power& power;
    const Clock& clock;
    Scheduler& scheduler;
  };

  explicit Monitor(Ports ports);
  ~Monitor();
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  // Any visible change, for the views and the wiring alike.
  ChangeSignal onChange;
  std::function<void(Phase, const std::optional<Outcome>&)> onPhase;
  // A present issue with false shows or refreshes the alert; none ends it,
  // with true when the user corrected the posture.
  std::function<void(const std::optional<Issue>&, bool corrected)> onAlert;
  std::function<void(double)> onSeverity;
  std::function<void(const Suggestion&)> onSuggest;
  std::function<void(const std::optional<Measurement>&, const std::optional<Metrics>&)> onFrame;
  std::function<void(const std::set<std::string>&)> onHolds;
  // Whether the user was at the machine, at each decided check and live log:
  // the work-life tracker's view of the day.
  std::function<void(bool present)> onPresence;
  // The user stretched, which counts as a rest for the work-life tracker.
  std::function<void()> onStretched;
  // Asked before a relearning; the application may refuse it.
  std::function<bool()> canRelearn = [] { return true; };
  // The built-in screen's height for the lid geometry, when the platform knows it.
  std::optional<double> displayHeightCm;

  void start();
  void checkNow();
  void hold(const std::string& reason);
  void release(const std::string& reason);
  bool isHeld() const { return !holds_.empty(); }
  const std::set<std::string>& holdReasons() const { return holds_; }
  void modeChanged();
  void stretched();

  bool enabled() const;
  void setEnabled(bool on);
  const std::optional<Baseline>& baseline() const { return baseline_; }
  void setBaseline(std::optional<Baseline> baseline);
  Sensitivity sensitivity() const;
  void setSensitivity(Sensitivity sensitivity);

  Phase phase() const { return phase_; }
  bool manualRun() const { return manualRun_; }
  const std::optional<Report>& report() const { return report_; }
  const std::optional<Reading>& reading() const { return reading_; }
  std::optional<Date> nextCheck() const;
  int goodStreak() const { return goodStreak_; }
  int awayStreak() const { return awayStreak_; }
  std::optional<IssueKind> shownIssue() const { return shownIssue_; }

 private:
  using Sample = std::optional<Metrics>;

  Date now() const { return clock_.now(); }
  void announce();
  void schedule(double after);
  void halt();
  void enter(Phase phase);
  void listen();
  void stopCamera();
  double restingLiveInterval() const;

  void run(bool manual);
  std::optional<std::string> skipReason(bool manual);
  void startSampling(bool manual);
  void startLive();
  void handle(std::optional<Measurement> m);
  void sample(double elapsed);
  void decideSampling(const Reading& reading, double elapsed);
  void recheck(double elapsed);
  void alert(double elapsed);
  void alertIssue(const Metrics& combined);
  void watch(const Sample& metrics, Date at);
  bool watchLogs(const std::vector<Metrics>& notAway, Date at);
  bool watchShift(bool hasIssues, Date at);
  void watchBad(const std::vector<Metrics>& notAway, bool hasIssues, Date at);
  void startAlert(Reading reading);
  void finish(Outcome outcome);
  void track(const Outcome& outcome);
  void adoptFrame(const std::vector<Measurement>& frames);
  void adoptGaze();
  bool adjust(const std::vector<Measurement>& frames);
  void relearn();
  void finishRelearn();
  void armWatchdog();
  Date cameraSeenAt() const;
  void storeBaseline();
  void observed(bool present);
  std::vector<Metrics> present() const;

  FrameSource& capture_;
  LidSensor& lid_;
  PostureLog& log_;
  Store& store_;
  Defaults& defaults_;
  Power& power_;
  const Clock& clock_;
  Scheduler& scheduler_;
  LifeToken<Monitor> self_;

  Phase phase_ = Phase::idle;
  bool manualRun_ = false;
  std::optional<Report> report_;
  std::optional<Reading> reading_;
  std::set<std::string> holds_;
  Timer timer_;
  Timer watchdog_;
  Date phaseStart_;
  std::optional<Date> firstFrame_;
  std::optional<Date> lastFrame_;
  std::vector<Sample> samples_;
  std::optional<double> lidAngle_;
  int goodStreak_ = 0;
  Date lastFrequentNudge_ = Date::distantPast();
  std::deque<Sample> liveFrames_;
  int liveMissing_ = 0;
  std::optional<Date> badSince_;
  Date lastLiveLog_;
  Date lastPowerCheck_;
  int awayStreak_ = 0;
  std::optional<Date> awaySince_;
  int liveAway_ = 0;
  std::deque<Measurement> checkFrames_;
  std::vector<Measurement> gazeFrames_;
  std::optional<IssueKind> shownIssue_;
  std::optional<std::pair<IssueKind, Date>> nextIssue_;
  std::optional<Date> farSince_;
  std::vector<Measurement> learnFrames_;
  Date lastRelearn_ = Date::distantPast();
  std::deque<Measurement> liveMeasures_;
  std::optional<Baseline> baseline_;
};

}  // namespace sodam
