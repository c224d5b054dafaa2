#include "posture/posture_log.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <random>

#include "platform/store.h"
#include "posture/posture_log_text.h"

namespace sodam {
namespace {

using Kind = PostureEntry::Kind;
using nlohmann::json;

class PostureLogTest : public ::testing::Test {
 protected:
  Date local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return calendar.date({year, month, day, hour, minute, second}).value();
  }
  void store(std::string_view key, const std::string& text) {
    defaults.setData(key, Bytes(text.begin(), text.end()));
  }
  json stored(std::string_view key) { return defaults.jsonData(key).value(); }
  PostureLog& log() {
    if (!log_) log_ = std::make_unique<PostureLog>(defaults, clock, calendar);
    return *log_;
  }
  void recordAt(Date t, Kind kind, std::vector<IssueKind> issues = {}) {
    clock.set(t);
    log().record(kind, std::move(issues));
  }

  MemoryDefaults defaults;
  ManualClock clock{Date{740'000'000}};
  Calendar calendar{TimeZone::fromPosixRule("EST5EDT,M3.2.0,M11.1.0").value()};
  std::unique_ptr<PostureLog> log_;
};

TEST_F(PostureLogTest, RecordsStoreTheShortShape) {
  Metrics metrics;
  metrics.headForward = 4.25;
  metrics.headTilt = -1.5;
  metrics.closer = 0.1;
  metrics.viewDistance = 52;
  log().record(Kind::alert, {IssueKind::slouch, IssueKind::headTilt}, metrics);
  clock.advance(60);
  log().record(Kind::absent);

  EXPECT_EQ(stored(StoreKey::postureLog),
            json::parse(R"([{"t":740000000,"k":"alert","i":["slouch","headTilt"],
                             "m":{"forward":4.25,"tilt":-1.5,"close":0.1,"dist":52}},
                            {"t":740000060,"k":"absent","i":[]}])"));
  EXPECT_EQ(log().entries().back().m, std::nullopt);
  EXPECT_EQ(log().entries().front().m->close, 0.1f);
}

TEST_F(PostureLogTest, ReadsStoredRecordsAndSkipsOnlyTheBadOnes) {
  store(StoreKey::postureLog, R"([
    {"t": 1000.5, "k": "good", "i": []},
    {"t": 1060, "k": "alert", "i": ["forwardHead", "lean"],
     "m": {"forward": 5.5, "drop": 1, "nod": 2, "shoulder": 0.5, "tilt": 1, "lean": 6,
           "close": -3}},
    {"t": 1120, "k": "good", "i": [], "m": {"forward": 1, "close": 2}},
    {"t": 1180, "k": "sleeping", "i": []},
    {"t": 1240, "k": "alert", "i": ["hunch"]},
    {"t": 1300, "k": "good", "i": [], "m": {"tilt": 1e39, "close": 0}},
    {"t": 1360, "k": "good"},
    "junk",
    {"t": 1420, "k": "corrected", "i": [], "m": null}
  ])");
  store(StoreKey::stretchLog, R"([{"t": 5, "ids": ["chinTuck"], "seconds": 40},
                                  {"t": 6, "ids": ["chest"], "seconds": 30, "accuracy": 0.5},
                                  {"t": 7, "ids": [1], "seconds": 30}])");
  const auto& entries = log().entries();
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0], (PostureEntry{Date{1000.5}, Kind::good, {}, std::nullopt}));
  Snapshot full{5.5f, 1.0f, 2.0f, 0.5f, 1.0f, 6.0f, -3.0f, std::nullopt};
  EXPECT_EQ(
      entries[1],
      (PostureEntry{Date{1060}, Kind::alert, {IssueKind::forwardHead, IssueKind::lean}, full}));
  EXPECT_EQ(entries[2].k, Kind::corrected);
  ASSERT_EQ(log().stretches().size(), 2u);
  EXPECT_EQ(log().stretches()[1].accuracy, 0.5);
  EXPECT_FALSE(log().stretches()[0].accuracy);
}

TEST_F(PostureLogTest, StoredValueThatIsNoListReadsEmptyAndIsOverwritten) {
  for (const std::string text : {R"({"t": 1})", "[{\"t\": 1, ", "", "42"}) {
    MemoryDefaults fresh;
    fresh.setData(StoreKey::postureLog, Bytes(text.begin(), text.end()));
    PostureLog other(fresh, clock, calendar);
    EXPECT_TRUE(other.entries().empty()) << text;
    other.record(Kind::good);
    EXPECT_EQ(fresh.jsonData(StoreKey::postureLog)->size(), 1u);
  }
}

TEST_F(PostureLogTest, NumbersSurviveTheStoredTextExactly) {
  std::mt19937 random(7);
  std::normal_distribution<float> spread(0, 8);
  std::uniform_int_distribution<int> exponent(-30, 30);
  std::deque<PostureEntry> entries;
  PostureLogText text;
  Date t{740'000'000.123456};
  for (int i = 0; i < 20'000; ++i) {
    Snapshot snapshot;
    snapshot.forward = spread(random);
    if (i % 3) snapshot.drop = std::ldexp(spread(random), exponent(random));
    snapshot.tilt = spread(random) * 1e5f;
    snapshot.close = -0.0f;
    snapshot.dist = 40 + spread(random);
    t += 60.000123;
    entries.push_back({t, i % 7 ? Kind::good : Kind::alert, {}, snapshot});
    text.append(entries.back());
  }
  defaults.setData(StoreKey::postureLog, text.encode(entries));
  EXPECT_TRUE(
      std::equal(log().entries().begin(), log().entries().end(), entries.begin(), entries.end()));
}

TEST_F(PostureLogTest, SnapshotLeavesOutNumbersJsonCannotHold) {
  Metrics metrics;
  metrics.headForward = std::nan("");
  metrics.lean = 1e300;
  metrics.closer = 1;
  auto snapshot = Snapshot::of(metrics);
  ASSERT_TRUE(snapshot);
  EXPECT_FALSE(snapshot->forward);
  EXPECT_FALSE(snapshot->lean);
  metrics.headTilt = INFINITY;
  EXPECT_FALSE(Snapshot::of(metrics));
}

TEST_F(PostureLogTest, PruningKeepsAnEntryExactly30DaysOld) {
  Date start = clock.now();
  recordAt(start, Kind::good);
  recordAt(start + 0.5, Kind::alert, {IssueKind::slouch});
  clock.set(start + 10);
  log().recordStretch({"chinTuck"}, 40, std::nullopt);

  recordAt(start + PostureLog::keepSeconds, Kind::good);
  EXPECT_EQ(log().entries().size(), 3u) << "exactly 30 days old stays";
  recordAt(start + PostureLog::keepSeconds + 0.25, Kind::good);
  ASSERT_EQ(log().entries().size(), 3u);
  EXPECT_EQ(log().entries().front().t, start + 0.5);
  recordAt(start + PostureLog::keepSeconds + 11, Kind::good);
  EXPECT_TRUE(log().stretches().empty());
  EXPECT_TRUE(stored(StoreKey::stretchLog).empty()) << "pruned stretches are saved too";

  PostureLog reread(defaults, clock, calendar);
  EXPECT_EQ(reread.entries().size(), 3u);
  EXPECT_EQ(reread.entries().front().t, start + PostureLog::keepSeconds);
}

TEST_F(PostureLogTest, PruningAfterTheClockWentBackKeepsTheOrderAndTheText) {
  Date start = clock.now();
  recordAt(start + 100, Kind::good);
  recordAt(start, Kind::alert, {IssueKind::lean});
  recordAt(start + 200, Kind::good);
  recordAt(start + PostureLog::keepSeconds + 50, Kind::corrected);
  ASSERT_EQ(log().entries().size(), 3u);
  EXPECT_EQ(log().entries()[0].t, start + 100);
  EXPECT_EQ(log().entries()[1].t, start + 200);
  PostureLog reread(defaults, clock, calendar);
  EXPECT_TRUE(std::equal(reread.entries().begin(), reread.entries().end(), log().entries().begin(),
                         log().entries().end()));
}

TEST_F(PostureLogTest, DayCountsJudgedChecksOnly) {
  Date morning = local(2024, 5, 2, 9);
  recordAt(morning, Kind::absent);
  recordAt(morning + 60, Kind::away);
  auto day = log().day(morning);
  EXPECT_EQ(day.date, local(2024, 5, 2));
  EXPECT_EQ(day.checks, 0);
  EXPECT_FALSE(day.ratio());

  recordAt(morning + 120, Kind::alert, {IssueKind::slouch, IssueKind::lean});
  recordAt(morning + 180, Kind::corrected);
  recordAt(morning + 240, Kind::good);
  recordAt(local(2024, 5, 3, 0, 0, 0), Kind::good);
  day = log().day(morning);
  EXPECT_EQ(day, (PostureLog::Day{local(2024, 5, 2), 3, 2, 1}));
  EXPECT_DOUBLE_EQ(*day.ratio(), 2.0 / 3);
  auto counts = log().issueCounts(1);
  EXPECT_EQ(counts,
            (std::vector<PostureLog::IssueCount>{{IssueKind::slouch, 1}, {IssueKind::lean, 1}}));
}

TEST_F(PostureLogTest, LastDaysAndHourlyFollowTheLocalCalendar) {
  // The spring day has 23 hours: 01:59 is followed by 03:00.
  recordAt(local(2024, 3, 9, 23, 59, 59), Kind::good);
  recordAt(local(2024, 3, 10, 1, 59), Kind::alert, {IssueKind::slouch});
  recordAt(local(2024, 3, 10, 3, 1), Kind::good);
  recordAt(local(2024, 3, 10, 23, 59, 59), Kind::good);
  recordAt(local(2024, 3, 11, 0, 0, 1), Kind::alert, {IssueKind::lean});

  auto days = log().lastDays(4);
  ASSERT_EQ(days.size(), 4u);
  EXPECT_EQ(days[0], (PostureLog::Day{local(2024, 3, 8), 0, 0, 0}));
  EXPECT_EQ(days[1], (PostureLog::Day{local(2024, 3, 9), 1, 1, 0}));
  EXPECT_EQ(days[2], (PostureLog::Day{local(2024, 3, 10), 3, 2, 1}));
  EXPECT_EQ(days[3], (PostureLog::Day{local(2024, 3, 11), 1, 0, 1}));
  EXPECT_EQ(days[2], log().day(local(2024, 3, 10, 12)));
  EXPECT_TRUE(log().lastDays(0).empty());

  auto hours = log().hourly(local(2024, 3, 10, 12));
  ASSERT_EQ(hours.size(), 24u);
  EXPECT_EQ(hours[1], (PostureLog::Hour{1, 0, 1}));
  EXPECT_EQ(hours[2], (PostureLog::Hour{2, 0, 0}));
  EXPECT_EQ(hours[3], (PostureLog::Hour{3, 1, 0}));
  EXPECT_EQ(hours[23], (PostureLog::Hour{23, 1, 0}));
  for (const auto& hour : log().hourly(local(2024, 3, 1))) {
    EXPECT_EQ(hour.good + hour.bad, 0);
  }
}

TEST_F(PostureLogTest, YoungerThanMeansStrictlyYounger) {
  Date start = clock.now();
  recordAt(start, Kind::alert, {IssueKind::slouch, IssueKind::tooClose});
  recordAt(start + 10, Kind::alert, {IssueKind::slouch});
  recordAt(start + 20, Kind::corrected);
  clock.set(start + 3600);
  EXPECT_EQ(log().alertsLastHour(), 1);
  clock.set(start + 86'400);
  EXPECT_EQ(log().issueCounts(1), (std::vector<PostureLog::IssueCount>{{IssueKind::slouch, 1}}));
  clock.set(start + 86'399);
  EXPECT_EQ(log().issueCounts(1), (std::vector<PostureLog::IssueCount>{{IssueKind::slouch, 2},
                                                                       {IssueKind::tooClose, 1}}));
  EXPECT_EQ(log().issueWeights(),
            (std::map<IssueKind, double>{{IssueKind::slouch, 1.0}, {IssueKind::tooClose, 0.5}}));
  clock.set(start + 7 * 86'400 + 10);
  EXPECT_TRUE(log().issueWeights().empty());
}

TEST_F(PostureLogTest, StretchesTodayStartsAtLocalMidnight) {
  clock.set(local(2024, 7, 1, 23, 59, 59));
  log().recordStretch({"chinTuck", "chest"}, 180, 0.75);
  clock.set(local(2024, 7, 2, 0, 0, 0));
  EXPECT_EQ(log().stretchesToday(), 0);
  log().recordStretch({"eyes"}, 60, std::nan(""));
  EXPECT_EQ(log().stretchesToday(), 1);
  EXPECT_EQ(stored(StoreKey::stretchLog)[1],
            json::parse(R"({"t":)" + std::to_string(clock.now().sinceReference) +
                        R"(,"ids":["eyes"],"seconds":60})"));
}

}  // namespace
}  // namespace sodam
