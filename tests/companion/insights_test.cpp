#include "companion/insights.h"

#include <gtest/gtest.h>

#include "companion/companion_harness.h"

namespace sodam {
namespace {

using Kind = PostureEntry::Kind;
using testing::CompanionHarness;

// A week of records laid down day by day.
struct WeekRecords {
  CompanionHarness h;

  std::vector<std::string> lines() {
    h.clock.set(h.at(2026, 3, 10, 18));  // a Tuesday evening
    std::vector<std::string> out;
    for (const auto& line : Insights::lines(h.work, h.log, h.clock.now(), h.calendar))
      out.push_back(line.text);
    return out;
  }
  void checksOn(Date day, int good, int alerts) {
    h.clock.set(day);
    h.record(Kind::good, good);
    h.clock.advance(60);
    h.record(Kind::alert, alerts, {IssueKind::slouch});
  }
  void alertsAt(int day, int hour, int count) {
    h.clock.set(h.at(2026, 3, day, hour));
    h.record(Kind::alert, count, {IssueKind::forwardHead});
  }
  // Spans of the minutes at the machine, ten minutes away between them.
  void sitOn(int day, std::vector<int> spans) {
    h.clock.set(h.at(2026, 3, day, 9));
    for (int minutes : spans) {
      h.sit(minutes);
      h.clock.advance(600);
    }
  }
};

TEST(Insights, ThisWeeksGoodShareIsComparedOnlyWithEnoughChecksAndChange) {
  WeekRecords better;
  better.checksOn(better.h.at(2026, 3, 2, 10), 10, 10);  // last week: 50 %
  better.checksOn(better.h.at(2026, 3, 9, 10), 18, 2);   // this week: 90 %
  EXPECT_EQ(better.lines(),
            std::vector<std::string>{"이번 주 바른 자세는 90%예요. 지난주보다 40%p 좋아졌어요!"});

  WeekRecords worse;
  worse.checksOn(worse.h.at(2026, 3, 3, 10), 19, 1);  // 95 %
  worse.checksOn(worse.h.at(2026, 3, 4, 10), 18, 2);  // 90 %
  EXPECT_EQ(worse.lines(),
            std::vector<std::string>{"이번 주 바른 자세는 90%예요. 지난주보다 5%p 내려갔어요."});

  WeekRecords few;
  few.checksOn(few.h.at(2026, 3, 3, 10), 10, 9);  // 19 checks: too few to compare
  few.checksOn(few.h.at(2026, 3, 4, 10), 20, 0);
  EXPECT_TRUE(few.lines().empty());

  WeekRecords steady;
  steady.checksOn(steady.h.at(2026, 3, 3, 10), 16, 4);  // 80 %
  steady.checksOn(steady.h.at(2026, 3, 4, 10), 17, 4);  // 81 %
  EXPECT_TRUE(steady.lines().empty());
}

TEST(Insights, TheHourOfMostAlertsNeedsEnoughAlertsAndNoTie) {
  WeekRecords afternoon;
  afternoon.alertsAt(9, 15, 2);
  afternoon.alertsAt(10, 15, 1);
  afternoon.alertsAt(10, 10, 2);
  afternoon.alertsAt(2, 10, 5);  // more than a week ago
  EXPECT_EQ(afternoon.lines(),
            std::vector<std::string>{
                "이번 주엔 오후 3시대에 자세가 가장 자주 흐트러졌어요. 그때 한 번 더 허리를 "
                "펴 봐요."});

  WeekRecords tied;
  tied.alertsAt(9, 0, 2);
  tied.alertsAt(10, 11, 2);
  tied.alertsAt(10, 12, 1);
  EXPECT_TRUE(tied.lines().empty());

  WeekRecords midnight;
  midnight.alertsAt(9, 0, 3);
  midnight.alertsAt(10, 11, 2);
  EXPECT_EQ(midnight.lines().front().rfind("이번 주엔 오전 12시대에", 0), 0u);

  WeekRecords few;
  few.alertsAt(9, 15, 4);  // four alerts in all
  EXPECT_TRUE(few.lines().empty());
}

TEST(Insights, TheLongestSittingAndTheDayOfMostBreaksComeFromTheWorkDays) {
  WeekRecords two;
  two.sitOn(9, {75, 20, 20, 20});  // Monday: three breaks, the longest span
  two.sitOn(10, {40, 30});         // Tuesday: one break
  EXPECT_EQ(two.lines(),
            (std::vector<std::string>{
                "이번 주 가장 오래 앉아 있던 건 월요일 1시간 15분이에요. 50분마다 한 번씩 "
                "일어나요!",
                "월요일에 가장 자주 쉬었어요. 자리에서 3번 일어났어요!"}));

  WeekRecords oneDay;
  oneDay.sitOn(10, {59, 20, 20, 20});  // a single day compares with nothing
  EXPECT_TRUE(oneDay.lines().empty());

  WeekRecords tied;
  tied.sitOn(9, {30, 20, 20, 20});
  tied.sitOn(10, {30, 20, 20, 20});
  EXPECT_TRUE(tied.lines().empty());
}

}  // namespace
}  // namespace sodam
