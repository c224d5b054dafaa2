#pragma once

#include <optional>
#include <string>
#include <variant>

#include "posture/issue_kind.h"
#include "posture/reading.h"
#include "support/date.h"

namespace sodam {

// How a check ended.
class MonitorOutcome {
 public:
  enum class Kind {
    alerted,
    relearnNeeded,
    skipped,
    failed,
    good,
    corrected,
    absent,
    lookingAway,
    tooFar,
    relearned,
  };

  static MonitorOutcome alerted(Reading reading) { return MonitorOutcome(std::move(reading)); }
  // Two overloads, not a defaulted optional: moving an empty optional<string>
  // trips GCC 12's -Wmaybe-uninitialized at -O2 with sanitizers (GCC bug 80635).
  static MonitorOutcome relearnNeeded() { return {Kind::relearnNeeded}; }
  static MonitorOutcome relearnNeeded(std::string why) {
    return {Kind::relearnNeeded, std::move(why)};
  }
  static MonitorOutcome skipped(std::string why) { return {Kind::skipped, std::move(why)}; }
  static MonitorOutcome failed(std::string why) { return {Kind::failed, std::move(why)}; }
  static MonitorOutcome good() { return {Kind::good}; }
  static MonitorOutcome corrected() { return {Kind::corrected}; }
  static MonitorOutcome absent() { return {Kind::absent}; }
  static MonitorOutcome lookingAway() { return {Kind::lookingAway}; }
  static MonitorOutcome tooFar() { return {Kind::tooFar}; }
  static MonitorOutcome relearned() { return {Kind::relearned}; }

  Kind kind() const { return kind_; }
  bool is(Kind kind) const { return kind_ == kind; }
  // The reading of an `alerted` outcome.
  const std::optional<Reading>& reading() const { return reading_; }
  // The words of `skipped`, `failed` and, when present, `relearnNeeded`.
  const std::optional<std::string>& message() const { return message_; }
  // The status line.
  std::string text() const;

 private:
  MonitorOutcome(Kind kind, std::optional<std::string> message = std::nullopt)
      : kind_(kind), message_(std::move(message)) {}
  explicit MonitorOutcome(Reading reading) : kind_(Kind::alerted), reading_(std::move(reading)) {}

  Kind kind_;
  std::optional<Reading> reading_;
  std::optional<std::string> message_;
};

// Advice the monitor offers beside its checks.
struct MonitorSuggestion {
  enum class Kind { frequent, closer };
  Kind kind;
  std::optional<IssueKind> issue;  // the kind that keeps coming back, for `frequent`

  static MonitorSuggestion frequent(IssueKind issue) { return {Kind::frequent, issue}; }
  static MonitorSuggestion closer() { return {Kind::closer, std::nullopt}; }
  bool operator==(const MonitorSuggestion&) const = default;
};

struct MonitorReport {
  Date time;
  MonitorOutcome outcome;
};

// Turns the per-frame severity of an alert into a blur strength: smoothed,
// measured against the alert's own peak, eased.
class SeverityBlur {
 public:
  // Begins a new alert: the next value is taken as it stands.
  void reset();
  // Feeds one severity; answers the blur level, 0 to 1.
  double level(double severity);

  double smooth() const { return smooth_.value_or(0); }
  double peak() const { return peak_; }

 private:
  static constexpr double initialPeak = 1.3;
  std::optional<double> smooth_;
  double peak_ = initialPeak;
};

}  // namespace sodam
