#include "linux/command_model.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "support/manual_scheduler.h"

namespace sodam {
namespace {

TEST(CommandLanguageModel, TheCommandReadsInstructionsThenQuestionAndItsOutputIsTheReply) {
  EXPECT_EQ(CommandLanguageModel::run("cat", "지시\n\n질문\n"), "지시\n\n질문");
  // A runtime that answers before reading all of a long input still gets it.
  const std::string longInput(200000, 'a');
  EXPECT_EQ(CommandLanguageModel::run("echo early; wc -c", longInput), "early\n200000");
}

TEST(CommandLanguageModel, ANonZeroExitAnEmptyReplyOrAMissingProgramFail) {
  EXPECT_EQ(CommandLanguageModel::run("echo half; exit 3", "q"), std::nullopt);
  EXPECT_EQ(CommandLanguageModel::run("printf '  \\n'", "q"), std::nullopt);
  EXPECT_EQ(CommandLanguageModel::run("no-such-model-runtime-here 2>/dev/null", "q"), std::nullopt);
}

TEST(CommandLanguageModel, TheReplyReachesTheMainThreadOnlyThroughThePost) {
  ManualClock clock(Date{0});
  ManualScheduler scheduler(clock);
  CommandLanguageModel model("tail -n 1", scheduler);
  ASSERT_TRUE(model.available());
  std::optional<std::string> reply;
  int calls = 0;
  model.respond("instructions", "question", [&](std::optional<std::string> text) {
    reply = std::move(text);
    ++calls;
  });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (calls == 0 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    scheduler.runPosted();
  }
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(reply, "question");
}

TEST(CommandLanguageModel, OnlyACommandInTheEnvironmentMakesAModel) {
  ManualClock clock(Date{0});
  ManualScheduler scheduler(clock);
  ::unsetenv(CommandLanguageModel::variable);
  EXPECT_EQ(CommandLanguageModel::fromEnvironment(scheduler), nullptr);
  ::setenv(CommandLanguageModel::variable, "  ", 1);
  EXPECT_EQ(CommandLanguageModel::fromEnvironment(scheduler), nullptr);
  ::setenv(CommandLanguageModel::variable, "cat", 1);
  EXPECT_NE(CommandLanguageModel::fromEnvironment(scheduler), nullptr);
  ::unsetenv(CommandLanguageModel::variable);
}

}  // namespace
}  // namespace sodam
