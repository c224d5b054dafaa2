#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "coach/pose.h"
#include "coach/stretch.h"
#include "posture/posture_log.h"
#include "support/date.h"

namespace sodam {

// A small, steady leaning of the posture checks that never reaches an
// alert: what it shortens and what it tires, why, how to release it and
// which stretches help, best first.
struct Habit {
  enum class Level { mild, watch, clear };  // rising; sorting goes by this order

  std::string id;  // "tilt", "forward", "slouch", "nod", "shoulder", "lean", "close"
  std::string title;
  std::string measure;  // the numbers behind it, one line
  Level level = Level::mild;
  std::vector<std::string> tight;
  std::vector<std::string> strained;  // may be empty
  std::string why;
  std::string release;
  std::vector<std::string> stretches;  // stretch ids
  std::vector<Focus> focus;            // lit on the figure of `stage`
  Stage stage = Stage::front;

  // "가벼움", "주의", "뚜렷함".
  static std::string_view levelTitle(Level level);
};

// The habits of the judged checks of the last days, strongest first, and
// the two figures bent by them: the user's average posture from the front
// and from the side. Made afresh from the log each time; nothing is kept.
struct HabitReport {
  std::vector<Habit> habits;
  int samples = 0;  // judged entries with a snapshot in the period
  Pose front = Pose::front();
  Pose side = Pose::side();

  static constexpr double defaultDays = 7;
  // Below this many samples, and below this many values of a field, no
  // habit is looked for.
  static constexpr int fewestSamples = 10;

  // The entries later than `days` before `now` (strictly), judged and with a
  // snapshot.
  static HabitReport make(const std::deque<PostureEntry>& entries, Date now,
                          double days = defaultDays);
  // The habits of these snapshots, in the tests' order before the sort.
  static HabitReport of(const std::vector<Snapshot>& samples);

  // The report in one paragraph for the language model.
  std::string summaryForModel() const;
  // The first habit with this id.
  const Habit* find(std::string_view id) const;
  // The stretches the habits recommend, in the report's order, each once,
  // at most `count`: the page's "맞춤 스트레칭".
  std::vector<std::string> stretchIds(int count) const;
};

}  // namespace sodam
