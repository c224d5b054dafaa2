#include "posture/monitor.h"

#include <cmath>

#include "posture/baseline_store.h"
#include "posture/posture_log.h"
#include "support/text.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
constexpr double watchdogSeconds = 6;
constexpr const char* noFramesText = "카메라 화면을 받지 못했어요";
constexpr double batteryIdleSeconds = 180;
constexpr double mainsIdleSeconds = 300;
constexpr double closedLidDegrees = 30;

// Delays before the next check.
constexpr double firstCheckSeconds = 8;
constexpr double enabledCheckSeconds = 3;
constexpr double releasedCheckSeconds = 10;
constexpr double modeChangeCheckSeconds = 2;
constexpr double lookAgainSeconds = 30;
// Five good checks in a row stretch the interval by half.
constexpr int relaxedGoodStreak = 5;
constexpr double relaxedIntervalFactor = 1.5;

// Frame intervals, seconds.
constexpr double batteryLiveInterval = 0.5;
constexpr double mainsLiveInterval = 0.25;
constexpr double batteryAlertInterval = 0.1;
constexpr double mainsAlertInterval = 0.066;
constexpr double recheckInterval = 0.3;
constexpr double samplingInterval = 0.12;
constexpr double relearnInterval = 0.1;

// The nudge towards a routine after frequent alerts.
constexpr int frequentAlertsPerHour = 3;
constexpr double frequentNudgePauseSeconds = 3600;

// Gaze learning gathers frames facing the screen.
constexpr double gazeTurnLimitDegrees = 20;
constexpr std::size_t gazeFramesToLearn = 40;
constexpr double relearnPauseSeconds = 600;
}  // namespace

Monitor::Monitor(Ports ports)
    : capture_(ports.capture),
      lid_(ports.lid),
      log_(ports.log),
      store_(ports.store),
      defaults_(ports.defaults),
      power_(ports.power),
      clock_(ports.clock),
      scheduler_(ports.scheduler),
      self_(lifeToken(this)),
      baseline_(BaselineStore::read(ports.defaults)) {}

Monitor::~Monitor() {
  *self_ = nullptr;
  capture_.setHandler({});
}

void Monitor::announce() {
  onChange.notify();
}

bool Monitor::enabled() const {
  return store_.enabled();
}

void Monitor::setEnabled(bool on) {
  store_.setEnabled(on);
  if (on) {
    schedule(enabledCheckSeconds);
  } else {
    halt();
  }
  announce();
}

void Monitor::setBaseline(std::optional<Baseline> baseline) {
  baseline_ = std::move(baseline);
  storeBaseline();
  announce();
}

void Monitor::storeBaseline() {
  BaselineStore::write(defaults_, baseline_);
}

Sensitivity Monitor::sensitivity() const {
  return store_.sensitivity();
}

void Monitor::setSensitivity(Sensitivity sensitivity) {
  store_.setSensitivity(sensitivity);
  announce();
}

std::optional<Date> Monitor::nextCheck() const {
  if (!timer_.isValid()) return std::nullopt;
  return timer_.fireDate();
}

void Monitor::start() {
  schedule(firstCheckSeconds);
}

void Monitor::schedule(double after) {
  timer_.invalidate();
  if (enabled() && holds_.empty() && baseline_) {
    timer_ = scheduler_.mainTimer(after, weakCall(self_, [](Monitor& m) { m.run(false); }));
  }
  announce();
}

void Monitor::checkNow() {
  if (phase_ != Phase::idle || !baseline_ || !holds_.empty() || !enabled()) return;
  timer_.invalidate();
  run(true);
}

void Monitor::hold(const std::string& reason) {
  holds_.insert(reason);
  if (onHolds) onHolds(holds_);
  halt();
}

void Monitor::release(const std::string& reason) {
  if (holds_.erase(reason) == 0) return;
  if (onHolds) onHolds(holds_);
  if (holds_.empty()) schedule(releasedCheckSeconds);
  announce();
}

void Monitor::modeChanged() {
  if (phase_ == Phase::idle) {
    schedule(modeChangeCheckSeconds);
  } else if (phase_ == Phase::watching) {
    stopCamera();
    phase_ = Phase::idle;
    if (onPhase) onPhase(Phase::idle, std::nullopt);
    schedule(modeChangeCheckSeconds);
  } else {
    announce();
  }
}

void Monitor::stretched() {
  if (onStretched) onStretched();
}

void Monitor::observed(bool present) {
  if (onPresence) onPresence(present);
}

void Monitor::halt() {
  timer_.invalidate();
  watchdog_.invalidate();
  if (phase_ == Phase::alerting && onAlert) onAlert(std::nullopt, false);
  if (phase_ != Phase::idle) {
    stopCamera();
    phase_ = Phase::idle;
    if (onPhase) onPhase(Phase::idle, std::nullopt);
  }
  announce();
}

void Monitor::listen() {
  capture_.setHandler(weakCall(
      self_, [](Monitor& m, std::optional<Measurement> frame) { m.handle(std::move(frame)); }));
}

void Monitor::stopCamera() {
  capture_.setHandler({});
  capture_.setLight(false);
  capture_.stop();
}

double Monitor::restingLiveInterval() const {
  return power_.onBattery() ? batteryLiveInterval : mainsLiveInterval;
}

void Monitor::enter(Phase phase) {
  phase_ = phase;
  phaseStart_ = now();
  samples_.clear();
  awaySince_.reset();
  farSince_.reset();
  switch (phase) {
    case Phase::alerting:
      capture_.setFrameInterval(power_.onBattery() ? batteryAlertInterval : mainsAlertInterval);
      armWatchdog();
      break;
    case Phase::rechecking:
      capture_.setFrameInterval(recheckInterval);
      armWatchdog();
      break;
    case Phase::sampling:
      checkFrames_.clear();
      armWatchdog();
      break;
    default:
      break;
  }
  if (onPhase) onPhase(phase, std::nullopt);
  announce();
}

// The latest sign of a working camera: this phase's last frame, or its start.
Date Monitor::cameraSeenAt() const {
  return lastFrame_ && *lastFrame_ > phaseStart_ ? *lastFrame_ : phaseStart_;
}

// A phase that waits for frames must not hang when the camera stops
// delivering: six seconds without a frame end it as a failure.
void Monitor::armWatchdog() {
  const double wait = std::max(cameraSeenAt() + watchdogSeconds - now(), 0.001);
  watchdog_ = scheduler_.mainTimer(wait, weakCall(self_, [](Monitor& m) {
                                     const bool waiting = m.phase_ == Phase::sampling ||
                                                          m.phase_ == Phase::rechecking ||
                                                          m.phase_ == Phase::alerting;
                                     if (!waiting) return;
                                     if (m.now() - m.cameraSeenAt() >= watchdogSeconds) {
                                       m.finish(Outcome::failed(noFramesText));
                                     } else {
                                       m.armWatchdog();
                                     }
                                   }));
}

void Monitor::run(bool manual) {
  if (phase_ != Phase::idle || !holds_.empty() || !baseline_ || !enabled()) return;
  if (auto reason = skipReason(manual)) {
    finish(Outcome::skipped(*reason));
    return;
  }
  if (store_.checkMode() == CheckMode::live) {
    startLive();
  } else {
    startSampling(manual);
  }
}

std::optional<std::string> Monitor::skipReason(bool manual) {
  if (capture_.revoked() || !capture_.authorized()) return "카메라 권한이 없어요";
  const bool battery = power_.onBattery();
  if (!manual && store_.pauseOnBattery() && battery) return "배터리라 쉬고 있어요";
  if (power_.screenLocked() || power_.sessionLocked()) return "화면이 잠겨 있어 건너뛰었어요";
  if (power_.displaysAsleep()) return "화면이 꺼져 있어 건너뛰었어요";
  const double idleLimit = battery ? batteryIdleSeconds : mainsIdleSeconds;
  if (!manual && power_.idleSeconds() > idleLimit) {
    return format("%d분 넘게 입력이 없어 건너뛰었어요", static_cast<int>(idleLimit / 60));
  }
  if (auto hinge = lid_.angle(); hinge && *hinge < closedLidDegrees) {
    return "덮개가 닫혀 있어 건너뛰었어요";
  }
  return std::nullopt;
}

void Monitor::startSampling(bool manual) {
  manualRun_ = manual;
  lidAngle_ = lid_.angle();
  firstFrame_.reset();
  lastFrame_.reset();
  capture_.setFrameInterval(samplingInterval);
  listen();
  enter(Phase::sampling);
  capture_.start();
}

void Monitor::startLive() {
  manualRun_ = false;
  lidAngle_ = lid_.angle();
  firstFrame_.reset();
  lastFrame_.reset();
  liveFrames_.clear();
  liveMeasures_.clear();
  liveMissing_ = 0;
  badSince_.reset();
  lastLiveLog_ = now();
  capture_.setFrameInterval(restingLiveInterval());
  capture_.setLight(true);
  listen();
  enter(Phase::watching);
  capture_.start();
}

void Monitor::finish(Outcome outcome) {
  watchdog_.invalidate();
  if (phase_ == Phase::alerting && onAlert)
    onAlert(std::nullopt, outcome.is(Outcome::Kind::corrected));
  report_ = Report{now(), outcome};
  track(outcome);
  const bool endsTheRun = outcome.is(Outcome::Kind::skipped) || outcome.is(Outcome::Kind::failed);
  if (store_.checkMode() == CheckMode::live && phase_ != Phase::idle && holds_.empty() &&
      enabled() && !endsTheRun) {
    liveFrames_.clear();
    badSince_.reset();
    lastLiveLog_ = now();
    capture_.setLight(true);
    capture_.setFrameInterval(restingLiveInterval());
    enter(Phase::watching);
    return;
  }
  stopCamera();
  phase_ = Phase::idle;
  if (onPhase) onPhase(Phase::idle, outcome);
  const bool away = outcome.is(Outcome::Kind::lookingAway) || outcome.is(Outcome::Kind::tooFar);
  double next =
      power_.checkInterval() * (goodStreak_ >= relaxedGoodStreak ? relaxedIntervalFactor : 1.0);
  if (away && awayStreak_ == 1) next = lookAgainSeconds;
  schedule(next);
  announce();
}

void Monitor::track(const Outcome& outcome) {
  using Kind = Outcome::Kind;
  const Kind kind = outcome.kind();
  awayStreak_ = kind == Kind::lookingAway || kind == Kind::tooFar ? awayStreak_ + 1 : 0;
  std::optional<Metrics> readingMetrics;
  if (reading_) readingMetrics = reading_->metrics;
  switch (kind) {
    case Kind::alerted:
      goodStreak_ = 0;
      observed(true);
      break;
    case Kind::good:
      log_.record(PostureEntry::Kind::good, {}, readingMetrics);
      ++goodStreak_;
      adoptFrame({checkFrames_.begin(), checkFrames_.end()});
      adoptGaze();
      observed(true);
      break;
    case Kind::corrected:
      log_.record(PostureEntry::Kind::corrected, {}, readingMetrics);
      goodStreak_ = 0;
      observed(true);
      break;
    case Kind::absent:
      log_.record(PostureEntry::Kind::absent);
      observed(false);
      break;
    case Kind::lookingAway:
      log_.record(PostureEntry::Kind::away);
      observed(true);
      break;
    case Kind::tooFar:
    case Kind::relearned:
      observed(true);
      break;
    case Kind::relearnNeeded:
    case Kind::skipped:
    case Kind::failed:
      break;
  }
  const bool frequent = kind == Kind::corrected && log_.alertsLastHour() >= frequentAlertsPerHour &&
                        now() - lastFrequentNudge_ >= frequentNudgePauseSeconds && reading_ &&
                        !reading_->issues.empty();
  if (frequent) {
    lastFrequentNudge_ = now();
    if (onSuggest) onSuggest(Suggestion::frequent(reading_->issues.front().kind));
  }
}

void Monitor::adoptFrame(const std::vector<Measurement>& frames) {
  if (!baseline_ || baseline_->frame) return;
  if (auto frame = Baseline::Frame::learn(frames)) {
    baseline_->frame = frame;
    storeBaseline();
  }
}

void Monitor::adoptGaze() {
  if (!baseline_ || baseline_->gaze) return;
  for (const auto& m : checkFrames_) {
    if (std::abs(m.turn()) < gazeTurnLimitDegrees) gazeFrames_.push_back(m);
  }
  checkFrames_.clear();
  if (gazeFrames_.size() < gazeFramesToLearn) return;
  if (auto gaze = Baseline::Gaze::learn(gazeFrames_)) {
    baseline_->gaze = gaze;
    storeBaseline();
    gazeFrames_.clear();
  }
}

bool Monitor::adjust(const std::vector<Measurement>& frames) {
  if (!baseline_) return false;
  auto moved = Baseline::moved(*baseline_, frames, lidAngle_);
  if (!moved) return false;
  baseline_ = std::move(moved);
  storeBaseline();
  return true;
}

void Monitor::relearn() {
  const bool allowed = !canRelearn || canRelearn();
  if (allowed && (manualRun_ || now() - lastRelearn_ >= relearnPauseSeconds)) {
    lastRelearn_ = now();
    learnFrames_.clear();
    liveMeasures_.clear();
    lidAngle_ = lid_.angle();
    capture_.setLight(false);
    capture_.setFrameInterval(relearnInterval);
    enter(Phase::relearning);
    watchdog_ = scheduler_.mainTimer(relearnPrep + relearnSpan,
                                     weakCall(self_, [](Monitor& m) { m.finishRelearn(); }));
    return;
  }
  if (phase_ != Phase::watching) finish(Outcome::relearnNeeded());
}

void Monitor::finishRelearn() {
  if (phase_ != Phase::relearning) return;
  auto learned = Baseline::learn(learnFrames_, lidAngle_, now());
  if (!learned) {
    finish(Outcome::relearnNeeded("얼굴이 잘 보이지 않았어요"));
    return;
  }
  auto concerns = Baseline::concerns(learnFrames_, *learned);
  if (!concerns.empty()) {
    finish(Outcome::relearnNeeded(concerns.front()));
    return;
  }
  baseline_ = std::move(learned);
  storeBaseline();
  finish(Outcome::relearned());
}

}  // namespace sodam
