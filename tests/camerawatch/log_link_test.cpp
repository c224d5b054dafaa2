#include "camerawatch/log_link.h"

#include <gtest/gtest.h>

#include "camerawatch/link_fakes.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

const std::string recordA =
    R"({"client":true,"identifier":"A","key":"c1@5","path":"/opt/a","pid":1,"preflight":false,"time":5.5})";
const std::string recordB =
    R"({"client":false,"identifier":"b.id","key":"2.1@6","path":"/opt/b","pid":2,"preflight":true,"time":6,"allowed":false})";

class LogLinkTest : public ::testing::Test {
 protected:
  LogLinkTest() {
    auto owned = std::make_unique<FakeChannel>();
    channel = owned.get();
    link = std::make_unique<LogLink>(std::move(owned), scheduler);
  }

  // The helper writes; the bytes reach the link on the main thread.
  void helperWrites(const std::string& bytes) {
    channel->answer(bytes);
    scheduler.runPosted();
  }

  std::vector<std::vector<CameraRecord>> answers;
  LogLink::RecordsDone collect() {
    return [this](std::vector<CameraRecord> records) { answers.push_back(std::move(records)); };
  }

  ManualClock clock{Date::fromUnix(1741046400)};
  ManualScheduler scheduler{clock};
  FakeChannel* channel = nullptr;
  std::unique_ptr<LogLink> link;
};

TEST_F(LogLinkTest, CommandsCarryTheirWindowsAsUnixSeconds) {
  link->query(Date::fromUnix(1741046400.25), Date::fromUnix(1741046460), true, collect());
  link->query(Date::fromUnix(1), Date::fromUnix(2), false, collect());
  link->indicator(Date::fromUnix(0.5), Date::fromUnix(7), [](auto) {});
  link->stream(true);
  link->stream(false);
  EXPECT_EQ(channel->written, "C 1741046400.25 1741046460\nQ 1 2\nI 0.5 7\nS 1\nS 0\n");
}

TEST_F(LogLinkTest, AnswersInOrderWithAStreamLineBetweenTheirLines) {
  std::vector<IndicatorUpdate> streamed;
  link->onIndicator = [&](const IndicatorUpdate& u) { streamed.push_back(u); };
  link->query(Date{}, Date{1}, true, collect());
  link->query(Date{}, Date{1}, false, collect());
  helperWrites(recordA + "\n@{\"time\":9,\"cams\":[]}\n" + recordB + "\n.\n");
  ASSERT_EQ(streamed.size(), 1u);
  EXPECT_EQ(streamed[0].time, 9);
  ASSERT_EQ(answers.size(), 1u);
  ASSERT_EQ(answers[0].size(), 2u);
  EXPECT_EQ(answers[0][0].key, "c1@5");
  EXPECT_EQ(answers[0][1].allowed, false);
  helperWrites(".\n");
  ASSERT_EQ(answers.size(), 2u);
  EXPECT_TRUE(answers[1].empty());
}

TEST_F(LogLinkTest, AChunkEndingMidLineWaitsForItsTail) {
  link->query(Date{}, Date{1}, true, collect());
  helperWrites(recordA.substr(0, 20));
  helperWrites(recordA.substr(20) + "\n");
  helperWrites(".");
  EXPECT_TRUE(answers.empty());
  helperWrites("\n");
  ASSERT_EQ(answers.size(), 1u);
  EXPECT_EQ(answers[0].size(), 1u);
}

TEST_F(LogLinkTest, BadLinesAreLeftOutAndAStrayTerminatorIsHarmless) {
  helperWrites("left over\n.\n");
  link->query(Date{}, Date{1}, true, collect());
  helperWrites("{not json\n" + recordA + "\n{\"client\":true}\n\n@garbage\n.\n");
  ASSERT_EQ(answers.size(), 1u);
  ASSERT_EQ(answers[0].size(), 1u);
  EXPECT_EQ(answers[0][0].key, "c1@5");

  std::vector<std::optional<IndicatorUpdate>> readings;
  link->indicator(Date{}, Date{1}, [&](auto u) { readings.push_back(u); });
  link->indicator(Date{}, Date{1}, [&](auto u) { readings.push_back(u); });
  helperWrites("{\"time\":1,\"cams\":[]}\n{\"time\":2,\"cams\":[{\"name\":\"A\"}]}\n.\n.\n");
  ASSERT_EQ(readings.size(), 2u);
  ASSERT_TRUE(readings[0]);
  EXPECT_EQ(readings[0]->time, 1);  // the last line that decodes
  EXPECT_FALSE(readings[1]);
}

TEST_F(LogLinkTest, DeathAnswersEveryPendingCallEmptyAndForever) {
  std::vector<int> order;
  for (int i = 0; i < 3; ++i) {
    link->query(Date{}, Date{1}, true, [&, i](std::vector<CameraRecord> records) {
      EXPECT_TRUE(records.empty());
      order.push_back(i);
    });
  }
  helperWrites(recordA + "\n");
  helperWrites("");
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
  EXPECT_FALSE(link->available());
  EXPECT_FALSE(channel->reading);
  // A call on a dead link answers before it returns, and sends nothing.
  const auto sent = channel->written;
  bool answered = false;
  link->indicator(Date{}, Date{1}, [&](auto u) { answered = !u; });
  EXPECT_TRUE(answered);
  link->stream(true);
  EXPECT_EQ(channel->written, sent);
}

TEST_F(LogLinkTest, AFailedWriteKillsTheLink) {
  link->query(Date{}, Date{1}, true, collect());
  channel->writable = false;
  link->query(Date{}, Date{1}, false, collect());
  EXPECT_EQ(answers.size(), 2u);
  EXPECT_FALSE(link->available());
}

TEST_F(LogLinkTest, BytesAfterTheLinkIsGoneAreDropped) {
  link->query(Date{}, Date{1}, true, collect());
  channel->answer(".\n");
  link.reset();
  scheduler.runPosted();
  EXPECT_TRUE(answers.empty());
}

}  // namespace
}  // namespace sodam
