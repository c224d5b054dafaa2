// What the monitor makes of each frame, phase by phase.
#include <algorithm>

#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "posture/setup_shift.h"

namespace sodam {

namespace {
constexpr std::size_t checkFrameLimit = 40;
constexpr std::size_t liveMeasureLimit = 12;
constexpr std::size_t liveFrameLimit = 5;
constexpr double warmUpSeconds = 0.7;
constexpr double liveLogSeconds = 60;

// Sampling: how many frames make a verdict, and how long to wait for them.
constexpr std::size_t batterySampleCount = 6;
constexpr std::size_t mainsSampleCount = 10;
constexpr double sampleWaitSeconds = 4;
constexpr std::size_t fewestPresentSamples = 4;
constexpr std::size_t fewestShiftFrames = 8;

// Rechecking: three good frames in a row end it early; otherwise five
// seconds decide, by the shares of frames looking away and frames with issues.
constexpr std::size_t settledFrames = 3;
constexpr double recheckSeconds = 5;
constexpr std::size_t fewestRecheckSamples = 6;
constexpr double lookingAwayShare = 0.4;
constexpr double badShare = 0.6;

// Alerting.
constexpr std::size_t presenceWindow = 40;
constexpr std::ptrdiff_t fewestPresentInWindow = 6;
constexpr double awayEndsAlertSeconds = 3;
constexpr double longestAlertSeconds = 60;
constexpr std::size_t issueWindow = 5;
constexpr std::size_t fewestIssueFrames = 3;
constexpr double tooFarCloser = -30;
constexpr double tooFarEndsAlertSeconds = 2;
// A change of issue must stand this long before the alert follows it.
constexpr double issueChangeSeconds = 1.2;

// Live watching.
constexpr double powerCheckSeconds = 15;
constexpr int missingFramesForAbsence = 15;
constexpr double absentFrameInterval = 1.0;
constexpr std::size_t mostAwayFramesToJudge = 2;
constexpr double badFrameInterval = 0.1;
constexpr double badLiveAlertSeconds = 5;

bool lookingAt(const std::optional<Metrics>& sample) {
  return sample && !sample->lookingAway;
}

// The present, not-looking-away entries among the last `count` samples.
template <typename Samples>
std::vector<Metrics> attentiveTail(const Samples& samples, std::size_t count) {
  std::vector<Metrics> result;
  const std::size_t from = samples.size() > count ? samples.size() - count : 0;
  for (std::size_t i = from; i < samples.size(); ++i) {
    if (lookingAt(samples[i])) result.push_back(*samples[i]);
  }
  return result;
}

std::vector<Metrics> withoutAway(const std::vector<Metrics>& frames) {
  std::vector<Metrics> result;
  std::copy_if(frames.begin(), frames.end(), std::back_inserter(result),
               [](const Metrics& m) { return !m.lookingAway; });
  return result;
}

// `count` frames, none of them with an issue.
bool allGood(const std::vector<Metrics>& frames, std::size_t count, Sensitivity level) {
  return frames.size() == count && std::all_of(frames.begin(), frames.end(), [&](const Metrics& m) {
           return m.issues(level).empty();
         });
}

template <typename T>
void pushLimited(std::deque<T>& list, T value, std::size_t limit) {
  list.push_back(std::move(value));
  while (list.size() > limit)
    list.pop_front();
}
}  // namespace

std::vector<Metrics> Monitor::present() const {
  std::vector<Metrics> result;
  for (const auto& sample : samples_) {
    if (sample) result.push_back(*sample);
  }
  return result;
}

void Monitor::handle(std::optional<Measurement> m) {
  if (phase_ == Phase::idle || !baseline_) return;
  if (m && !m->usable()) m.reset();
  const Date at = now();
  if (!firstFrame_) {
    firstFrame_ = at;
    phaseStart_ = at;
  }
  lastFrame_ = at;
  if (phase_ == Phase::relearning) {
    if (m && at - phaseStart_ >= relearnPrep) learnFrames_.push_back(*m);
    return;
  }
  Sample metrics;
  if (m) metrics = Metrics(*m, *baseline_, lidAngle_, displayHeightCm);
  if (phase_ == Phase::watching) {
    if (m) pushLimited(liveMeasures_, *m, liveMeasureLimit);
    watch(metrics, at);
    return;
  }
  if (phase_ == Phase::sampling || phase_ == Phase::rechecking) {
    if (onFrame) onFrame(m, metrics);
    if (phase_ == Phase::sampling && at - *firstFrame_ < warmUpSeconds) return;
  }
  samples_.push_back(metrics);
  if (phase_ == Phase::sampling && m) pushLimited(checkFrames_, *m, checkFrameLimit);
  const double elapsed = at - phaseStart_;
  switch (phase_) {
    case Phase::sampling:
      sample(elapsed);
      break;
    case Phase::rechecking:
      recheck(elapsed);
      break;
    case Phase::alerting:
      alert(elapsed);
      break;
    default:
      break;
  }
}

void Monitor::sample(double elapsed) {
  const std::size_t enough = power_.onBattery() ? batterySampleCount : mainsSampleCount;
  if (samples_.size() < enough && elapsed <= sampleWaitSeconds) return;
  const auto seen = present();
  if (seen.size() < fewestPresentSamples) {
    finish(Outcome::absent());
    return;
  }
  if (!baseline_->plausible()) {
    relearn();
    return;
  }
  Reading reading(seen, sensitivity());
  reading_ = reading;
  if (reading.away) {
    finish(Outcome::lookingAway());
    return;
  }
  decideSampling(reading, elapsed);
}

void Monitor::decideSampling(const Reading& first, double elapsed) {
  Reading reading = first;
  const std::vector<Measurement> frames(checkFrames_.begin(), checkFrames_.end());
  const auto shift = SetupShift::check(frames, *baseline_, lidAngle_);
  // A weak change of setup is only acted on when it could explain a bad reading.
  if (shift && (shift->strong || reading.bad() || reading.tooFar)) {
    if (frames.size() < fewestShiftFrames && elapsed < sampleWaitSeconds) return;
    if (!shift->fixable || !adjust(frames)) {
      relearn();
      return;
    }
    std::vector<Metrics> again;
    for (const auto& m : frames)
      again.emplace_back(m, *baseline_, lidAngle_, displayHeightCm);
    reading = Reading(again, sensitivity());
    reading_ = reading;
  }
  if (reading.tooFar) {
    finish(Outcome::tooFar());
  } else if (!reading.bad()) {
    finish(Outcome::good());
  } else {
    enter(Phase::rechecking);
  }
}

void Monitor::recheck(double elapsed) {
  const Sensitivity level = sensitivity();
  if (samples_.size() >= settledFrames) {
    const auto last = attentiveTail(samples_, settledFrames);
    if (allGood(last, settledFrames, level)) {
      reading_ = Reading(last, level);
      finish(Outcome::good());
      return;
    }
  }
  if (elapsed < recheckSeconds) return;
  const auto seen = present();
  if (seen.size() < fewestRecheckSamples) {
    finish(Outcome::absent());
    return;
  }
  const auto notAway = withoutAway(seen);
  if (lookingAwayShare * static_cast<double>(seen.size()) > static_cast<double>(notAway.size())) {
    finish(Outcome::lookingAway());
    return;
  }
  if (Reading::ambiguous(notAway, level)) {
    finish(Outcome::tooFar());
    return;
  }
  std::vector<Metrics> bad;
  std::copy_if(notAway.begin(), notAway.end(), std::back_inserter(bad),
               [&](const Metrics& m) { return !m.issues(level).empty(); });
  if (static_cast<double>(bad.size()) >= badShare * static_cast<double>(notAway.size())) {
    startAlert(Reading(bad, level));
  } else {
    reading_ = Reading(notAway, level);
    finish(Outcome::good());
  }
}

void Monitor::alert(double elapsed) {
  const Date at = now();
  if (samples_.size() >= presenceWindow) {
    const auto seen = std::count_if(samples_.end() - presenceWindow, samples_.end(),
                                    [](const Sample& s) { return s.has_value(); });
    if (seen < fewestPresentInWindow) {
      finish(Outcome::absent());
      return;
    }
  }
  const Sample& last = samples_.back();
  if (last && last->lookingAway) {
    if (!awaySince_) awaySince_ = at;
    if (at - *awaySince_ >= awayEndsAlertSeconds) finish(Outcome::lookingAway());
    return;
  }
  awaySince_.reset();
  const Sensitivity level = sensitivity();
  const auto recent = attentiveTail(samples_, settledFrames);
  if (!recent.empty() && onSeverity) onSeverity(recent.back().severity(level));
  if (allGood(recent, settledFrames, level)) {
    finish(Outcome::corrected());
    return;
  }
  if (elapsed > longestAlertSeconds && reading_) {
    finish(Outcome::alerted(*reading_));
    return;
  }
  const auto window = attentiveTail(samples_, issueWindow);
  if (window.size() < fewestIssueFrames) return;
  alertIssue(Metrics::combine(window));
}

void Monitor::alertIssue(const Metrics& combined) {
  const Date at = now();
  if (combined.closer <= tooFarCloser) {
    if (!farSince_) farSince_ = at;
    if (at - *farSince_ >= tooFarEndsAlertSeconds) finish(Outcome::tooFar());
    return;
  }
  farSince_.reset();
  const auto issues = combined.issues(sensitivity());
  if (issues.empty()) return;
  const Issue& top = issues.front();
  if (shownIssue_ == top.kind) {
    nextIssue_.reset();
    if (onAlert) onAlert(top, false);
    return;
  }
  if (nextIssue_ && nextIssue_->first == top.kind) {
    if (at - nextIssue_->second >= issueChangeSeconds) {
      shownIssue_ = top.kind;
      nextIssue_.reset();
      if (onAlert) onAlert(top, false);
    }
    return;
  }
  nextIssue_ = std::make_pair(top.kind, at);
}

void Monitor::startAlert(Reading reading) {
  const Sensitivity level = sensitivity();
  reading_ = reading;
  shownIssue_ = reading.issues.front().kind;
  nextIssue_.reset();
  std::vector<IssueKind> kinds;
  for (const auto& issue : reading.issues)
    kinds.push_back(issue.kind);
  log_.record(PostureEntry::Kind::alert, kinds, reading.metrics);
  enter(Phase::alerting);
  if (onAlert) onAlert(reading.issues.front(), false);
  if (onSeverity) onSeverity(reading.metrics.severity(level));
  report_ = Report{now(), Outcome::alerted(reading)};
  announce();
}

void Monitor::watch(const Sample& metrics, Date at) {
  if (at - lastPowerCheck_ > powerCheckSeconds) {
    lidAngle_ = lid_.angle();
    lastPowerCheck_ = at;
    if (store_.pauseOnBattery() && power_.onBattery()) {
      finish(Outcome::skipped("배터리라 쉬고 있어요"));
      return;
    }
  }
  if (metrics && !baseline_->plausible()) {
    relearn();
    if (phase_ == Phase::watching && at - lastLiveLog_ >= liveLogSeconds) {
      lastLiveLog_ = at;
      report_ = Report{at, Outcome::relearnNeeded()};
      announce();
    }
    return;
  }
  pushLimited(liveFrames_, metrics, liveFrameLimit);
  if (!metrics) {
    if (++liveMissing_ == missingFramesForAbsence) {
      observed(false);
      capture_.setFrameInterval(absentFrameInterval);
    }
    return;
  }
  if (liveMissing_ >= missingFramesForAbsence) capture_.setFrameInterval(restingLiveInterval());
  liveMissing_ = 0;
  const auto notAway = attentiveTail(liveFrames_, liveFrameLimit);
  if (metrics->lookingAway) {
    ++liveAway_;
    if (badSince_) {
      badSince_.reset();
      capture_.setFrameInterval(restingLiveInterval());
    }
  }
  if (watchLogs(notAway, at)) return;
  const auto issues = Metrics::combine(notAway).issues(sensitivity());
  if (watchShift(!issues.empty(), at)) return;
  watchBad(notAway, !issues.empty(), at);
}

// The quiet minute reports of live watching: away or too far. True when the
// frame's handling ends here.
bool Monitor::watchLogs(const std::vector<Metrics>& notAway, Date at) {
  const bool minuteOver = at - lastLiveLog_ >= liveLogSeconds;
  if (notAway.size() <= mostAwayFramesToJudge) {
    if (minuteOver) {
      lastLiveLog_ = at;
      if (liveAway_ >= 1) log_.record(PostureEntry::Kind::away);
      liveAway_ = 0;
      observed(true);
      report_ = Report{at, Outcome::lookingAway()};
      announce();
    }
    return true;
  }
  if (!Reading::ambiguous(notAway, sensitivity())) return false;
  if (badSince_) {
    badSince_.reset();
    capture_.setFrameInterval(restingLiveInterval());
  }
  if (minuteOver) {
    lastLiveLog_ = at;
    observed(true);
    report_ = Report{at, Outcome::tooFar()};
    if (onSuggest) onSuggest(Suggestion::closer());
    announce();
  }
  return true;
}

// A moved screen or chair is followed before any alert. True when the
// frame's handling ends here.
bool Monitor::watchShift(bool hasIssues, Date at) {
  if (badSince_ || !(hasIssues || at - lastLiveLog_ >= liveLogSeconds)) return false;
  const std::vector<Measurement> frames(liveMeasures_.begin(), liveMeasures_.end());
  const auto shift = SetupShift::check(frames, *baseline_, lidAngle_);
  if (!shift || !(hasIssues || shift->strong)) return false;
  if (frames.size() < fewestShiftFrames) return true;
  if (shift->fixable && adjust(frames)) {
    liveMeasures_.clear();
    return true;
  }
  relearn();
  return true;
}

void Monitor::watchBad(const std::vector<Metrics>& notAway, bool hasIssues, Date at) {
  if (!hasIssues) {
    if (badSince_) {
      badSince_.reset();
      capture_.setFrameInterval(restingLiveInterval());
    }
  } else {
    if (!badSince_) {
      badSince_ = at;
      capture_.setFrameInterval(badFrameInterval);
    }
    if (at - *badSince_ >= badLiveAlertSeconds) {
      startAlert(Reading(notAway, sensitivity()));
      return;
    }
  }
  if (at - lastLiveLog_ < liveLogSeconds) return;
  lastLiveLog_ = at;
  liveAway_ = 0;
  reading_ = Reading(notAway, sensitivity());
  // The minute's entry is a good one whatever the reading says: issues that
  // had not yet stood five seconds are no alert.
  log_.record(PostureEntry::Kind::good, {}, reading_->metrics);
  adoptFrame({liveMeasures_.begin(), liveMeasures_.end()});
  observed(true);
  report_ = Report{at, Outcome::good()};
  announce();
}

}  // namespace sodam
