// What the session reads from the camera each tick: whether the camera sees
// what the stretch needs, the user's neutral side posture, the mirrored pose
// with its repetitions, and the far look of the eye rest.
#include <algorithm>
#include <cmath>

#include "coach/coach_session.h"
#include "support/numeric.h"

namespace sodam {

namespace {

using Kind = CoachSession::Phase::Kind;

// `seen` turns on at the first and off below the second, after a while.
constexpr double seenOn = 0.75;
constexpr double seenOff = 0.55;
constexpr double unseenSeconds = 1.5;
constexpr double shownRecognitionStep = 0.01;
// A check shows as passed when this share of the recent frames passed it.
constexpr double stableCheckShare = 0.6;
constexpr double hintHoldSeconds = 1.2;

constexpr std::size_t sideFramesNeeded = 6;
constexpr std::size_t neutralSampleCount = 10;
constexpr double turnSampleRecognition = 0.6;
constexpr double slowTurnSeconds = 10;

// The head's sideways shift over a trunk of this length is its side bend.
constexpr double trunkCm = 65;
constexpr double swayShareLimit = 0.7;
constexpr double shownReachStep = 0.03;

constexpr double farLookDegrees = 25;
constexpr double eyeRestSeconds = 12;
constexpr double shownEyeReachStep = 0.01;

}  // namespace

void CoachSession::recognize() {
  const Stretch& s = current();
  const FrameCheck::List checks =
      s.turn ? FrameCheck::side(feed_.side())
             : FrameCheck::front(feed_.measurement(), leftArmMoves_, rightArmMoves_);
  recog_.push(FrameCheck::score(checks));
  double sum = 0;
  for (std::size_t i = 0; i < recog_.size(); ++i)
    sum += recog_[i];
  recogMean_ = sum / static_cast<double>(recog_.size());
  if (std::abs(recogMean_ - recognition_) > shownRecognitionStep) {
    recognition_ = recogMean_;
    changed();
  }
  if (!seen_ && recogMean_ >= seenOn) {
    seen_ = true;
    lowSince_.reset();
    changed();
  } else if (seen_ && recogMean_ < seenOff) {
    if (!lowSince_) lowSince_ = now();
    if (now() - *lowSince_ >= unseenSeconds) {
      seen_ = false;
      changed();
    }
  } else if (recogMean_ >= seenOff) {
    lowSince_.reset();
  }
  showChecks(checks);
}

// What the view shows of the checks: each passed when most recent frames
// passed it, so that one flickering frame does not flicker on the screen.
void CoachSession::showChecks(const FrameCheck::List& checks) {
  std::array<bool, FrameCheck::count> passed{};
  double weights = 0;
  for (std::size_t i = 0; i < FrameCheck::count; ++i) {
    passed[i] = checks[i].ok;
    weights += checks[i].weight;
  }
  checkFrames_.push(passed);
  FrameCheck::List shown = checks;
  std::optional<std::string_view> hint;
  for (std::size_t i = 0; i < FrameCheck::count; ++i) {
    int count = 0;
    for (std::size_t f = 0; f < checkFrames_.size(); ++f)
      count += checkFrames_[f][i] ? 1 : 0;
    shown[i].ok = count >= stableCheckShare * static_cast<double>(checkFrames_.size());
    shown[i].weight = weights > 0 ? checks[i].weight / weights : 0;
    if (!shown[i].ok && !hint) hint = shown[i].fix;
  }
  if (checks_.size() != shown.size() || !std::equal(shown.begin(), shown.end(), checks_.begin())) {
    checks_.assign(shown.begin(), shown.end());
    changed();
  }
  if (hint != framingHint_ && now() - hintAt_ >= hintHoldSeconds) {
    framingHint_ = hint;
    hintAt_ = now();
    changed();
  }
}

void CoachSession::turnStep() {
  const auto& body = feed_.side();
  const bool sideways = body && body->sideways == true;
  sideFlags_.push(sideways);
  std::size_t count = 0;
  for (std::size_t i = 0; i < sideFlags_.size(); ++i)
    count += sideFlags_[i] ? 1 : 0;
  const bool nowSeen = count >= sideFramesNeeded;
  if (nowSeen != sideSeen_) {
    sideSeen_ = nowSeen;
    changed();
  }
  if (!sideSeen_) {
    neutralSamples_.clear();
  } else if (sideways && (recogMean_ >= turnSampleRecognition || seen_)) {
    neutralSamples_.push_back(*body);
  }
  if (neutralSamples_.size() < neutralSampleCount) {
    if (now() - turnStarted_ > slowTurnSeconds && !turnSlow_) {
      turnSlow_ = true;
      changed();
    }
    return;
  }
  sideNeutral_ = BodyMirror::calibrate(neutralSamples_);
  phaseLeft_ = readySeconds;
  setPhase({Kind::ready, static_cast<int>(readySeconds)});
}

void CoachSession::follow(bool active) {
  const Stretch& s = current();
  BodyMirror::Reading reading;
  std::optional<double> headX;
  bool fromBody = false;
  if (!s.turn) {
    const auto& m = feed_.measurement();
    const auto& base = monitor_.baseline();
    if (!m || !m->usable()) {
      missed(active);
      return;
    }
    if (!base) return;
    const Metrics metrics(*m, *base, feed_.lid(), monitor_.displayHeightCm);
    const bool shoulders = m->shoulders().has_value() && base->hasShoulders();
    reading = BodyMirror::pose(metrics, *m, shoulders, s.stage);
    headX = metrics.headX;
    fromBody = m->fromBody;
  } else {
    if (!feed_.side()) {
      missed(active);
      return;
    }
    if (!sideNeutral_) return;
    reading = BodyMirror::sidePose(*feed_.side(), *sideNeutral_);
  }
  if (headX && !active) headX0_.push(*headX);
  if (headX && active && headXMiddle_ && !fromBody) {
    const double sway =
        deg(std::asin(clamp((*headX - *headXMiddle_) / trunkCm, -swayShareLimit, swayShareLimit)));
    Pose& p = reading.pose;
    const bool leaned = reading.measured.contains(FollowScore::Joint::spineSide);
    p.spineSide = leaned ? (p.spineSide - sway) / 2 : -sway;
    reading.measured.insert(FollowScore::Joint::spineSide);
  }
  const Pose rest = s.rest();
  const Pose demo = active ? motion_.pose(motionTime_).pose : rest;
  userPose_ = steady_.filter(reading.pose, reading.measured, demo, rest, tracked_, now());
  changed();
  if (active)
    match_ = FollowScore::score(*userPose_, motion_, motionTime_, reading.measured, used_);
  if (!goal_ || !reading.measured.contains(goal_->joint)) return;
  const double value = FollowScore::value(*userPose_, goal_->joint);
  if (!active) {
    neutralKey_.push(value);
  } else if (tracks() && keyZero_) {
    countRepetition(value);
  }
}

// Nobody in the picture. The eye rest counts its own far look, which an empty
// chair is too.
void CoachSession::missed(bool active) {
  missingSeconds_ += tickSeconds;
  if (!(active && restsEyes())) awaySeconds_ += tickSeconds;
  changed();
}

// A repetition: the goal joint, from the user's own zero, crosses half the
// motion's travel after falling back to a quarter of it.
void CoachSession::countRepetition(double value) {
  const double ratio = (value - *keyZero_) / goal_->amplitude;
  const double reach = clamp(2 * ratio, 0, 1);
  if (std::abs(reach - reach_) > shownReachStep) {
    reach_ = reach;
    changed();
  }
  if (armed_) {
    if (ratio <= RepGoal::releasedShare) armed_ = false;
  } else if (ratio >= RepGoal::armedShare) {
    armed_ = true;
    ++reps_;
    repAt_ = now();
    changed();
  }
}

// Looking away from the screen, far enough, for long enough rests the eyes,
// whatever the motion's own length.
void CoachSession::restEyes() {
  const auto& m = feed_.measurement();
  const bool usable = m && m->usable() && !m->fromBody;
  const bool far = !usable || std::abs(deg(m->yaw)) > farLookDegrees ||
                   std::abs(m->pitch.value_or(0)) > farLookDegrees;
  if (far != lookingFar_) {
    lookingFar_ = far;
    changed();
  }
  if (far) awaySeconds_ += tickSeconds;
  const double reach = std::min(awaySeconds_ / eyeRestSeconds, 1.0);
  if (std::abs(reach - reach_) > shownEyeReachStep || (reach >= 1 && reach_ < 1)) {
    reach_ = reach;
    changed();
  }
  if (reach >= 1 && !eyesRested_) {
    eyesRested_ = true;
    reps_ = repTarget_;
    changed();
    if (onEyesRested) onEyesRested();
  }
}

}  // namespace sodam
