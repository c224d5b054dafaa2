// The log link against real child processes: shell scripts that speak the
// helper's side of the protocol as a test needs it.
#include <gtest/gtest.h>

#include <signal.h>

#include <chrono>
#include <thread>

#include "camerawatch/log_link.h"
#include "posix/pipe_helper_launcher.h"
#include "posix/scheduler_pump.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

class LinkToChildTest : public ::testing::Test {
 protected:
  std::unique_ptr<LogLink> spawn(const std::string& script) {
    launcher =
        std::make_unique<PipeHelperLauncher>("/bin/sh", std::vector<std::string>{"-c", script});
    return LogLink::spawn(*launcher, scheduler);
  }

  template <class Condition>
  bool pumpUntil(Condition done) {
    return sodam::pumpUntil(scheduler, done);
  }

  ManualClock clock{Date::fromUnix(1741078800)};
  ManualScheduler scheduler{clock};
  std::unique_ptr<PipeHelperLauncher> launcher;
};

TEST_F(LinkToChildTest, AnswersInOrderWithAStreamLineBetween) {
  // "$0" is the switch the link passes; the script checks it arrived.
  auto link = spawn(
      "[ \"$0\" = --camera-log-helper ] || exit 1; read a; read b; "
      "printf "
      "'{\"time\":1,\"cams\":[]}\\n@{\"time\":9,\"cams\":[]}\\n.\\n{\"time\":2,\"cams\":[]}\\n.\\n'"
      "; "
      "while read c; do :; done");
  ASSERT_TRUE(link);
  std::vector<double> streamed;
  std::vector<std::optional<double>> answered;
  link->onIndicator = [&](const IndicatorUpdate& u) { streamed.push_back(u.time); };
  for (int i = 0; i < 2; ++i) {
    link->indicator(Date{}, Date{1}, [&](std::optional<IndicatorUpdate> u) {
      answered.push_back(u ? std::optional<double>(u->time) : std::nullopt);
    });
  }
  ASSERT_TRUE(pumpUntil([&] { return answered.size() == 2; }));
  EXPECT_EQ(answered, (std::vector<std::optional<double>>{1.0, 2.0}));
  EXPECT_EQ(streamed, std::vector<double>{9.0});
  EXPECT_TRUE(link->available());
}

TEST_F(LinkToChildTest, AHelperKilledMidCallAnswersEveryPendingCall) {
  auto link = spawn("while read c; do :; done");
  ASSERT_TRUE(link);
  std::vector<int> order;
  for (int i = 0; i < 3; ++i) {
    link->query(Date{}, Date{1}, true, [&order, i](std::vector<CameraRecord> records) {
      EXPECT_TRUE(records.empty());
      order.push_back(i);
    });
  }
  ::kill(launcher->launched()->pid(), SIGKILL);
  ASSERT_TRUE(pumpUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
  EXPECT_FALSE(link->available());
  // Dead for good: the next call answers at once.
  bool answered = false;
  link->query(Date{}, Date{1}, false, [&](std::vector<CameraRecord>) { answered = true; });
  EXPECT_TRUE(answered);
}

TEST_F(LinkToChildTest, NoLinkWithoutAHelperToStart) {
  PipeHelperLauncher missing("/nonexistent/sodamjari");
  EXPECT_FALSE(LogLink::spawn(missing, scheduler));
}

}  // namespace
}  // namespace sodam
