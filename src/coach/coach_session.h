#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "coach/body_mirror.h"
#include "coach/follow_score.h"
#include "coach/frame_check.h"
#include "coach/mirror_filter.h"
#include "coach/recent_window.h"
#include "coach/rep_goal.h"
#include "coach/stretch.h"
#include "posture/live_feed.h"
#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// Takes the user through a list of stretches in front of the camera: checks
// that the camera sees what the next stretch needs, has the user turn
// sideways when it must, plays the figure's motion, mirrors the user, counts
// repetitions, and at the end writes the routine to the posture log. The
// views show its state and call its commands. Main thread only; its timer
// holds it weakly.
class CoachSession {
 public:
  struct Phase {
    enum class Kind { intro, frame, turn, ready, active, switching, rest, done };
    Kind kind = Kind::intro;
    int seconds = 0;  // whole seconds left, rounded up, of ready, switching and rest

    bool is(Kind k) const { return kind == k; }
    bool counting() const {
      return kind == Kind::ready || kind == Kind::switching || kind == Kind::rest;
    }
    bool operator==(const Phase&) const = default;
  };

  // One side of one stretch, as it went.
  struct Result {
    std::string id;
    Side side = Side::right;
    int reps = 0;
    int target = 0;  // 0 when the camera could not follow it
    double seconds = 0;
    double missingSeconds = 0;  // nobody in the picture
    bool skipped = false;
  };

  struct Ports {
    LiveFeed& feed;
    Monitor& monitor;
    PostureLog& log;
    Scheduler& scheduler;
    const Clock& clock;
  };

  static constexpr double tickSeconds = 0.1;
  static constexpr double frameInterval = 0.066;
  static constexpr double readySeconds = 3;
  static constexpr double switchSeconds = 3;
  static constexpr double restSeconds = 5;
  // The view fades a new cue and animates the sideways flag this long.
  static constexpr double cueFadeSeconds = 0.25;
  static constexpr const char* holdName = "coach";

  CoachSession(std::vector<Stretch> items, Ports ports);
  ~CoachSession();
  CoachSession(const CoachSession&) = delete;
  CoachSession& operator=(const CoachSession&) = delete;

  // After every visible change, at most once a tick or command.
  ChangeSignal onChange;
  // close() was called; the owner lets the session go on its next turn.
  std::function<void()> onClose;
  // The routine finished and was logged: a rest for the work-life tracker.
  std::function<void()> onStretched;
  // The eye rest of the far-look stretch was completed.
  std::function<void()> onEyesRested;

  // Holds the monitor, starts the camera and the tick; without camera rights
  // the session runs on time alone.
  void begin();
  void tick();
  void skipFrame();
  void skipTurn();
  void togglePause();
  void skip();
  void previous();
  void close();

  // The share of the list done when `index` starts, 0 to 1.
  double progress(int index) const;
  const std::vector<Stretch>& items() const { return items_; }
  const Stretch& current() const { return items_[static_cast<std::size_t>(index_)]; }
  const Stretch* next() const;
  const Stretch* prior() const;
  // The camera runs and can follow the current stretch.
  bool tracks() const;
  bool restsEyes() const;
  // What the figure shows now: the motion while it plays, its first key while
  // the user gets ready for it, seated at rest otherwise.
  Pose figure() const;
  // The motion of the current stretch and side.
  const Motion& motion() const { return motion_; }

  int index() const { return index_; }
  Side side() const { return side_; }
  const Phase& phase() const { return phase_; }
  double remaining() const { return remaining_; }
  bool paused() const { return paused_; }
  int reps() const { return reps_; }
  int repTarget() const { return repTarget_; }
  double reach() const { return reach_; }
  Date repAt() const { return repAt_; }
  double awaySeconds() const { return awaySeconds_; }
  bool lookingFar() const { return lookingFar_; }
  const std::optional<Pose>& userPose() const { return userPose_; }
  const std::optional<std::string>& cue() const { return cue_; }
  Date motionStart() const { return motionStart_; }
  bool sideSeen() const { return sideSeen_; }
  bool turnSlow() const { return turnSlow_; }
  double recognition() const { return recognition_; }
  bool seen() const { return seen_; }
  const std::optional<std::string_view>& framingHint() const { return framingHint_; }
  const std::vector<FrameCheck>& checks() const { return checks_; }
  // The live match of the user with the figure while it plays, when a used
  // joint was measured.
  const std::optional<double>& match() const { return match_; }
  // Done repetitions over their targets, once the routine finished.
  const std::optional<double>& accuracy() const { return accuracy_; }
  const std::vector<Result>& results() const { return results_; }
  // The user's neutral side posture, once taken for the sideways stretches.
  const std::optional<BodyMirror::SideNeutral>& sideNeutral() const { return sideNeutral_; }
  double elapsed() const { return elapsed_; }

 private:
  Date now() const { return clock_.now(); }
  void changed() { dirty_ = true; }
  void announce();
  void setPhase(Phase phase);
  void prepare();
  void dropNeutral();
  void enterReady();
  void enterTurn();
  void enterActive();
  void leaveCountdown();
  void advance(bool counted);
  void finish();
  void stopCamera();
  void record(bool skipped);

  void tickFrame();
  void tickActive();
  void tickCountdown();
  void recognize();
  void showChecks(const FrameCheck::List& checks);
  void turnStep();
  void follow(bool active);
  void countRepetition(double value);
  void missed(bool active);
  void restEyes();

  const std::vector<Stretch> items_;
  LiveFeed& feed_;
  Monitor& monitor_;
  PostureLog& log_;
  Scheduler& scheduler_;
  const Clock& clock_;
  LifeToken<CoachSession> self_ = lifeToken(this);

  int index_ = 0;
  Side side_ = Side::right;
  Phase phase_;
  double remaining_ = 0;
  bool paused_ = false;
  int reps_ = 0;
  int repTarget_ = 0;
  double reach_ = 0;
  Date repAt_ = Date::distantPast();
  double awaySeconds_ = 0;
  double missingSeconds_ = 0;
  bool lookingFar_ = false;
  std::optional<Pose> userPose_;
  std::optional<std::string> cue_;
  Date motionStart_;
  bool sideSeen_ = false;
  bool turnSlow_ = false;
  double recognition_ = 0;
  bool seen_ = false;
  std::optional<std::string_view> framingHint_;
  std::vector<FrameCheck> checks_;
  std::optional<double> match_;

  // The current stretch and side, prepared when either changes.
  Motion motion_;
  std::vector<FollowScore::Used> used_;
  FollowScore::JointSet tracked_;
  std::optional<RepGoal> goal_;
  bool readable_ = false;  // the stage lets the camera read the motion
  bool leftArmMoves_ = false;
  bool rightArmMoves_ = false;

  RecentWindow<std::array<bool, FrameCheck::count>, 10> checkFrames_;
  RecentWindow<double, 16> recog_;
  double recogMean_ = 0;
  std::optional<Date> lowSince_;
  MirrorFilter steady_;
  std::optional<Date> framedAt_;
  Date hintAt_ = Date::distantPast();
  std::optional<double> accuracy_;
  std::optional<BodyMirror::SideNeutral> sideNeutral_;
  std::vector<SideBody> neutralSamples_;
  RecentWindow<bool, 11> sideFlags_;
  Date turnStarted_;
  RecentWindow<double, 31> headX0_;
  std::optional<double> headXMiddle_;
  double elapsed_ = 0;
  double sideStartElapsed_ = 0;
  Timer timer_;
  double phaseLeft_ = 0;
  double motionTime_ = 0;
  std::optional<Date> pausedAt_;
  bool armed_ = false;
  RecentWindow<double, 13> neutralKey_;
  std::optional<double> keyZero_;
  int doneReps_ = 0;
  int allReps_ = 0;
  bool eyesRested_ = false;
  bool turnSkipped_ = false;
  bool cameraOn_ = false;
  bool holding_ = false;
  bool dirty_ = false;
  std::vector<Result> results_;
};

}  // namespace sodam
