#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sodam {

// A day at the desk for the simulation: timed changes to the virtual sitter,
// the laptop and the machine's state. Text, one event a line:
//
//   # a comment
//   mode live
//   fresh
//   start 09:00
//   end 18:45
//   09:00 present=yes distance=55
//   09:40 forward=3 drop=1
//   12:00 lock
//   13:00 unlock battery=80 power=battery
//   15:00 stretch
//   16:00 nudge=yes
//   16:30 camera=Meetly
//   16:50 camera=off
//   day                     # the next day begins
//   09:10 present=yes
//   14:00 focus=watch habit=mouth distance=85 lid=90
//   14:30 hands=phone
//
// Times are wall-clock times of the simulated day, never going back within a
// day; "day" moves on to the next calendar day, so one run can span a week.
// "start" is on the first day and "end" on the last. Fields and their units
// are those of `ScenarioChange::Field`.
struct ScenarioChange {
  enum class Field {
    present,     // yes/no: somebody in the chair
    forward,     // cm, head ahead of the shoulders
    drop,        // cm, head sunk towards the shoulders
    pitch,       // degrees, face tipped down
    roll,        // degrees, head tilted
    yaw,         // degrees, head turned
    shoulder,    // degrees, shoulder line tilted
    lean,        // cm, head shifted sideways
    distance,    // cm, eyes to the screen's hinge
    lid,         // degrees, hinge angle
    lock,        // the screen locks
    unlock,      // the screen unlocks
    sleep,       // the machine sleeps
    wake,        // the machine wakes
    displayOff,  // the displays sleep
    displayOn,   // the displays wake
    battery,     // percent
    power,       // mains/battery: what provides power
    lowPower,    // yes/no
    idle,        // seconds since the last input
    check,       // the user asks for a check
    stretch,     // the user starts the day's stretch routine from the menu
    nudge,       // yes/no: the user takes up the next stretch nudge
    breathe,     // the user takes a minute's breathing from the menu
    focus,       // watch/laptop: the user picks the first preset of that mode
    habit,       // a habit's name: the user adds it to the active preset
    hands,       // lap/desk/phone/chin/mouth: what the sitter's hands do
    doze,        // yes/no: the sitter nods off, or wakes
    camera,      // another program takes the camera: its name or path, or "off"
  };
  Field field;
  // yes 1, no 0; battery 1, mains 0; 0 for the bare words; a named choice
  // its position in the list of its field's names
  double value = 0;
  std::string text{};  // a program that takes the camera; empty for "off"

  bool operator==(const ScenarioChange&) const = default;
};

struct ScenarioEvent {
  double atSeconds = 0;  // seconds after the midnight of its day
  int day = 0;           // days after the first
  int line = 0;
  std::vector<ScenarioChange> changes;
};

struct Scenario {
  std::string name;
  double startSeconds = 9 * 3600.0;
  double endSeconds = 18.75 * 3600;
  // "mode live" or "mode interval": the check rhythm; none keeps the setting.
  std::optional<bool> live;
  // "fresh": the day begins without a learned posture, as on a first run.
  bool fresh = false;
  // The calendar days the run spans, one more for each "day".
  int days = 1;
  std::vector<ScenarioEvent> events;

  struct Parsed;
  // Reads a scenario; on error says which line and which field is wrong.
  static Parsed parse(std::string_view text, std::string name = "");
  // The scenarios that come with the program: "workday", "live", "first-run",
  // "week", "study".
  static std::optional<Scenario> builtIn(std::string_view name);
  static std::vector<std::string> builtInNames();
};

struct Scenario::Parsed {
  std::optional<Scenario> scenario;
  std::string error;
};

}  // namespace sodam
