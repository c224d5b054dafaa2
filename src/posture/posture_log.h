#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "platform/defaults.h"
#include "posture/issue_kind.h"
#include "posture/metrics.h"
#include "support/calendar.h"
#include "support/clock.h"
#include "support/signal.h"

namespace sodam {

class PostureLogText;

// The numbers of a Metrics kept with a log entry. Narrowing to 32-bit floats
// is the only rounding: one entry a minute for a month adds up.
struct Snapshot {
  std::optional<float> forward;   // headForward
  std::optional<float> drop;      // neckDrop
  std::optional<float> nod;       // flexion
  std::optional<float> shoulder;  // shoulderTilt
  float tilt = 0;                 // headTilt
  std::optional<float> lean;
  float close = 0;            // closer
  std::optional<float> dist;  // viewDistance

  // JSON holds no NaN or infinity: an optional number that is not a finite
  // float is left out, and nothing comes back when `tilt` or `close` isn't.
  static std::optional<Snapshot> of(const Metrics& metrics);
  // `tilt` and `close` are required; the others may be missing.
  static std::optional<Snapshot> fromJson(const nlohmann::json& json);

  bool operator==(const Snapshot&) const = default;
};

// One decided check.
struct PostureEntry {
  enum class Kind : std::uint8_t { good, alert, corrected, absent, away };

  Date t;
  Kind k = Kind::good;
  std::vector<IssueKind> i;  // the issues of an alert; empty otherwise
  std::optional<Snapshot> m;

  // The posture was judged: the user was neither absent nor looking away.
  // Every count of judged checks goes by this.
  bool judged() const { return k != Kind::absent && k != Kind::away; }

  static std::string_view raw(Kind kind);
  static std::optional<Kind> kindFromRaw(std::string_view raw);
  // Nothing when "t", "k" or "i" is missing or unreadable, an issue kind is
  // unknown, or "m" is there but unreadable.
  static std::optional<PostureEntry> fromJson(const nlohmann::json& json);

  bool operator==(const PostureEntry&) const = default;
};

// One finished stretch routine.
struct StretchEntry {
  Date t;
  std::vector<std::string> ids;
  int seconds = 0;
  std::optional<double> accuracy;

  static std::optional<StretchEntry> fromJson(const nlohmann::json& json);
  nlohmann::json toJson() const;

  bool operator==(const StretchEntry&) const = default;
};

// The memory of the posture checks and stretches of the last 30 days, kept in
// the defaults under "postureLog" and "stretchLog". Main thread only.
class PostureLog {
 public:
  struct Day {
    Date date;  // start of the day
    int checks = 0;
    int good = 0;
    int alerts = 0;
    // good / checks; nothing without checks.
    std::optional<double> ratio() const;
    bool operator==(const Day&) const = default;
  };
  struct Hour {
    int hour = 0;
    int good = 0;
    int bad = 0;
    bool operator==(const Hour&) const = default;
  };
  struct IssueCount {
    IssueKind kind;
    int count = 0;
    bool operator==(const IssueCount&) const = default;
  };

  static constexpr double keepSeconds = 2'592'000;  // 30 days

  // Reads both lists; an entry that can't be decoded is skipped, a value
  // that isn't a list reads as empty.
  PostureLog(Defaults& defaults, const Clock& clock, const Calendar& calendar);
  ~PostureLog();
  PostureLog(const PostureLog&) = delete;
  PostureLog& operator=(const PostureLog&) = delete;

  const std::deque<PostureEntry>& entries() const { return entries_; }
  const std::deque<StretchEntry>& stretches() const { return stretches_; }
  // After each change of either list.
  ChangeSignal onChange;

  // Appends an entry stamped now, drops what is older than 30 days, saves.
  void record(PostureEntry::Kind kind, std::vector<IssueKind> issues = {},
              const std::optional<Metrics>& metrics = std::nullopt);
  void recordStretch(std::vector<std::string> ids, int seconds, std::optional<double> accuracy);

  // The judged entries of that calendar day.
  Day day(Date date) const;
  // The last n calendar days, oldest first, today last; empty days included.
  std::vector<Day> lastDays(int n) const;
  // Issues named by alerts strictly younger than days × 86,400 seconds,
  // most frequent first (equal counts in the kinds' order).
  std::vector<IssueCount> issueCounts(int days) const;
  // 24 rows for the hours of that calendar day; alerts are bad.
  std::vector<Hour> hourly(Date date) const;
  int stretchesToday() const;
  // Alerts strictly younger than an hour.
  int alertsLastHour() const;
  // Each kind's alerts of the last 7 days over the most frequent kind's, so
  // that kind weighs 1.0; empty without alerts.
  std::map<IssueKind, double> issueWeights() const;

 private:
  struct DayRange {
    Date start;
    Date end;
    bool contains(Date t) const { return start <= t && t < end; }
  };

  DayRange rangeOf(Date date) const;
  // True when something was dropped from the list.
  bool pruneEntries(Date cutoff);
  bool pruneStretches(Date cutoff);
  void saveEntries();
  void saveStretches();
  void changed();

  Defaults& defaults_;
  const Clock& clock_;
  const Calendar& calendar_;
  std::deque<PostureEntry> entries_;
  std::deque<StretchEntry> stretches_;
  std::unique_ptr<PostureLogText> numbers_;
};

}  // namespace sodam
