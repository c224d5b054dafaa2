#include "posture/monitor_harness.h"

#include <algorithm>

#include "posture/baseline_store.h"

namespace sodam::testing {

const char* name(Monitor::Phase phase) {
  switch (phase) {
    case Monitor::Phase::idle:
      return "idle";
    case Monitor::Phase::sampling:
      return "sampling";
    case Monitor::Phase::rechecking:
      return "rechecking";
    case Monitor::Phase::watching:
      return "watching";
    case Monitor::Phase::alerting:
      return "alerting";
    case Monitor::Phase::relearning:
      return "relearning";
  }
  return "?";
}

MonitorHarness::MonitorHarness(bool learn, double noisePx) {
  sitter.setNoise(noisePx, 7);
  if (learn) {
    BaselineStore::write(defaults,
                         Baseline::learn(sitter.frames(30), sitter.laptop.lidDeg, clock.now()));
  }
  makeMonitor();
}

void MonitorHarness::makeMonitor() {
  monitor = std::make_unique<Monitor>(
      Monitor::Ports{camera, lid, log, store, defaults, power, clock, scheduler});
  monitor->onPresence = [this](bool present) { workLife.observed(present); };
  monitor->onStretched = [this] { workLife.rested(WorkLife::RestKind::stretch); };
  monitor->onPhase = [this](Monitor::Phase phase, const std::optional<Monitor::Outcome>& outcome) {
    std::string text = std::string("phase ") + name(phase);
    // Appended piece by piece: " " + string trips GCC 12's -Wrestrict at -O2 (GCC bug 105329).
    if (outcome) text.append(" ").append(outcome->text());
    events.push_back(text);
  };
  monitor->onAlert = [this](const std::optional<Issue>& issue, bool corrected) {
    if (issue) {
      events.push_back("alert " + std::string(issue->kind.raw()));
    } else {
      events.push_back(corrected ? "alert end corrected" : "alert end");
    }
  };
  monitor->onSeverity = [this](double value) { severities.push_back(value); };
  monitor->onSuggest = [this](const Monitor::Suggestion& suggestion) {
    events.push_back(suggestion.kind == Monitor::Suggestion::Kind::closer ? "suggest closer"
                                                                          : "suggest frequent");
  };
}

bool MonitorHarness::runUntilIdle(double limitSeconds) {
  const Date end = clock.now() + limitSeconds;
  while (clock.now() < end) {
    scheduler.advance(0.05);
    if (monitor->phase() == Monitor::Phase::idle) return true;
  }
  return false;
}

bool MonitorHarness::runUntil(Monitor::Phase phase, double limitSeconds) {
  const Date end = clock.now() + limitSeconds;
  while (clock.now() < end) {
    scheduler.advance(0.05);
    if (monitor->phase() == phase) return true;
  }
  return false;
}

int MonitorHarness::logged(PostureEntry::Kind kind) const {
  return static_cast<int>(std::count_if(log.entries().begin(), log.entries().end(),
                                        [kind](const PostureEntry& e) { return e.k == kind; }));
}

bool MonitorHarness::saw(const std::string& event) const {
  return std::find(events.begin(), events.end(), event) != events.end();
}

std::string MonitorHarness::lastOutcome() const {
  const auto& report = monitor->report();
  return report ? report->outcome.text() : "";
}

}  // namespace sodam::testing
