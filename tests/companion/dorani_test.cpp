#include "companion/dorani.h"

#include <gtest/gtest.h>

#include "companion/companion_harness.h"

namespace sodam {
namespace {

using Kind = PostureEntry::Kind;
using testing::CompanionHarness;

std::vector<PostureEntry> entries(std::initializer_list<std::pair<Kind, int>> runs) {
  std::vector<PostureEntry> out;
  for (const auto& [kind, count] : runs) {
    for (int i = 0; i < count; ++i)
      out.push_back({Date{}, kind, {}, std::nullopt});
  }
  return out;
}

WorkDay workDay(int breathes, int eyeBreaks) {
  WorkDay day;
  day.breathes = breathes;
  day.eyeBreaks = eyeBreaks;
  return day;
}

TEST(DoraniPoints, EachPartCountsUpToItsCap) {
  struct Case {
    std::vector<PostureEntry> entries;
    int stretches;
    std::optional<WorkDay> work;
    double focus;
    int points;
  };
  const Case cases[] = {
      {entries({{Kind::good, 4}}), 0, std::nullopt, 0, 0},    // too few checks to judge
      {entries({{Kind::good, 5}}), 0, std::nullopt, 0, 3},    // round(5 / 30 × 20)
      {entries({{Kind::good, 30}}), 0, std::nullopt, 0, 20},  // a perfect day
      {entries({{Kind::good, 60}}), 0, std::nullopt, 0, 20},
      {entries({{Kind::good, 24}, {Kind::alert, 6}}), 0, std::nullopt, 0, 16},
      // Absent and away are not judged: five checks, all clean.
      {entries({{Kind::good, 5}, {Kind::away, 9}, {Kind::absent, 9}}), 0, std::nullopt, 0, 3},
      // Corrections also count as clean checks: 7 for posture, 20 for them.
      {entries({{Kind::corrected, 10}}), 0, std::nullopt, 0, 27},
      {entries({{Kind::corrected, 11}}), 0, std::nullopt, 0, 27},
      {{}, 3, std::nullopt, 0, 15},
      {{}, 4, std::nullopt, 0, 15},
      {{}, 0, workDay(3, 0), 0, 9},
      {{}, 0, workDay(4, 0), 0, 9},
      {{}, 0, workDay(0, 2), 74, 4},  // two eye rests and two whole 25-minute spans
      {{}, 0, workDay(0, 5), 50, 6},
      {{}, 0, std::nullopt, 200, 0},  // focus counts only on a day with a work day
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Dorani::points(c.entries, c.stretches, c.work, c.focus), c.points)
        << c.entries.size() << " entries, " << c.stretches << " stretches, focus " << c.focus;
  }
}

TEST(DoraniBanking, ADaysScoreOnlyRisesAndOutlivesTheLog) {
  CompanionHarness h;
  h.record(Kind::good, 30);
  Dorani& dorani = h.dorani();
  EXPECT_EQ(dorani.today(), 20);
  EXPECT_EQ(h.defaults.dictionary(StoreKey::doraniDays).value, (IntDictionary{{"2026-03-10", 20}}));

  // A month later the day is gone from the log, but not from the bank.
  h.clock.advance(31 * 86400.0);
  h.record(Kind::alert, 1);
  ASSERT_EQ(h.log.entries().size(), 1u);
  dorani.refresh();
  EXPECT_EQ(dorani.banked().at("2026-03-10"), 20);
  EXPECT_EQ(dorani.today(), 0);
  EXPECT_EQ(dorani.total(), 20);
  EXPECT_EQ(*dorani.firstDay(), h.at(2026, 3, 10));

  // A banked score above what the records now give is kept.
  CompanionHarness kept;
  kept.bank({{"2026-03-10", 50}});
  kept.record(Kind::good, 30);
  EXPECT_EQ(kept.dorani().today(), 50);
}

TEST(DoraniBanking, DamagedStoreReadsEmptyAndOddKeysStayOutOfTheFirstDay) {
  CompanionHarness h;
  h.defaults.setString(StoreKey::doraniDays, "not a dictionary");
  EXPECT_EQ(h.dorani().total(), 0);
  EXPECT_EQ(h.dorani().days(), 1);
  EXPECT_FALSE(h.dorani().firstDay());

  CompanionHarness odd;
  odd.bank({{"yesterday", 30}, {"2026-02-30", 5}, {"2026-03-08", 10}});
  EXPECT_EQ(odd.dorani().total(), 45);
  EXPECT_EQ(*odd.dorani().firstDay(), odd.at(2026, 3, 8));
  EXPECT_EQ(odd.dorani().days(), 3);
  EXPECT_EQ(odd.dorani().dayFromKey("2026-3-08"), std::nullopt);
  EXPECT_EQ(odd.dorani().dayKey(odd.at(2026, 3, 8, 23, 59)), "2026-03-08");
}

TEST(DoraniLevels, StepsAndProgressFollowTheTotal) {
  struct Case {
    int total;
    int level;
    std::string_view title;
    std::optional<int> next;
    double progress;
  };
  for (const auto& c :
       {Case{0, 1, "처음 만난 사이", 40, 0}, Case{39, 1, "처음 만난 사이", 40, 39.0 / 40},
        Case{40, 2, "아는 사이", 120, 0}, Case{80, 2, "아는 사이", 120, 0.5},
        Case{1799, 7, "평생 친구", 1800, 599.0 / 600},
        Case{1800, 8, "전설의 단짝", std::nullopt, 1}}) {
    CompanionHarness h;
    h.bank({{"2026-03-01", c.total}});
    Dorani& dorani = h.dorani();
    EXPECT_EQ(dorani.level(), c.level) << c.total;
    EXPECT_EQ(dorani.title(), c.title) << c.total;
    EXPECT_EQ(dorani.next() ? std::optional<int>(dorani.next()->points) : std::nullopt, c.next);
    EXPECT_DOUBLE_EQ(dorani.progress(), c.progress) << c.total;
  }
}

TEST(DoraniLevels, TheFirstRunMarksThePresentLevelCelebratedOnce) {
  CompanionHarness fresh;
  fresh.dorani();
  EXPECT_EQ(fresh.store.doraniCelebrated(), 1);

  CompanionHarness old;
  old.bank({{"2026-01-05", 130}});
  old.dorani();
  EXPECT_EQ(old.store.doraniCelebrated(), 3);

  CompanionHarness stored;
  stored.store.setDoraniCelebrated(0);  // stored, even if zero: left alone
  stored.bank({{"2026-01-05", 130}});
  stored.dorani();
  EXPECT_EQ(stored.store.doraniCelebrated(), 0);
}

TEST(DoraniLevels, NewsLastsUntilThePageIsSeen) {
  CompanionHarness h;
  h.bank({{"2026-03-01", 45}});
  Dorani& dorani = h.dorani();
  int changes = 0;
  dorani.onChange.subscribe([&] { ++changes; });
  EXPECT_TRUE(dorani.hasNews());
  dorani.markSeen();
  EXPECT_FALSE(dorani.hasNews());
  EXPECT_EQ(h.store.doraniSeenLevel(), 2);
  dorani.markSeen();
  EXPECT_EQ(changes, 1);
}

TEST(DoraniToday, CountsTheDaysEntriesAndRests) {
  CompanionHarness h;
  h.clock.set(h.at(2026, 3, 9, 17));
  h.record(Kind::good, 3);  // yesterday
  h.clock.set(h.at(2026, 3, 10, 9));
  h.record(Kind::good, 2);
  h.record(Kind::corrected, 2);
  h.record(Kind::alert, 1);
  h.record(Kind::away, 3);
  h.record(Kind::absent, 4);
  h.log.recordStretch({"neck"}, 60, std::nullopt);
  h.work.rested(WorkLife::RestKind::breathe);
  h.work.rested(WorkLife::RestKind::eyes);
  const Dorani::Today stats = h.dorani().todayStats();
  EXPECT_EQ(stats, (Dorani::Today{8, 4, 2, 3, 3}));
}

}  // namespace
}  // namespace sodam
