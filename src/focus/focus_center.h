#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "companion/mate_state.h"
#include "focus/focus_preset.h"
#include "focus/focus_record.h"
#include "focus/watch_habit.h"
#include "platform/defaults.h"
#include "support/calendar.h"
#include "support/clock.h"
#include "support/signal.h"

namespace sodam {

// The user's focus presets, the focused time of the running session, the
// habits the focus watcher reported in it, and a record of each session. It
// does no camera work: once per tick it is told the user's state and whether
// the user is in the seat. Main thread only.
class FocusCenter {
 public:
  struct Session {
    Date start;
    double focused = 0;  // seconds
    std::map<std::string, int> habits;
    Date lastTick;
    Date lastPresent;
    MateState state = MateState::focus;
    bool goalSaid = false;
    bool away = false;
  };

  // Away this long ends the session; a return before it continues it.
  static constexpr double breakGapSeconds = 180;
  // A tick counts at most this much, so a machine that slept adds no more.
  static constexpr double tickCapSeconds = 30;
  // A session with fewer focused seconds leaves no record.
  static constexpr double shortestSeconds = 60;
  static constexpr double keepSeconds = 120 * 86400.0;

  // Reads the presets, the active id and the records; presets that are
  // absent or can't be read leave the defaults.
  FocusCenter(Defaults& defaults, const Clock& clock, const Calendar& calendar);

  // The active preset before and after a change of preset or of its fields.
  std::function<void(const FocusPreset& old, const FocusPreset& now)> onChange;
  // The session reached the active preset's goal, in minutes.
  std::function<void(int minutes)> onGoal;
  // Anything the views show changed: presets, the session or the records.
  ChangeSignal onUpdate;

  const std::vector<FocusPreset>& presets() const { return presets_; }
  const std::string& activeID() const { return activeID_; }
  // The preset with the active id, or the first.
  const FocusPreset& active() const;
  const FocusPreset* preset(const std::string& id) const;
  // Ends the running session and makes the preset the active one.
  void activate(const FocusPreset& preset);
  // Adds the preset or replaces the one with its id, and stores them all.
  void save(FocusPreset preset);

  void tick(MateState state, bool present);
  void count(WatchHabit habit);
  // Ends the session; one of a minute or more is recorded.
  void stop();

  const std::optional<Session>& session() const { return session_; }
  const std::vector<FocusRecord>& records() const { return records_; }
  // The day's totals, the running session included (by the day it began).
  double minutes(Date day) const;
  std::vector<FocusRecord> records(Date day) const;
  int habitCount(WatchHabit habit, Date day) const;

 private:
  void storePresets();
  void storeRecords();
  void notifyChange(const FocusPreset& old);
  bool sessionOn(Date day) const;

  Defaults& defaults_;
  const Clock& clock_;
  const Calendar& calendar_;
  std::vector<FocusPreset> presets_;
  std::string activeID_;
  std::optional<Session> session_;
  std::vector<FocusRecord> records_;
};

}  // namespace sodam
