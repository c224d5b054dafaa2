#include "cloud/group_session.h"

#include <array>

#include "support/uuid.h"

namespace sodam {

namespace {
struct RepeatRow {
  std::string_view raw, title;
};
constexpr std::array<RepeatRow, 4> repeatRows{{
    {"none", "한 번"},
    {"daily", "매일"},
    {"weekdays", "평일마다"},
    {"weekly", "매주"},
}};
constexpr int monday = 2;
constexpr int friday = 6;
}  // namespace

GroupSession::Repeat GroupSession::Repeat::fromRaw(std::string_view raw) {
  for (std::size_t i = 0; i < repeatRows.size(); ++i) {
    if (repeatRows[i].raw == raw) return Repeat(static_cast<Value>(i));
  }
  return Repeat(none);
}

std::string_view GroupSession::Repeat::raw() const {
  return repeatRows[value_].raw;
}

std::string_view GroupSession::Repeat::title() const {
  return repeatRows[value_].title;
}

GroupSession GroupSession::draft(Date start) {
  GroupSession session;
  session.id = newUuid();
  session.start = start;
  return session;
}

std::optional<Date> GroupSession::startOn(Date day, const Calendar& calendar) const {
  if (calendar.startOfDay(day) < calendar.startOfDay(start)) return std::nullopt;
  if (repeats == Repeat::none) {
    if (calendar.isSameDay(start, day)) return start;
    return std::nullopt;
  }
  const DateComponents first = calendar.components(start);
  DateComponents at = calendar.components(day);
  at.hour = first.hour;
  at.minute = first.minute;
  at.second = 0;
  const std::optional<Date> candidate = calendar.date(at);
  switch (repeats) {
    case Repeat::daily:
      return candidate;
    case Repeat::weekdays:
      if (at.weekday >= monday && at.weekday <= friday) return candidate;
      return std::nullopt;
    case Repeat::weekly:
      if (at.weekday == first.weekday) return candidate;
      return std::nullopt;
    case Repeat::none:
      break;
  }
  return std::nullopt;
}

std::optional<Date> GroupSession::running(Date t, const Calendar& calendar) const {
  const std::optional<Date> dayBefore = calendar.addingDays(t, -1);
  for (const std::optional<Date>& day : {std::optional<Date>(t), dayBefore}) {
    if (!day) continue;
    const std::optional<Date> s = startOn(*day, calendar);
    if (s && *s <= t && t <= end(*s)) return s;
  }
  return std::nullopt;
}

bool GroupSession::operator==(const GroupSession& other) const {
  return id == other.id && title == other.title && start == other.start &&
         minutes == other.minutes && repeats == other.repeats;
}

}  // namespace sodam
