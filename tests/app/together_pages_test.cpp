#include <gtest/gtest.h>

#include "app/calendar_page.h"
#include "app/groups_page.h"
#include "app/ranking_page.h"
#include "platform/defaults.h"
#include "support/clock.h"

namespace sodam {
namespace {

const Calendar seoul{TimeZone::fixed(9 * 3600)};
const Date now = *seoul.date({2026, 2, 17, 15, 0, 0});  // a Tuesday

Member member(std::string id, std::string name, std::optional<double> good, int focus,
              bool today = true) {
  Member m;
  m.id = std::move(id);
  m.name = std::move(name);
  m.state = MateState::focus;
  m.at = now - 30;
  m.day = today ? studyDayKey(now, seoul) : "2026-02-16";
  m.week = studyWeekKey(now, seoul);
  m.good = good;
  m.focus = focus;
  return m;
}

std::vector<std::string> names(const std::vector<RankingPage::Row>& rows) {
  std::vector<std::string> out;
  for (const auto& row : rows)
    out.push_back(row.name + "#" + std::to_string(row.rank));
  return out;
}

struct TogetherPagesTest : ::testing::Test {
  std::vector<StudyGroup> groups;
  std::map<std::string, std::vector<Member>> members;

  void SetUp() override {
    StudyGroup a;
    a.id = "ga";
    a.name = "아침 스터디";
    a.owner = "me";
    a.code = "12345678";
    StudyGroup b = a;
    b.id = "gb";
    b.name = "저녁";
    b.owner = "jun";
    groups = {a, b};
    members["ga"] = {member("me", "나", 0.5, 30), member("min", "민", 0.9, 30),
                     member("old", "어제", 0.99, 200, false)};
    Member junOld = member("jun", "준", std::nullopt, 10);
    junOld.at = now - 100;
    Member junNew = member("jun", "준", std::nullopt, 80);
    members["ga"].push_back(junOld);
    members["gb"] = {member("me", "나", 0.5, 30), junNew};
  }
  RankingPage ranking(const std::string& group) {
    return RankingPage::make({groups, members, "me", now, seoul}, group,
                             RankingPage::Period::today);
  }
};

TEST_F(TogetherPagesTest, RankingLeavesOutMembersWithoutAShareAndNumbersOfAnotherDay) {
  const RankingPage page = ranking("");
  EXPECT_EQ(names(page.good), (std::vector<std::string>{"민#1", "나#2"}));
  // The later of jun's two statuses counts; yesterday's member stays at 0.
  EXPECT_EQ(names(page.focus), (std::vector<std::string>{"준#1", "나#2", "민#2", "어제#4"}));
  EXPECT_EQ(page.focus[0].value, "1시간 20분");
  EXPECT_EQ(page.good[0].value, "90%");
  EXPECT_TRUE(page.good[1].me);
  EXPECT_FALSE(page.empty);
  EXPECT_EQ(page.scopes.front().title, "모든 친구");
}

TEST_F(TogetherPagesTest, AGroupRankingHoldsOnlyItsMembersAndAnEmptyOneSaysSo) {
  EXPECT_EQ(names(ranking("gb").focus), (std::vector<std::string>{"준#1", "나#2"}));
  members.erase("gb");
  members["ga"] = {member("me", "나", 0.5, 30)};
  const RankingPage alone = ranking("ga");
  ASSERT_TRUE(alone.empty);
  EXPECT_EQ(alone.empty->first, "같이 겨룰 친구가 아직 없어요");
}

TEST_F(TogetherPagesTest, RoomsSeatMembersByTheirLiveStateAndTheOwnerClosesTheRoom) {
  members["ga"][1].at = now - 361;  // 민's program is gone
  const GroupsPage page = GroupsPage::make({{true, std::nullopt, std::nullopt},
                                            false,
                                            true,
                                            std::nullopt,
                                            groups,
                                            members,
                                            "me",
                                            now,
                                            seoul});
  ASSERT_EQ(page.rooms.size(), 2u);
  const GroupsPage::Room& room = page.rooms[0];
  EXPECT_EQ(room.code, "1234 5678");
  EXPECT_EQ(room.leave, "모임 닫기");
  EXPECT_EQ(page.rooms[1].leaveConfirm, "모임에서 나갈까요?");
  ASSERT_EQ(room.away.size(), 1u);
  EXPECT_EQ(room.away[0].name, "민");
  EXPECT_EQ(room.away[0].state, "꺼져 있어요");
  EXPECT_EQ(room.seats[0].numbers, "집중 30분 · 바른 자세 50%");
  EXPECT_EQ(room.noSessions, "아직 일정이 없어요");
  EXPECT_EQ(page.sharing, "친구에게 숨겨 두었어요");
}

TEST_F(TogetherPagesTest, SignedOutShowsTheCardAndWaitsForTheBrowser) {
  const std::vector<StudyGroup> none;
  const std::map<std::string, std::vector<Member>> empty;
  const GroupsPage out = GroupsPage::make(
      {{false, "구글", std::nullopt}, true, false, {}, none, empty, {}, now, seoul});
  ASSERT_TRUE(out.signIn);
  EXPECT_EQ(out.signIn->waiting, "브라우저에서 구글 로그인을 마쳐 주세요");
  EXPECT_TRUE(out.rooms.empty());
  const GroupsPage loaded =
      GroupsPage::make({{true, {}, {}}, true, true, {}, none, empty, "me", now, seoul});
  ASSERT_TRUE(loaded.empty);
  EXPECT_EQ(loaded.empty->first, "아직 모임이 없어요");
  EXPECT_FALSE(loaded.loading);
}

TEST_F(TogetherPagesTest, CalendarMarksTheGroupsDaysAndTheChosenDaysSessions) {
  GroupSession weekly = GroupSession::draft(*seoul.date({2026, 2, 10, 14, 30, 0}));
  weekly.title = "수학";
  weekly.repeats = GroupSession::Repeat::weekly;
  groups[1].sessions = {weekly};
  MemoryDefaults defaults;
  ManualClock clock{now};
  const FocusCenter focus{defaults, clock, seoul};

  const CalendarPage page = CalendarPage::make(groups, focus, now, now, seoul);
  EXPECT_EQ(page.month, "2026년 2월");
  EXPECT_EQ(page.cells.size(), 28u) << "February 2026 starts on a Sunday";
  int marked = 0;
  for (const auto& cell : page.cells)
    marked += cell.sessions;
  EXPECT_EQ(marked, 3) << "the 10th, 17th and 24th";
  ASSERT_EQ(page.sessions.size(), 1u);
  EXPECT_EQ(page.sessions[0].time, "오후 2:30 – 오후 3:30");
  EXPECT_TRUE(page.sessions[0].running);
  ASSERT_EQ(page.soon.size(), 1u) << "today's running session; next Tuesday is too far";
  EXPECT_EQ(page.noFocus, "이날 남긴 집중 기록이 없어요");

  const CalendarPage monday = CalendarPage::make(groups, focus, now - 86400, now, seoul);
  EXPECT_EQ(monday.noSessions, "이날은 모임이 없어요");
  EXPECT_EQ(monday.day, "2월 16일 (월)");
}

}  // namespace
}  // namespace sodam
