// The session's course: its phases, the countdowns, the commands and the end.
#include "coach/coach_session.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "support/numeric.h"

namespace sodam {

namespace {

using Kind = CoachSession::Phase::Kind;

// The tick's timer may be late by this much at most.
constexpr double tickToleranceSeconds = 0.01;
// Countdowns run in tenths; this much left is none.
constexpr double countdownEpsilon = 1e-9;

}  // namespace

CoachSession::CoachSession(std::vector<Stretch> items, Ports ports)
    : items_(std::move(items)),
      feed_(ports.feed),
      monitor_(ports.monitor),
      log_(ports.log),
      scheduler_(ports.scheduler),
      clock_(ports.clock) {
  neutralSamples_.reserve(16);
  checks_.reserve(FrameCheck::count);
  if (!items_.empty()) prepare();
}

// The owner closes a session before letting it go; a timer or frame that
// comes later finds nobody.
CoachSession::~CoachSession() {
  *self_ = nullptr;
}

void CoachSession::begin() {
  if (!phase_.is(Kind::intro) || items_.empty()) return;
  // The hold stops the monitor's own use of the camera, so it comes first.
  monitor_.hold(holdName);
  holding_ = true;
  timer_ = scheduler_.schedule({tickSeconds, tickSeconds, tickToleranceSeconds},
                               weakCall(self_, [](CoachSession& s) { s.tick(); }));
  if (feed_.authorized()) {
    feed_.start(frameInterval, true);
    cameraOn_ = true;
    setPhase({Kind::frame, 0});
  } else {
    enterReady();
  }
  announce();
}

void CoachSession::tick() {
  if (paused_ || phase_.is(Kind::intro) || phase_.is(Kind::done)) return;
  recognize();
  switch (phase_.kind) {
    case Kind::frame:
      tickFrame();
      break;
    case Kind::turn:
      turnStep();
      break;
    case Kind::active:
      tickActive();
      break;
    case Kind::ready:
    case Kind::switching:
    case Kind::rest:
      tickCountdown();
      break;
    default:
      break;
  }
  announce();
}

void CoachSession::tickFrame() {
  constexpr double startRecognition = 0.8;
  constexpr double framedSeconds = 1;
  if (recogMean_ < startRecognition) {
    framedAt_.reset();
    return;
  }
  if (!framedAt_) framedAt_ = now();
  if (now() - *framedAt_ >= framedSeconds) enterReady();
}

void CoachSession::tickActive() {
  const double t = now() - motionStart_;
  elapsed_ += std::max(t - motionTime_, 0.0);
  motionTime_ = t;
  remaining_ = current().duration() - t;
  const Motion::Moment moment = motion_.pose(t);
  if (moment.cue && (!cue_ || *cue_ != *moment.cue)) {
    cue_ = *moment.cue;
  }
  follow(true);
  if (restsEyes()) restEyes();
  changed();
  if (remaining_ <= 0) advance(true);
}

void CoachSession::tickCountdown() {
  follow(false);
  phaseLeft_ -= tickSeconds;
  const int shown = std::max(1, static_cast<int>(std::ceil(phaseLeft_ - countdownEpsilon)));
  if (shown != phase_.seconds) setPhase({phase_.kind, shown});
  if (phaseLeft_ <= countdownEpsilon) leaveCountdown();
}

// A stretch whose turn was skipped runs without the neutral, on time.
void CoachSession::leaveCountdown() {
  if (current().turn && !sideNeutral_ && !turnSkipped_) {
    enterTurn();
  } else {
    enterActive();
  }
}

void CoachSession::setPhase(Phase phase) {
  if (phase_ == phase) return;
  phase_ = phase;
  changed();
}

void CoachSession::announce() {
  if (!dirty_) return;
  dirty_ = false;
  onChange.notify();
}

// The current stretch and side changed: its motion and what can be followed.
void CoachSession::prepare() {
  motion_ = current().motionFor(side_);
  used_ = FollowScore::joints(motion_);
  tracked_ = FollowScore::jointSet(motion_);
  goal_ = RepGoal::of(motion_, current().stage);
  readable_ = FollowScore::tracksAnything(motion_, current().stage);
  std::tie(leftArmMoves_, rightArmMoves_) = FrameCheck::armsMoved(motion_);
  steady_.reset();
  neutralKey_.clear();
  checkFrames_.clear();
  eyesRested_ = false;
  sideStartElapsed_ = elapsed_;
}

void CoachSession::dropNeutral() {
  sideNeutral_.reset();
  neutralSamples_.clear();
  sideFlags_.clear();
  sideSeen_ = false;
  steady_.reset();
  changed();
}

void CoachSession::enterReady() {
  phaseLeft_ = readySeconds;
  setPhase({Kind::ready, static_cast<int>(readySeconds)});
}

void CoachSession::enterTurn() {
  steady_.reset();
  neutralSamples_.clear();
  sideFlags_.clear();
  turnStarted_ = now();
  turnSlow_ = false;
  sideSeen_ = false;
  setPhase({Kind::turn, 0});
}

void CoachSession::enterActive() {
  motionStart_ = now();
  motionTime_ = 0;
  remaining_ = current().duration();
  const Motion::Moment first = motion_.pose(0);
  cue_ = first.cue ? std::optional<std::string>(*first.cue) : std::nullopt;
  goal_ = RepGoal::of(motion_, current().stage);
  if (!neutralKey_.empty()) {
    keyZero_ = median(neutralKey_.values());
  } else if (goal_) {
    keyZero_ = FollowScore::value(motion_.keys.front().pose, goal_->joint);
  } else {
    keyZero_.reset();
  }
  // Only a stretch the camera can follow has a target, so that only those
  // count towards the accuracy.
  repTarget_ = goal_ && tracks() ? current().reps() * goal_->perCycle : 0;
  headXMiddle_ = headX0_.size() >= 5 ? median(headX0_.values()) : std::nullopt;
  reps_ = 0;
  reach_ = 0;
  armed_ = false;
  awaySeconds_ = 0;
  missingSeconds_ = 0;
  lookingFar_ = false;
  match_.reset();
  setPhase({Kind::active, 0});
}

void CoachSession::advance(bool counted) {
  record(!counted);
  doneReps_ += reps_;
  if (counted) allReps_ += repTarget_;
  reps_ = 0;
  repTarget_ = 0;
  reach_ = 0;
  match_.reset();
  changed();
  if (current().sides && side_ == Side::right) {
    side_ = Side::left;
    prepare();
    phaseLeft_ = switchSeconds;
    setPhase({Kind::switching, static_cast<int>(switchSeconds)});
    return;
  }
  if (next()) {
    const bool turnBefore = current().turn;
    ++index_;
    side_ = Side::right;
    turnSkipped_ = false;
    prepare();
    if (current().turn != turnBefore) dropNeutral();
    phaseLeft_ = restSeconds;
    setPhase({Kind::rest, static_cast<int>(restSeconds)});
    return;
  }
  finish();
}

void CoachSession::record(bool skipped) {
  Result r;
  r.id = current().id;
  r.side = side_;
  r.reps = reps_;
  r.target = repTarget_;
  r.seconds = elapsed_ - sideStartElapsed_;
  r.missingSeconds = missingSeconds_;
  r.skipped = skipped;
  results_.push_back(std::move(r));
}

void CoachSession::finish() {
  timer_.invalidate();
  stopCamera();
  accuracy_ = allReps_ >= 1 ? std::optional<double>(static_cast<double>(doneReps_) / allReps_)
                            : std::nullopt;
  setPhase({Kind::done, 0});
  std::vector<std::string> ids;
  for (const auto& item : items_)
    ids.push_back(item.id);
  log_.recordStretch(std::move(ids), static_cast<int>(elapsed_), accuracy_);
  if (onStretched) onStretched();
}

void CoachSession::stopCamera() {
  if (cameraOn_) feed_.stop();
  cameraOn_ = false;
  if (holding_) monitor_.release(holdName);
  holding_ = false;
}

void CoachSession::skipFrame() {
  if (!phase_.is(Kind::frame)) return;
  enterReady();
  announce();
}

void CoachSession::skipTurn() {
  if (!phase_.is(Kind::turn)) return;
  turnSkipped_ = true;
  phaseLeft_ = readySeconds;
  setPhase({Kind::ready, static_cast<int>(readySeconds)});
  announce();
}

void CoachSession::togglePause() {
  if (phase_.is(Kind::intro) || phase_.is(Kind::done)) return;
  if (!paused_) {
    paused_ = true;
    pausedAt_ = now();
  } else {
    paused_ = false;
    if (pausedAt_) motionStart_ = motionStart_ + (now() - *pausedAt_);
    pausedAt_.reset();
  }
  changed();
  announce();
}

// In the middle of a stretch, skipping ends it with the repetitions done but
// without its target; before it starts, the stretch is passed over.
void CoachSession::skip() {
  if (phase_.is(Kind::intro) || phase_.is(Kind::done)) return;
  if (paused_) togglePause();
  advance(false);
  announce();
}

void CoachSession::previous() {
  if (phase_.is(Kind::intro) || phase_.is(Kind::done)) return;
  if (paused_) togglePause();
  const bool turnBefore = current().turn;
  index_ = std::max(index_ - 1, 0);
  side_ = Side::right;
  turnSkipped_ = false;
  reps_ = 0;
  reach_ = 0;
  prepare();
  if (current().turn != turnBefore) dropNeutral();
  enterReady();
  changed();
  announce();
}

void CoachSession::close() {
  timer_.invalidate();
  stopCamera();
  if (onClose) onClose();
}

double CoachSession::progress(int index) const {
  if (items_.empty()) return 0;
  return clamp(static_cast<double>(index) / static_cast<double>(items_.size()), 0, 1);
}

const Stretch* CoachSession::next() const {
  const auto i = static_cast<std::size_t>(index_) + 1;
  return i < items_.size() ? &items_[i] : nullptr;
}

const Stretch* CoachSession::prior() const {
  return index_ > 0 ? &items_[static_cast<std::size_t>(index_) - 1] : nullptr;
}

// Without the camera nothing is followed, so a session on time alone has no
// targets and logs no accuracy.
bool CoachSession::tracks() const {
  if (!cameraOn_ || !readable_) return false;
  return current().stage == Stage::side || monitor_.baseline().has_value();
}

bool CoachSession::restsEyes() const {
  return current().id == "eyes";
}

Pose CoachSession::figure() const {
  if (phase_.is(Kind::active)) return motion_.pose(motionTime_).pose;
  if (phase_.counting() && !motion_.keys.empty()) return motion_.keys.front().pose;
  return current().rest();
}

}  // namespace sodam
