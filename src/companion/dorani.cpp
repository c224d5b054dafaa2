#include "companion/dorani.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <map>

#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

// The posture part: a share of the judged checks that were clean, worth its
// full points only on a day of enough checks, and nothing on a day of few.
constexpr int postureMinChecks = 5;
constexpr double postureFullChecks = 30;
constexpr double posturePoints = 20;
constexpr int correctedCap = 10;
constexpr int correctedPoints = 2;
constexpr int stretchCap = 3;
constexpr int stretchPoints = 5;
constexpr int breathCap = 3;
constexpr int breathPoints = 3;
// Eye rests and focus together, one point each eye rest or 25 focused minutes.
constexpr int steadyCap = 6;
constexpr double focusMinutesPerPoint = 25;

int posturePart(const Dorani::DayChecks& checks) {
  if (checks.judged < postureMinChecks) return 0;
  const double n = checks.judged;
  const double share = std::min(n / postureFullChecks, 1.0) * (checks.clean / n);
  return static_cast<int>(roundedInt(share * posturePoints));
}

int digitsValue(std::string_view text) {
  int value = -1;
  const bool digits = std::all_of(
      text.begin(), text.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
  if (!digits || text.empty()) return -1;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::int64_t civilDays(const Calendar& calendar, Date date) {
  const auto c = calendar.components(date);
  return daysFromCivil(c.year, c.month, c.day);
}

}  // namespace

void Dorani::DayChecks::add(const PostureEntry& entry) {
  if (entry.k == PostureEntry::Kind::corrected) ++corrected;
  if (!entry.judged()) return;
  ++judged;
  if (entry.k != PostureEntry::Kind::alert) ++clean;
}

Dorani::Dorani(Ports ports)
    : defaults_(ports.defaults),
      store_(ports.store),
      log_(ports.log),
      work_(ports.work),
      clock_(ports.clock),
      calendar_(ports.calendar),
      focusMinutes_(std::move(ports.focusMinutes)) {
  readBanked();
  refresh();
  if (!defaults_.object(StoreKey::doraniCelebrated)) store_.setDoraniCelebrated(level());
}

int Dorani::points(const std::vector<PostureEntry>& entries, int stretches,
                   const std::optional<WorkDay>& work, double focusMinutes) {
  DayChecks checks;
  for (const auto& entry : entries)
    checks.add(entry);
  return points(checks, stretches, work, focusMinutes);
}

int Dorani::points(const DayChecks& checks, int stretches, const std::optional<WorkDay>& work,
                   double focusMinutes) {
  const int corrected = std::min(checks.corrected, correctedCap) * correctedPoints;
  const int stretched = std::min(stretches, stretchCap) * stretchPoints;
  const int breathed = work ? std::min(work->breathes, breathCap) * breathPoints : 0;
  int steady = 0;
  if (work) {
    const int focused = static_cast<int>(std::max(focusMinutes, 0.0) / focusMinutesPerPoint);
    steady = std::min(work->eyeBreaks + focused, steadyCap);
  }
  return posturePart(checks) + corrected + stretched + breathed + steady;
}

void Dorani::readBanked() {
  const auto stored = defaults_.dictionary(StoreKey::doraniDays);
  if (!stored.value) return;
  for (const auto& [key, value] : *stored.value)
    banked_[key] = static_cast<int>(std::clamp<std::int64_t>(value, 0, 1'000'000));
}

void Dorani::refresh() {
  const int oldTotal = total_;
  const int oldToday = today_;
  const auto oldFirst = firstDay_;
  if (bankDays()) {
    IntDictionary stored;
    for (const auto& [key, value] : banked_)
      stored[key] = value;
    defaults_.setDictionary(StoreKey::doraniDays, std::move(stored));
  }
  sumUp();
  if (total_ != oldTotal || today_ != oldToday || firstDay_ != oldFirst) onChange.notify();
}

// Every day that the posture log, the stretch log or the work days know,
// scored afresh; a score above the banked one replaces it. True on a change.
bool Dorani::bankDays() {
  struct DayRecord {
    DayChecks checks;
    int stretches = 0;
  };
  std::map<Date, DayRecord> days;
  // The logs are in time order: the day's bounds are worked out once a day.
  Date start = Date::distantPast();
  Date end = Date::distantPast();
  auto dayOf = [&](Date t) {
    if (t < start || t >= end) {
      start = calendar_.startOfDay(t);
      end = calendar_.addingDays(start, 1).value_or(start + 86400);
    }
    return start;
  };
  for (const auto& entry : log_.entries())
    days[dayOf(entry.t)].checks.add(entry);
  for (const auto& stretch : log_.stretches())
    ++days[dayOf(stretch.t)].stretches;
  for (const auto& day : work_.days())
    days.try_emplace(calendar_.startOfDay(day.day));

  bool changed = false;
  for (const auto& [day, record] : days) {
    const int score = points(record.checks, record.stretches, work_.day(day), focusOn(day));
    const std::string key = dayKey(day);
    auto banked = banked_.find(key);
    if (banked != banked_.end() && banked->second >= score) continue;
    banked_[key] = score;
    changed = true;
  }
  return changed;
}

void Dorani::sumUp() {
  total_ = 0;
  for (const auto& [key, value] : banked_)
    total_ += value;
  const auto todays = banked_.find(dayKey(now()));
  today_ = todays == banked_.end() ? 0 : todays->second;
  firstDay_.reset();
  for (const auto& [key, value] : banked_) {
    const auto day = dayFromKey(key);
    if (day && (!firstDay_ || *day < *firstDay_)) firstDay_ = day;
  }
}

std::string Dorani::dayKey(Date date) const {
  const auto c = calendar_.components(date);
  return format("%04d-%02d-%02d", c.year, c.month, c.day);
}

std::optional<Date> Dorani::dayFromKey(std::string_view key) const {
  if (key.size() != 10 || key[4] != '-' || key[7] != '-') return std::nullopt;
  const int year = digitsValue(key.substr(0, 4));
  const int month = digitsValue(key.substr(5, 2));
  const int day = digitsValue(key.substr(8, 2));
  if (year < 1 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month)) {
    return std::nullopt;
  }
  DateComponents components;
  components.year = year;
  components.month = month;
  components.day = day;
  const auto moment = calendar_.date(components);
  if (!moment) return std::nullopt;
  return calendar_.startOfDay(*moment);
}

int Dorani::level() const {
  int reached = 1;
  for (int i = 0; i < topLevel; ++i) {
    if (steps[static_cast<std::size_t>(i)].points <= total_) reached = i + 1;
  }
  return reached;
}

std::string_view Dorani::title() const {
  return steps[static_cast<std::size_t>(level() - 1)].title;
}

std::optional<Dorani::Step> Dorani::next() const {
  const int at = level();
  if (at >= topLevel) return std::nullopt;
  return steps[static_cast<std::size_t>(at)];
}

double Dorani::progress() const {
  const auto following = next();
  if (!following) return 1;
  const double from = steps[static_cast<std::size_t>(level() - 1)].points;
  return clamp((total_ - from) / (following->points - from), 0, 1);
}

bool Dorani::hasNews() const {
  return store_.doraniSeenLevel() < level();
}

void Dorani::markSeen() {
  if (store_.doraniSeenLevel() >= level()) return;
  store_.setDoraniSeenLevel(level());
  onChange.notify();
}

int Dorani::days() const {
  if (!firstDay_) return 1;
  const auto span = civilDays(calendar_, now()) - civilDays(calendar_, *firstDay_);
  return static_cast<int>(std::max<std::int64_t>(span, 0)) + 1;
}

Dorani::Today Dorani::todayStats() const {
  Today stats;
  const Date start = calendar_.startOfDay(now());
  const auto& entries = log_.entries();
  for (auto it = entries.rbegin(); it != entries.rend() && it->t >= start; ++it) {
    if (!calendar_.isSameDay(it->t, start)) continue;
    using Kind = PostureEntry::Kind;
    if (it->k != Kind::absent) ++stats.checks;
    if (it->k == Kind::good || it->k == Kind::corrected) ++stats.good;
    if (it->k == Kind::corrected) ++stats.corrected;
    if (it->k == Kind::away) ++stats.away;
  }
  const WorkDay day = work_.today();
  stats.rests = log_.stretchesToday() + day.breathes + day.eyeBreaks;
  return stats;
}

}  // namespace sodam
