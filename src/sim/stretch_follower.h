#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "coach/coach_session.h"
#include "coach/pose.h"
#include "sim/pixel_noise.h"
#include "sim/virtual_sitter.h"
#include "support/clock.h"
#include "support/scheduler.h"

namespace sodam {

// The virtual sitter doing the stretches a coach session shows: it watches
// the figure and imitates it a little late and a little short, with small
// wanderings of its own; turns the chair sideways and moves it back when a
// stretch asks for the side, and answers the framing hints. Its habits make
// it a good follower or a poor one. It moves the sitter between camera
// frames on the main scheduler, and gives the sitter back as it found it when
// it is let go. Main thread only.
class StretchFollower {
 public:
  struct Habits {
    double amplitude = 0.85;  // share of the figure's movement from rest
    double lagSeconds = 0.4;
    double wanderDeg = 1.5;  // the slow wander of every angle
    // Loops of each side after which the follower just sits.
    std::optional<int> stopsAfterLoops;
    bool turns = true;
    bool readsHints = true;
    // Leaves the chair after this much stretching, for this long.
    std::optional<double> leavesAfterSeconds;
    double awayForSeconds = 0;
    // Nobody sits in front of the camera at all.
    bool absent = false;
  };
  // Close to the figure, a little late.
  static Habits good();
  // Half the movement, late, two loops and no more, away for a while, never
  // turned sideways.
  static Habits poor();
  static Habits absentee();

  static constexpr double sidewaysTurnDeg = 80;
  static constexpr double sidewaysDistanceCm = 120;
  // The screen tipped forward to about upright, so the camera looks level.
  static constexpr double sidewaysLidDeg = 92;
  // A full shrug lifts the shoulders this far.
  static constexpr double fullShrugCm = 3;
  static constexpr double headShiftCm = 2.5;
  // How long the follower tries to fit the picture before skipping the check.
  static constexpr double framingPatienceSeconds = 12;

  // `session` is asked afresh each time, so a session that ended is noticed.
  // The follower presses the session's skip buttons when it is stuck.
  StretchFollower(VirtualSitter& sitter, std::function<CoachSession*()> session,
                  Scheduler& scheduler, const Clock& clock, Habits habits, std::uint32_t seed = 1);
  // The sitter back as it was, in its chair, facing the screen.
  ~StretchFollower();
  StretchFollower(const StretchFollower&) = delete;
  StretchFollower& operator=(const StretchFollower&) = delete;

  // The posture the follower moves from; a scenario's changes while it
  // follows go here.
  SitterPosture& basePosture() { return base_; }
  bool away() const { return away_; }

 private:
  struct Seen {
    Date at;
    Pose figure;
    Stage stage;
  };

  void update();
  void watch(const CoachSession& session);
  Pose target(const CoachSession& session);
  void imitate(const Pose& figure, Stage stage);
  void seat(const CoachSession& session, double dt);
  void answerHint(const CoachSession& session);
  void giveUpWaiting(CoachSession& session);
  void leaveOrReturn(const CoachSession& session, double dt);
  double wander(std::size_t joint, double scale);

  VirtualSitter& sitter_;
  std::function<CoachSession*()> session_;
  Scheduler& scheduler_;
  const Clock& clock_;
  Habits habits_;
  SitterPosture base_;
  SitterBody baseBody_;
  bool basePresent_;
  double baseLid_;
  Timer timer_;
  std::deque<Seen> seen_;
  std::optional<Pose> body_;
  std::optional<Date> last_;
  double distance_;
  double turn_ = 0;
  bool sideways_ = false;
  double hintOffsetCm_ = 0;
  double hintLidDeg_ = 0;
  Date hintAt_ = Date::distantPast();
  std::optional<Date> framingSince_;
  double stretchingSeconds_ = 0;
  std::optional<Date> leftAt_;
  bool away_ = false;
  bool wasAway_ = false;
  PixelNoise noise_;
  std::array<double, 6> wander_{};
};

}  // namespace sodam
