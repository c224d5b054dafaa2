#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "platform/defaults.h"
#include "platform/power.h"
#include "platform/store.h"
#include "support/calendar.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"

namespace sodam {

// One calendar day's time at the machine, stored under "workDays".
struct WorkDay {
  struct Span {
    Date start;
    Date end;
    double minutes() const { return (end - start) / 60; }
    bool operator==(const Span&) const = default;
  };

  Date day;                 // start of the day
  std::vector<Span> spans;  // in time order
  int eyeBreaks = 0;
  int breathes = 0;
  int stands = 0;

  double seated() const;   // minutes of all spans
  double longest() const;  // minutes of the longest span, 0 without any
  int breaks() const;      // spans less one, 0 without any
  std::optional<Date> first() const;
  std::optional<Date> last() const;

  // Every field is required.
  static std::optional<WorkDay> fromJson(const nlohmann::json& json);
  nlohmann::json toJson() const;

  bool operator==(const WorkDay&) const = default;
};

// How long the user has been sitting, from a 30-second tick on input idle
// time and the camera's word, with a stand-up nudge after 50 minutes and a
// report at the end of the work day. Main thread only.
class WorkLife {
 public:
  struct Nudge {
    enum class Kind { stand, wrapUp };
    Kind kind = Kind::stand;
    int minutes = 0;  // stand: the minutes sat
    WorkDay day;      // wrapUp: today

    static Nudge stand(int minutes) { return {Kind::stand, minutes, {}}; }
    static Nudge wrapUp(WorkDay day) { return {Kind::wrapUp, 0, std::move(day)}; }
  };
  enum class RestKind : int { eyes = 0, breathe = 1, stretch = 2 };

  static constexpr double tickSeconds = 30;
  static constexpr double keepSeconds = 2'592'000;  // 30 days

  // The days stored under "workDays"; a day that can't be read is skipped,
  // a value that is no list reads as none.
  static std::vector<WorkDay> storedDays(const Defaults& defaults);

  // Reads the stored days and the last report's time.
  WorkLife(Defaults& defaults, const Store& store, const Power& power, Scheduler& scheduler,
           const Clock& clock, const Calendar& calendar);

  // Starts the tick and runs one at once; a second call does nothing.
  void start();
  // One tick now, as after unlocking the screen.
  void refresh() { tick(); }

  // The user is at the machine: input within 90 seconds, or else a face seen
  // within 150 seconds; never while the screen or session is locked or the
  // displays sleep.
  bool present() const;
  // The camera's word on presence at a judged frame.
  void observed(bool present);
  // A rest was done; a breath or a stretch restarts the sitting streak.
  void rested(RestKind kind);

  void tick();
  void nudge(Date now);
  // The one way days change: applies `change` to today's day (made when
  // missing), drops days older than 30 days and writes all of them.
  void edit(const std::function<void(WorkDay&)>& change);

  const std::vector<WorkDay>& days() const { return days_; }
  // The last stored day when it is today, else an empty day starting today.
  WorkDay today() const;
  std::optional<WorkDay> day(Date date) const;
  std::optional<Date> sittingSince() const { return sittingSince_; }
  // Whole minutes since the streak began, 0 without one.
  int streakMinutes() const;
  std::optional<Date> wrapped() const { return wrapped_; }
  std::optional<Date> lastStandNudge() const { return lastStandNudge_; }

  std::function<void(const Nudge&)> onNudge;
  // Whether a nudge may show now; set by the application. Unset means yes.
  std::function<bool()> canNudge;
  // After days or the sitting streak changed.
  ChangeSignal onChange;

 private:
  void changed();

  Defaults& defaults_;
  const Store& store_;
  const Power& power_;
  Scheduler& scheduler_;
  const Clock& clock_;
  const Calendar& calendar_;

  std::vector<WorkDay> days_;
  std::optional<Date> sittingSince_;
  std::optional<Date> lastPresent_;
  std::optional<Date> faceSeenAt_;
  std::optional<Date> lastStandNudge_;
  std::optional<Date> wrapped_;
  Timer timer_;
};

}  // namespace sodam
