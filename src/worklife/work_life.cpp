#include "worklife/work_life.h"

#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

#include "support/json.h"

namespace sodam {

namespace {

using nlohmann::json;

constexpr double presentIdleSeconds = 90;
constexpr double faceFreshSeconds = 150;
constexpr double faceForgetIdleSeconds = 60;
constexpr double gapSeconds = 180;
constexpr double standAfterMinutes = 50;
constexpr double standAgainSeconds = 30 * 60;
constexpr double wrapUpSeatedMinutes = 60;
constexpr double tickToleranceSeconds = 5;

std::optional<WorkDay::Span> spanFrom(const json& object) {
  auto start = jsonRequired<Date>(object, "start");
  auto end = jsonRequired<Date>(object, "end");
  if (!start || !end) return std::nullopt;
  return WorkDay::Span{*start, *end};
}

WorkDay emptyDay(Date start) {
  WorkDay day;
  day.day = start;
  return day;
}

}  // namespace

double WorkDay::seated() const {
  double minutes = 0;
  for (const auto& span : spans)
    minutes += span.minutes();
  return minutes;
}

double WorkDay::longest() const {
  double minutes = 0;
  for (const auto& span : spans)
    minutes = std::max(minutes, span.minutes());
  return minutes;
}

int WorkDay::breaks() const {
  return spans.empty() ? 0 : static_cast<int>(spans.size()) - 1;
}

std::optional<Date> WorkDay::first() const {
  if (spans.empty()) return std::nullopt;
  return spans.front().start;
}

std::optional<Date> WorkDay::last() const {
  if (spans.empty()) return std::nullopt;
  return spans.back().end;
}

std::optional<WorkDay> WorkDay::fromJson(const json& object) {
  auto day = jsonRequired<Date>(object, "day");
  auto eyeBreaks = jsonRequired<int>(object, "eyeBreaks");
  auto breathes = jsonRequired<int>(object, "breathes");
  auto stands = jsonRequired<int>(object, "stands");
  const json& spans = jsonField(object, "spans");
  if (!day || !eyeBreaks || !breathes || !stands || !spans.is_array()) return std::nullopt;
  WorkDay result{*day, {}, *eyeBreaks, *breathes, *stands};
  for (const auto& element : spans) {
    auto span = spanFrom(element);
    if (!span) return std::nullopt;
    result.spans.push_back(*span);
  }
  return result;
}

json WorkDay::toJson() const {
  json object = json::object();
  jsonPut(object, "day", day);
  json list = json::array();
  for (const auto& span : spans) {
    json item = json::object();
    jsonPut(item, "start", span.start);
    jsonPut(item, "end", span.end);
    list.push_back(std::move(item));
  }
  object["spans"] = std::move(list);
  jsonPut(object, "eyeBreaks", eyeBreaks);
  jsonPut(object, "breathes", breathes);
  jsonPut(object, "stands", stands);
  return object;
}

WorkLife::WorkLife(Defaults& defaults, const Store& store, const Power& power, Scheduler& scheduler,
                   const Clock& clock, const Calendar& calendar)
    : defaults_(defaults),
      store_(store),
      power_(power),
      scheduler_(scheduler),
      clock_(clock),
      calendar_(calendar),
      days_(storedDays(defaults)),
      wrapped_(defaults.date(StoreKey::workWrapped).value) {}

std::vector<WorkDay> WorkLife::storedDays(const Defaults& defaults) {
  std::vector<WorkDay> days;
  if (auto stored = defaults.jsonData(StoreKey::workDays); stored && stored->is_array()) {
    for (const auto& element : *stored) {
      if (auto day = WorkDay::fromJson(element)) days.push_back(std::move(*day));
    }
  }
  return days;
}

void WorkLife::start() {
  if (timer_.isValid()) return;
  timer_ =
      scheduler_.schedule({tickSeconds, tickSeconds, tickToleranceSeconds}, [this] { tick(); });
  tick();
}

bool WorkLife::present() const {
  if (power_.screenLocked() || power_.displaysAsleep() || power_.sessionLocked()) return false;
  if (power_.idleSeconds() < presentIdleSeconds) return true;
  return faceSeenAt_ && clock_.now() - *faceSeenAt_ < faceFreshSeconds;
}

void WorkLife::observed(bool present) {
  if (present) {
    faceSeenAt_ = clock_.now();
  } else if (power_.idleSeconds() > faceForgetIdleSeconds) {
    // Recent input still says somebody is there; without it, the camera's
    // "nobody" wins.
    faceSeenAt_.reset();
  }
}

void WorkLife::rested(RestKind kind) {
  edit([kind](WorkDay& day) {
    switch (kind) {
      case RestKind::eyes:
        ++day.eyeBreaks;
        break;
      case RestKind::breathe:
        ++day.breathes;
        break;
      case RestKind::stretch:
        ++day.stands;
        break;
    }
  });
  // An eye rest is not a break from sitting.
  if (kind != RestKind::eyes) sittingSince_ = clock_.now();
  changed();
}

void WorkLife::tick() {
  Date now = clock_.now();
  if (!present()) {
    // An absence of up to 3 minutes breaks nothing.
    if (lastPresent_ && now - *lastPresent_ > gapSeconds && sittingSince_) {
      sittingSince_.reset();
      changed();
    }
    return;
  }
  std::optional<Date> anchor = lastPresent_ ? lastPresent_ : today().last();
  bool continues = anchor && now - *anchor <= gapSeconds && calendar_.isSameDay(*anchor, now);
  edit([&](WorkDay& day) {
    if (continues && !day.spans.empty()) {
      day.spans.back().end = now;
      if (!sittingSince_) sittingSince_ = day.spans.back().start;
    } else {
      day.spans.push_back({now, now});
      sittingSince_ = now;
    }
  });
  lastPresent_ = now;
  changed();
  nudge(now);
}

void WorkLife::nudge(Date now) {
  if (canNudge && !canNudge()) return;
  double sat = sittingSince_ ? (now - *sittingSince_) / 60 : 0;
  bool rested = !lastStandNudge_ || now - *lastStandNudge_ >= standAgainSeconds;
  if (store_.sittingNudge() && sat >= standAfterMinutes && rested) {
    lastStandNudge_ = now;
    if (onNudge) onNudge(Nudge::stand(static_cast<int>(sat)));
    return;
  }
  auto workEnd = store_.workEnd();
  if (!store_.wrapUp() || !workEnd || now < *workEnd) return;
  if (wrapped_ && calendar_.isSameDay(*wrapped_, now)) return;
  WorkDay day = today();
  if (day.seated() < wrapUpSeatedMinutes) return;
  wrapped_ = now;
  defaults_.setDate(StoreKey::workWrapped, now);
  if (onNudge) onNudge(Nudge::wrapUp(std::move(day)));
}

void WorkLife::edit(const std::function<void(WorkDay&)>& change) {
  Date now = clock_.now();
  auto found = std::find_if(days_.begin(), days_.end(),
                            [&](const WorkDay& day) { return calendar_.isSameDay(day.day, now); });
  if (found == days_.end()) {
    days_.push_back(emptyDay(calendar_.startOfDay(now)));
    found = days_.end() - 1;
  }
  change(*found);
  Date cutoff = now - keepSeconds;
  std::erase_if(days_, [cutoff](const WorkDay& day) { return day.day < cutoff; });
  json list = json::array();
  for (const auto& day : days_)
    list.push_back(day.toJson());
  // A failed encoding clears the key; the days in memory stay.
  defaults_.setJsonData(StoreKey::workDays, list);
}

WorkDay WorkLife::today() const {
  Date now = clock_.now();
  if (!days_.empty() && calendar_.isSameDay(days_.back().day, now)) return days_.back();
  return emptyDay(calendar_.startOfDay(now));
}

std::optional<WorkDay> WorkLife::day(Date date) const {
  for (const auto& day : days_) {
    if (calendar_.isSameDay(day.day, date)) return day;
  }
  return std::nullopt;
}

int WorkLife::streakMinutes() const {
  if (!sittingSince_) return 0;
  return std::max(0, static_cast<int>(std::floor((clock_.now() - *sittingSince_) / 60)));
}

void WorkLife::changed() {
  onChange.notify();
}

}  // namespace sodam
