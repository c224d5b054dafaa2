#include "sim/stretch_follower.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "support/numeric.h"
#include "support/weak_call.h"

namespace sodam {

namespace {

using Kind = CoachSession::Phase::Kind;

// Every camera frame of the simulated camera.
constexpr double stepSeconds = 1.0 / 15;
constexpr double keptSeconds = 4;
constexpr double turnDegPerSecond = 90;
constexpr double inertiaSeconds = 0.15;
constexpr double chairCmPerSecond = 40;
constexpr double hintPauseSeconds = 2;
constexpr double hintStepCm = 5;
constexpr double hintLidStepDeg = 3;
constexpr double mostHintBackCm = 30;
constexpr double mostHintCloserCm = 20;
constexpr double lowestLidDeg = 92;
// The wander's memory, per step: a slow drift rather than a tremor.
constexpr double wanderKeep = 0.95;
constexpr double wanderStep = 0.3;

double towards(double value, double goal, double most) {
  if (std::abs(goal - value) <= most) return goal;
  return value + std::copysign(most, goal - value);
}

double mix(double rest, double figure, double share) {
  return rest + share * (figure - rest);
}

bool says(std::string_view hint, std::string_view words) {
  return hint.find(words) != std::string_view::npos;
}

}  // namespace

StretchFollower::Habits StretchFollower::good() {
  return Habits{};
}

StretchFollower::Habits StretchFollower::poor() {
  Habits h;
  h.amplitude = 0.55;
  h.lagSeconds = 1.2;
  h.wanderDeg = 3;
  h.stopsAfterLoops = 2;
  h.turns = false;
  h.readsHints = false;
  h.leavesAfterSeconds = 40;
  h.awayForSeconds = 15;
  return h;
}

StretchFollower::Habits StretchFollower::absentee() {
  Habits h;
  h.absent = true;
  return h;
}

StretchFollower::StretchFollower(VirtualSitter& sitter, std::function<CoachSession*()> session,
                                 Scheduler& scheduler, const Clock& clock, Habits habits,
                                 std::uint32_t seed)
    : sitter_(sitter),
      session_(std::move(session)),
      scheduler_(scheduler),
      clock_(clock),
      habits_(habits),
      base_(sitter.posture),
      baseBody_(sitter.body),
      basePresent_(sitter.present),
      baseLid_(sitter.laptop.lidDeg),
      distance_(sitter.posture.distanceCm),
      noise_(1.0, seed) {
  timer_ = scheduler_.schedule({stepSeconds, stepSeconds, 0}, [this] { update(); });
}

StretchFollower::~StretchFollower() {
  timer_.invalidate();
  sitter_.posture = base_;
  sitter_.body = baseBody_;
  sitter_.present = basePresent_;
  sitter_.laptop.lidDeg = baseLid_;
}

void StretchFollower::update() {
  const Date now = clock_.now();
  const double dt = last_ ? now - *last_ : stepSeconds;
  last_ = now;
  CoachSession* session = session_();
  if (!session || session->phase().is(Kind::intro) || session->phase().is(Kind::done)) return;
  giveUpWaiting(*session);
  if (habits_.absent) {
    sitter_.present = false;
    return;
  }
  watch(*session);
  leaveOrReturn(*session, dt);
  seat(*session, dt);
  answerHint(*session);
  // A body has weight: it moves towards what it aims at rather than jumping.
  const Pose aim = target(*session);
  body_ = body_ ? Pose::lerp(*body_, aim, 1 - std::exp(-dt / inertiaSeconds)) : aim;
  imitate(*body_, session->current().stage);
}

void StretchFollower::watch(const CoachSession& session) {
  const Date now = clock_.now();
  seen_.push_back({now, session.figure(), session.current().stage});
  while (!seen_.empty() && now - seen_.front().at > keptSeconds)
    seen_.pop_front();
}

// What the figure showed a reaction time ago; after the follower's last
// loop, sitting at rest.
Pose StretchFollower::target(const CoachSession& session) {
  const Date then = clock_.now() - habits_.lagSeconds;
  const Seen* chosen = &seen_.front();
  for (const auto& s : seen_) {
    if (s.at <= then) chosen = &s;
  }
  const Stretch& stretch = session.current();
  const double loop = session.motion().duration();
  if (habits_.stopsAfterLoops && session.phase().is(Kind::active) && loop > 0 &&
      then - session.motionStart() >= *habits_.stopsAfterLoops * loop) {
    return stretch.rest();
  }
  return chosen->figure;
}

double StretchFollower::wander(std::size_t joint, double scale) {
  double& w = wander_[joint];
  w = wanderKeep * w + wanderStep * noise_.next() * habits_.wanderDeg * scale;
  return w;
}

void StretchFollower::imitate(const Pose& figure, Stage stage) {
  const Pose rest = stage == Stage::side ? Pose::side() : Pose::front();
  const double k = habits_.amplitude;
  SitterPosture& p = sitter_.posture;
  p = base_;
  p.distanceCm = distance_;
  p.headRollDeg = base_.headRollDeg + mix(rest.neckSide, figure.neckSide, k) + wander(0, 1);
  p.headPitchDeg = base_.headPitchDeg + mix(rest.neckFlex, figure.neckFlex, k) + wander(1, 1);
  p.headYawDeg = base_.headYawDeg + mix(rest.headTurn, figure.headTurn, k) + wander(2, 1);
  p.forwardHeadCm = base_.forwardHeadCm +
                    mix(rest.headForward, figure.headForward, k) * headShiftCm + wander(3, 0.05);
  SitterBody& b = sitter_.body;
  b = baseBody_;
  b.turnDeg = turn_;
  // The trunk is held still between its movements; only head and arms wander.
  b.sideBendDeg = mix(rest.spineSide, figure.spineSide, k);
  b.flexDeg = mix(rest.spineFlex, figure.spineFlex, k);
  b.twistDeg = mix(rest.twist, figure.twist, k);
  const double shrugWander = wander(4, 0.05);
  b.shrugLCm = (mix(rest.shrugL, figure.shrugL, k) + shrugWander) * fullShrugCm;
  b.shrugRCm = (mix(rest.shrugR, figure.shrugR, k) + shrugWander) * fullShrugCm;
  b.retract = mix(rest.retract, figure.retract, k);
  const double armWander = wander(5, 1);
  auto angle = [&](double restAngle, double figureAngle) {
    return mix(restAngle, figureAngle, k) + armWander;
  };
  if (stage == Stage::front) {
    b.armL = SitterArm::frontal(angle(rest.armL.upper, figure.armL.upper),
                                angle(rest.armL.fore, figure.armL.fore));
    b.armR = SitterArm::frontal(angle(rest.armR.upper, figure.armR.upper),
                                angle(rest.armR.fore, figure.armR.fore));
  } else {
    // Sideways the figure's right arm is the near one: the person's left,
    // turned to the screen.
    b.armL = SitterArm::sagittal(angle(rest.armR.upper, figure.armR.upper),
                                 angle(rest.armR.fore, figure.armR.fore));
    b.armR = SitterArm::sagittal(angle(rest.armL.upper, figure.armL.upper),
                                 angle(rest.armL.fore, figure.armL.fore));
  }
}

// Sideways stretches need the chair turned and pulled back and the screen
// tipped forward, so that the camera sees the body from head to waist.
void StretchFollower::seat(const CoachSession& session, double dt) {
  const bool sideways = habits_.turns && session.current().turn;
  if (sideways != sideways_) {
    sideways_ = sideways;
    hintOffsetCm_ = 0;
    hintLidDeg_ = 0;
  }
  turn_ = towards(turn_, sideways ? sidewaysTurnDeg : 0, turnDegPerSecond * dt);
  const double goal = (sideways ? sidewaysDistanceCm : base_.distanceCm) + hintOffsetCm_;
  distance_ = towards(distance_, goal, chairCmPerSecond * dt);
  sitter_.laptop.lidDeg = (sideways ? sidewaysLidDeg : baseLid_) + hintLidDeg_;
}

// Between stretches, not while following one.
void StretchFollower::answerHint(const CoachSession& session) {
  const auto& hint = session.framingHint();
  const Date now = clock_.now();
  if (!habits_.readsHints || !hint || now - hintAt_ < hintPauseSeconds) return;
  if (session.phase().is(Kind::active)) return;
  hintAt_ = now;
  if (says(*hint, "가까이")) {
    hintOffsetCm_ = std::max(hintOffsetCm_ - hintStepCm, -mostHintCloserCm);
  } else if (says(*hint, "젖혀")) {
    hintLidDeg_ += hintLidStepDeg;
  } else if (says(*hint, "앞으로 숙여")) {
    hintLidDeg_ -= hintLidStepDeg;
  } else if (says(*hint, "뒤로") || says(*hint, "물러나") || says(*hint, "떨어져")) {
    hintOffsetCm_ = std::min(hintOffsetCm_ + hintStepCm, mostHintBackCm);
    // Elbows below the picture need the camera to look lower too.
    if (says(*hint, "팔꿈치") && baseLid_ + hintLidDeg_ > lowestLidDeg) {
      hintLidDeg_ -= hintLidStepDeg;
    }
  }
}

// A person who can't get the picture right presses the skip the coach offers.
void StretchFollower::giveUpWaiting(CoachSession& session) {
  if (session.phase().is(Kind::turn) && session.turnSlow()) {
    session.skipTurn();
    return;
  }
  if (!session.phase().is(Kind::frame)) {
    framingSince_.reset();
    return;
  }
  if (!framingSince_) framingSince_ = clock_.now();
  if (clock_.now() - *framingSince_ >= framingPatienceSeconds) session.skipFrame();
}

void StretchFollower::leaveOrReturn(const CoachSession& session, double dt) {
  if (!habits_.leavesAfterSeconds || wasAway_) return;
  const Date now = clock_.now();
  if (away_) {
    if (now - *leftAt_ < habits_.awayForSeconds) return;
    away_ = false;
    wasAway_ = true;
    sitter_.present = true;
    return;
  }
  if (session.phase().is(Kind::active)) stretchingSeconds_ += dt;
  if (stretchingSeconds_ < *habits_.leavesAfterSeconds) return;
  away_ = true;
  leftAt_ = now;
  sitter_.present = false;
}

}  // namespace sodam
