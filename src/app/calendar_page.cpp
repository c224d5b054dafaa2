#include "app/calendar_page.h"

#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {
constexpr int daysInWeek = 7;
constexpr int soonDays = 1;

CalendarPage::SessionRow sessionRow(const SessionTime& time, Date now, const Calendar& calendar) {
  const GroupSession& s = *time.session;
  const Date end = s.end(time.at);
  return {time.group->id,
          time.group->name,
          s.title,
          Fmt::clock(time.at, calendar) + " – " + Fmt::clock(end, calendar),
          std::string(s.repeats.title()),
          time.at <= now && now <= end};
}

std::vector<CalendarPage::SessionRow> sessionRows(const std::vector<SessionTime>& times, Date now,
                                                  const Calendar& calendar) {
  std::vector<CalendarPage::SessionRow> rows;
  for (const SessionTime& time : times)
    rows.push_back(sessionRow(time, now, calendar));
  return rows;
}

std::vector<CalendarPage::Cell> monthCells(const std::vector<StudyGroup>& groups,
                                           const FocusCenter& focus, Date selected, Date now,
                                           const Calendar& calendar) {
  const DateComponents chosen = calendar.components(selected);
  const Date first = *calendar.date({chosen.year, chosen.month, 1});
  const int lead = calendar.weekday(first) - 1;
  const int days = daysInMonth(chosen.year, chosen.month);
  const int count = (lead + days + daysInWeek - 1) / daysInWeek * daysInWeek;
  std::vector<CalendarPage::Cell> cells;
  for (int i = 0; i < count; ++i) {
    const Date day = calendar.startOfDay(calendar.addingDays(first, i - lead).value_or(first));
    const DateComponents c = calendar.components(day);
    cells.push_back({day, c.day, c.month == chosen.month, calendar.isSameDay(day, now),
                     calendar.isSameDay(day, selected), !sessionsOn(groups, day, calendar).empty(),
                     !focus.records(day).empty()});
  }
  return cells;
}
}  // namespace

CalendarPage CalendarPage::make(const std::vector<StudyGroup>& groups,
                                const FocusCenter& focusCenter, Date selected, Date now,
                                const Calendar& calendar) {
  CalendarPage page;
  const DateComponents c = calendar.components(selected);
  page.month = format("%d년 %d월", c.year, c.month);
  page.cells = monthCells(groups, focusCenter, selected, now, calendar);
  page.day = format("%d월 %d일 (%s)", c.month, c.day, Fmt::weekday(selected, calendar).c_str());
  page.sessions = sessionRows(sessionsOn(groups, selected, calendar), now, calendar);
  if (page.sessions.empty()) page.noSessions = "이날은 모임이 없어요";
  page.soon = sessionRows(upcomingSessions(groups, now, soonDays, calendar), now, calendar);
  page.myFocus = "내 집중 " + hm(focusCenter.minutes(selected));
  for (const FocusRecord& record : focusCenter.records(selected)) {
    page.focus.push_back(
        {Fmt::clock(record.start, calendar) + " – " + Fmt::clock(record.end, calendar),
         record.preset, hm(record.focused / 60)});
  }
  if (page.focus.empty()) page.noFocus = "이날 남긴 집중 기록이 없어요";
  return page;
}

}  // namespace sodam
