#include "cloud/group_session.h"

#include <gtest/gtest.h>

#include "cloud/study_group.h"

namespace sodam {
namespace {

Calendar seoul{TimeZone::fixed(9 * 3600)};

Date at(const Calendar& calendar, int year, int month, int day, int hour = 0, int minute = 0,
        int second = 0) {
  return *calendar.date({year, month, day, hour, minute, second});
}
Date at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return at(seoul, year, month, day, hour, minute, second);
}

GroupSession session(GroupSession::Repeat repeats, Date start, int minutes = 60) {
  GroupSession s;
  s.id = "s1";
  s.start = start;
  s.minutes = minutes;
  s.repeats = repeats;
  return s;
}

// 2026-02-17 is a Tuesday.
TEST(GroupSession, AWeeklySessionFallsOnItsWeekdayFromItsFirstDayOn) {
  const GroupSession weekly = session(GroupSession::Repeat::weekly, at(2026, 2, 17, 19, 30, 12));
  EXPECT_EQ(weekly.startOn(at(2026, 2, 24, 8), seoul), at(2026, 2, 24, 19, 30));
  EXPECT_EQ(weekly.startOn(at(2026, 3, 3, 23, 59), seoul), at(2026, 3, 3, 19, 30));
  EXPECT_EQ(weekly.startOn(at(2026, 2, 25, 19, 30), seoul), std::nullopt);
  EXPECT_EQ(weekly.startOn(at(2026, 2, 10, 19, 30), seoul), std::nullopt) << "a Tuesday before";
}

TEST(GroupSession, AOneOffKeepsItsSecondsWhileARepeatStartsOnTheMinute) {
  const Date first = at(2026, 2, 17, 19, 30, 12);
  EXPECT_EQ(session(GroupSession::Repeat::none, first).startOn(at(2026, 2, 17, 1), seoul), first);
  EXPECT_EQ(session(GroupSession::Repeat::none, first).startOn(at(2026, 2, 18, 1), seoul),
            std::nullopt);
  EXPECT_EQ(session(GroupSession::Repeat::daily, first).startOn(at(2026, 2, 17, 1), seoul),
            at(2026, 2, 17, 19, 30));
}

TEST(GroupSession, WeekdaySessionsSkipTheWeekend) {
  const GroupSession s = session(GroupSession::Repeat::weekdays, at(2026, 2, 16, 9));  // Monday
  EXPECT_TRUE(s.startOn(at(2026, 2, 20), seoul));                                      // Friday
  EXPECT_FALSE(s.startOn(at(2026, 2, 21), seoul));                                     // Saturday
  EXPECT_FALSE(s.startOn(at(2026, 2, 22), seoul));                                     // Sunday
  EXPECT_TRUE(s.startOn(at(2026, 2, 23), seoul));
}

TEST(GroupSession, ATimeSkippedByTheClockMovesToTheNextThatExists) {
  const Calendar berlin{*TimeZone::fromPosixRule("CET-1CEST,M3.5.0,M10.5.0/3")};
  const GroupSession s = session(GroupSession::Repeat::daily, at(berlin, 2026, 3, 1, 2, 30));
  // 2026-03-29 02:00 jumps to 03:00.
  EXPECT_EQ(s.startOn(at(berlin, 2026, 3, 29, 12), berlin), at(berlin, 2026, 3, 29, 3, 0));
}

TEST(GroupSession, ASessionRunsPastMidnightAndEndsOnItsLastMinute) {
  const GroupSession s = session(GroupSession::Repeat::daily, at(2026, 2, 17, 23, 30));
  EXPECT_EQ(s.running(at(2026, 2, 18, 0, 10), seoul), at(2026, 2, 17, 23, 30));
  EXPECT_EQ(s.running(at(2026, 2, 18, 0, 30), seoul), at(2026, 2, 17, 23, 30));
  EXPECT_EQ(s.running(at(2026, 2, 18, 0, 30, 1), seoul), std::nullopt);
  EXPECT_EQ(s.running(at(2026, 2, 17, 23, 29), seoul), std::nullopt);
}

TEST(GroupSession, UpcomingKeepsARunningSessionUntilItEndsAndSortsAcrossGroups) {
  StudyGroup night;
  night.id = "n";
  night.sessions = {session(GroupSession::Repeat::daily, at(2026, 2, 16, 23, 30))};
  StudyGroup morning;
  morning.id = "m";
  morning.sessions = {session(GroupSession::Repeat::none, at(2026, 2, 18, 7, 0))};
  const std::vector<StudyGroup> groups{morning, night};
  // Yesterday's 23:30 session still runs at 00:10.
  const auto soon = upcomingSessions(groups, at(2026, 2, 17, 0, 10), 1, seoul);
  ASSERT_EQ(soon.size(), 4u);
  EXPECT_EQ(soon[0].at, at(2026, 2, 16, 23, 30));
  EXPECT_EQ(soon[1].at, at(2026, 2, 17, 23, 30));
  EXPECT_EQ(soon[2].group->id, "m");
  EXPECT_EQ(soon[3].at, at(2026, 2, 18, 23, 30));
  // A minute after it ended it is gone; a window of today holds only today's.
  const auto later = upcomingSessions(groups, at(2026, 2, 17, 0, 31), 0, seoul);
  ASSERT_EQ(later.size(), 1u);
  EXPECT_EQ(later[0].at, at(2026, 2, 17, 23, 30));
}

TEST(GroupSession, RepeatsReadUnknownTextAsOnce) {
  EXPECT_EQ(GroupSession::Repeat::fromRaw("weekdays"), GroupSession::Repeat::weekdays);
  EXPECT_EQ(GroupSession::Repeat::fromRaw("monthly"), GroupSession::Repeat::none);
  EXPECT_EQ(GroupSession::Repeat(GroupSession::Repeat::weekdays).title(), "평일마다");
}

TEST(StudyKeys, DayAndWeekFollowTheUsersCalendar) {
  // 2026-02-14 20:00 UTC is already the 15th in Seoul.
  const Date t = Date::fromUnix(1'771'099'200);
  EXPECT_EQ(studyDayKey(t, seoul), "2026-02-15");
  EXPECT_EQ(studyDayKey(t, Calendar{}), "2026-02-14");
  EXPECT_EQ(studyWeekKey(at(2026, 2, 14), seoul), "2026-7");
  EXPECT_EQ(studyWeekKey(at(2026, 1, 1), seoul), "2026-1");
  EXPECT_EQ(studyWeekKey(at(2025, 12, 31), seoul), "2026-1") << "the week of New Year";
}

TEST(StudyGroup, CodeTextSplitsOnlyEightCharacters) {
  StudyGroup group;
  group.code = "12345678";
  EXPECT_EQ(group.codeText(), "1234 5678");
  EXPECT_EQ(group.inviteLink(), "/join.html?code=12345678");
  group.code = "1234567";
  EXPECT_EQ(group.codeText(), "1234567");
}

TEST(Member, StaleOrOtherDaysNumbersNeverCount) {
  const Date now = at(2026, 2, 17, 15);
  Member m;
  m.state = MateState::focus;
  m.at = now - 360;
  m.day = "2026-02-16";
  m.week = studyWeekKey(now, seoul);
  m.good = 0.8;
  m.focus = 40;
  m.weekGood = 0.7;
  m.weekFocus = 300;
  EXPECT_EQ(m.live(now), MateState::focus);
  EXPECT_EQ(m.live(now + 1), MateState::offline);
  EXPECT_EQ(m.todayGood(now, seoul), std::nullopt);
  EXPECT_EQ(m.todayFocus(now, seoul), 0);
  EXPECT_EQ(m.weekGoodValue(now, seoul), 0.7);
  EXPECT_EQ(m.weekFocusValue(now, seoul), 300);
  m.day = "2026-02-17";
  EXPECT_EQ(m.todayGood(now, seoul), 0.8);
  EXPECT_EQ(m.todayFocus(now, seoul), 40);
}

}  // namespace
}  // namespace sodam
