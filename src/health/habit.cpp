#include "health/habit.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "health/habit_texts.h"
#include "support/numeric.h"

namespace sodam {

namespace {

using Level = Habit::Level;

constexpr double secondsPerDay = 86400;
constexpr double clearScore = 0.8;
constexpr double watchScore = 0.5;

// How a single value counts towards `share`.
enum class Lean {
  sided,    // the same sign as the mean, and at least the threshold away from 0
  atLeast,  // at least the threshold
  none,     // no share test
};

struct HabitRule {
  std::string_view id;
  std::optional<double> (*value)(const Snapshot&);
  Lean lean;
  double gate;      // the mean must reach this (its size, for a sided habit)
  double share;     // the share must reach this
  double counted;   // a value counts from this
  double fullMean;  // the mean that scores 1
  Stage stage;
};

std::optional<double> some(std::optional<float> v) {
  return v ? std::optional<double>(*v) : std::nullopt;
}

// clang-format off
constexpr HabitRule rules[] = {
    {"tilt", [](const Snapshot& s) -> std::optional<double> { return s.tilt; }, Lean::sided, 2, 0.6, 1.5, 8, Stage::front},
    {"forward", [](const Snapshot& s) { return some(s.forward); }, Lean::atLeast, 1.5, 0.5, 1.5, 4, Stage::side},
    {"slouch", [](const Snapshot& s) { return some(s.drop); }, Lean::atLeast, 2, 0.5, 2, 4, Stage::side},
    {"nod", [](const Snapshot& s) { return some(s.nod); }, Lean::atLeast, 8, 0.5, 8, 15, Stage::side},
    {"shoulder", [](const Snapshot& s) { return some(s.shoulder); }, Lean::sided, 2, 0.6, 1.5, 5, Stage::front},
    {"lean", [](const Snapshot& s) { return some(s.lean); }, Lean::sided, 2, 0.6, 1.5, 5, Stage::front},
    {"close", [](const Snapshot& s) -> std::optional<double> { return s.close; }, Lean::none, 6, 0, 0, 12, Stage::front},
};
// clang-format on

bool sameSign(double v, double avg) {
  return avg > 0 ? v > 0 : !(v > 0);
}

bool counts(const HabitRule& rule, double v, double avg) {
  switch (rule.lean) {
    case Lean::sided:
      return sameSign(v, avg) && std::abs(v) >= rule.counted;
    case Lean::atLeast:
      return v >= rule.counted;
    case Lean::none:
      return false;
  }
  return false;
}

struct Finding {
  double avg = 0;
  double share = 0;
  Level level = Level::mild;
};

std::optional<Finding> look(const HabitRule& rule, const std::vector<Snapshot>& samples) {
  std::vector<double> values;
  for (const auto& s : samples)
    if (auto v = rule.value(s)) values.push_back(*v);
  if (static_cast<int>(values.size()) < HabitReport::fewestSamples) return std::nullopt;
  double sum = 0;
  for (double v : values)
    sum += v;
  const double avg = sum / static_cast<double>(values.size());
  const auto passing =
      std::count_if(values.begin(), values.end(), [&](double v) { return counts(rule, v, avg); });
  const double share = static_cast<double>(passing) / static_cast<double>(values.size());
  const double size = rule.lean == Lean::sided ? std::abs(avg) : avg;
  if (size < rule.gate) return std::nullopt;
  if (rule.lean != Lean::none && share < rule.share) return std::nullopt;
  const double score = size / rule.fullMean;
  const Level level = score >= clearScore   ? Level::clear
                      : score >= watchScore ? Level::watch
                                            : Level::mild;
  return Finding{avg, share, level};
}

// The habit as measured, without exaggeration, on the figure that shows it.
void bend(HabitReport& report, std::string_view id, double avg) {
  if (id == "tilt") report.front.neckSide = clamp(avg, -30, 30);
  if (id == "forward") report.side.headForward = clamp(avg / 5, 0, 1.4);
  if (id == "slouch") report.side.spineFlex = clamp(avg * 2.5, 0, 22);
  if (id == "nod") report.side.neckFlex = clamp(avg, 0, 35);
  if (id == "lean") report.front.spineSide = clamp(avg * -2, -18, 18);
  if (id == "shoulder") {
    const double x = std::tan(rad(std::abs(avg))) * 0.236 / 0.04 * 0.5;
    report.front.shrugL = avg > 0 ? x : -x;
    report.front.shrugR = avg > 0 ? -x : x;
  }
}

}  // namespace

std::string_view Habit::levelTitle(Level level) {
  switch (level) {
    case Level::mild:
      return "가벼움";
    case Level::watch:
      return "주의";
    case Level::clear:
      return "뚜렷함";
  }
  return "";
}

HabitReport HabitReport::make(const std::deque<PostureEntry>& entries, Date now, double days) {
  const Date cutoff = now - days * secondsPerDay;
  std::vector<Snapshot> samples;
  for (const auto& entry : entries)
    if (entry.t > cutoff && entry.judged() && entry.m) samples.push_back(*entry.m);
  return of(samples);
}

HabitReport HabitReport::of(const std::vector<Snapshot>& samples) {
  HabitReport report;
  report.samples = static_cast<int>(samples.size());
  if (report.samples < fewestSamples) return report;
  for (const HabitRule& rule : rules) {
    const auto found = look(rule, samples);
    if (!found) continue;
    report.habits.push_back(describedHabit(rule.id, found->avg, found->share, found->level));
    report.habits.back().stage = rule.stage;
    bend(report, rule.id, found->avg);
  }
  std::stable_sort(report.habits.begin(), report.habits.end(),
                   [](const Habit& a, const Habit& b) { return a.level > b.level; });
  return report;
}

std::string HabitReport::summaryForModel() const {
  if (habits.empty()) {
    return "최근 7일 확인 " + std::to_string(samples) + "회, 뚜렷한 자세 습관은 아직 없음.";
  }
  std::string items;
  for (const auto& h : habits) {
    if (!items.empty()) items += "; ";
    items += h.title + "(" + h.measure + ", " + std::string(Habit::levelTitle(h.level)) + ")";
  }
  return "최근 7일 확인 " + std::to_string(samples) + "회에서 찾은 습관: " + items;
}

const Habit* HabitReport::find(std::string_view id) const {
  for (const auto& h : habits)
    if (h.id == id) return &h;
  return nullptr;
}

std::vector<std::string> HabitReport::stretchIds(int count) const {
  std::vector<std::string> ids;
  for (const auto& h : habits) {
    for (const auto& id : h.stretches) {
      if (static_cast<int>(ids.size()) >= count) return ids;
      if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
    }
  }
  return ids;
}

}  // namespace sodam
