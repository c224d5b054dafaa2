#include "app/doctor_page.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

using Kind = PostureEntry::Kind;

struct DoctorRecords : ::testing::Test {
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  MemoryDefaults defaults;
  ManualClock clock{local(10, 15)};
  PostureLog log{defaults, clock, calendar};
  std::vector<WorkDay> days;

  Date local(int day, int hour, int minute = 0) const {
    return calendar.date({2026, 6, day, hour, minute, 0}).value();
  }
  // A check at that moment whose head bows so far.
  void check(Date at, Kind kind, double nod, std::vector<IssueKind> issues = {}) {
    clock.set(at);
    Metrics m;
    m.flexion = nod;
    log.record(kind, std::move(issues), m);
  }
  DoctorPage page() { return DoctorPage::make({log, days, calendar, clock.now()}); }
};

TEST_F(DoctorRecords, TooFewChecksAskForMoreAndNoHabitSaysSo) {
  for (int i = 0; i < 9; ++i)
    check(local(10, 9, i), Kind::good, 1);
  const DoctorPage few = page();
  EXPECT_EQ(few.basis(), "최근 7일 자세 확인 9회를 바탕으로 살펴봤어요");
  ASSERT_TRUE(few.notice());
  EXPECT_EQ(few.notice()->first, "기록이 조금 더 필요해요");
  EXPECT_EQ(few.notice()->second,
            "자세 확인이 10번 넘게 쌓이면 알림까지 가지 않는 작은 습관도 찾아 드려요. 지금 9번 "
            "쌓였어요.");

  check(local(10, 10), Kind::good, 1);
  const DoctorPage plain = page();
  ASSERT_TRUE(plain.notice());
  EXPECT_EQ(plain.notice()->first, "뚜렷한 습관이 없어요");
  EXPECT_EQ(plain.opinion().first, "지금은 크게 치우친 곳이 없어요");
  EXPECT_EQ(plain.checkupCells()[1].value, "뚜렷한 습관 없음");
  EXPECT_TRUE(plain.routine().empty());
}

TEST_F(DoctorRecords, AHabitBringsItsCardTheCheckupAndTheOpinion) {
  // The week before: two good checks of four. This week: a bowed head,
  // mostly good.
  check(local(2, 9), Kind::good, 0);
  check(local(2, 9, 1), Kind::good, 0);
  check(local(2, 9, 2), Kind::alert, 0, {IssueKind::slouch});
  check(local(2, 9, 3), Kind::alert, 0, {IssueKind::slouch});
  for (int i = 0; i < 10; ++i)
    check(local(9 + i % 2, 14, i), Kind::good, 16);
  check(local(10, 14, 30), Kind::alert, 16, {IssueKind::lookingDown});
  check(local(10, 14, 31), Kind::corrected, 16);
  days.push_back(WorkDay{local(10, 0), {{local(10, 9), local(10, 12)}}, 0, 0, 0});
  days.push_back(WorkDay{local(9, 0), {{local(9, 9), local(9, 10)}}, 0, 0, 0});

  const DoctorPage p = page();
  EXPECT_FALSE(p.notice());
  ASSERT_EQ(p.cards.size(), 1u);
  const DoctorPage::Card& card = p.cards[0];
  EXPECT_EQ(card.habit.id, "nod");
  EXPECT_EQ(card.habit.level, Habit::Level::clear);
  EXPECT_EQ(card.stats.thisWeek, 16);
  EXPECT_EQ(card.stats.peakHour, 14);
  EXPECT_EQ(DoctorPage::hourText(*card.stats.peakHour), "14시대");
  EXPECT_EQ(DoctorPage::amount(card.stats.thisWeek, card.stats.unit), "16.0도");
  EXPECT_EQ(card.prescription.front(), "하늘 보기: 20초씩 3번");

  const auto cells = p.checkupCells();
  ASSERT_EQ(cells.size(), 4u);
  EXPECT_EQ(cells[0].label, "이번 주 바른 자세");
  EXPECT_EQ(cells[0].value, "92%");  // 11 good of 12
  EXPECT_EQ(cells[0].detail, "지난주 50%");
  EXPECT_EQ(cells[1].value, "1개");
  // The slouches are eight days old: only this week's alerts count.
  EXPECT_EQ(cells[2].value, "고개 숙임");
  EXPECT_EQ(cells[3].value, "2시간 0분");  // three hours and one over two days
  EXPECT_EQ(p.opinion().first, "가장 먼저 챙길 곳은\n목 앞");
  EXPECT_EQ(p.routine(), (std::vector<std::string>{"neckExt", "chinTuck"}));
  EXPECT_EQ(DoctorPage::levelTint(card.habit.level), Theme::red);

  // The card's chart: seven days, the two with checks full, today last.
  const auto bars = DoctorPage::dailyBars(card, calendar);
  ASSERT_EQ(bars.size(), 7u);
  EXPECT_EQ(bars[5].label, "6/9 화");
  EXPECT_EQ(bars[5].fill, 1.0);
  EXPECT_EQ(bars[5].value, "16.0");
  EXPECT_EQ(bars[5].spoken, "6/9 화 평균 16.0도");
  EXPECT_EQ(bars[0].fill, std::nullopt);
  EXPECT_TRUE(bars[6].stressed);
  EXPECT_FALSE(bars[5].stressed);
}

TEST_F(DoctorRecords, AWeekWithoutTheWeekBeforeSaysItHasNoRecord) {
  check(local(10, 9), Kind::good, 0);
  const auto cells = page().checkupCells();
  EXPECT_EQ(cells[0].value, "100%");
  EXPECT_EQ(cells[0].detail, "지난주 기록 없음");
  EXPECT_EQ(cells[2].value, "없음");
  EXPECT_EQ(cells[3].value, "—");
}

}  // namespace
}  // namespace sodam
