#include "posix/child_process.h"

#include <gtest/gtest.h>

#include <signal.h>

#include <chrono>

namespace sodam {
namespace {

std::unique_ptr<ChildProcess> shell(const std::string& script, bool pipeInput = false) {
  return ChildProcess::start("/bin/sh", {"-c", script}, {.pipeInput = pipeInput});
}

TEST(ChildProcessTest, OutputIsReadAndErrorsGoNowhere) {
  auto child = shell("echo error >&2; printf 'one\\ntwo'; exit 3");
  ASSERT_TRUE(child);
  EXPECT_EQ(child->readAll(), "one\ntwo");
  EXPECT_EQ(child->wait(), 3);
}

TEST(ChildProcessTest, AProgramThatIsNotThereStartsNothing) {
  EXPECT_FALSE(ChildProcess::start("/nonexistent/sodamjari", {}, {}));
}

TEST(ChildProcessTest, InputReachesTheChildAndADeadReaderFailsTheWrite) {
  auto child = shell("read line; echo \"got $line\"", true);
  ASSERT_TRUE(child);
  EXPECT_TRUE(child->write("hello\n"));
  EXPECT_EQ(child->readAll(), "got hello\n");
  child->wait();
  // The reader is gone: the write fails instead of ending this process.
  EXPECT_FALSE(child->write(std::string(1 << 20, 'x')));
}

TEST(ChildProcessTest, TheReaderHandsOverChunksThenAnEmptyOne) {
  auto child = shell("read line; echo \"$line\"", true);
  ASSERT_TRUE(child);
  std::mutex mutex;
  std::string seen;
  bool ended = false;
  child->startReading([&](std::string bytes) {
    std::lock_guard lock(mutex);
    if (bytes.empty()) ended = true;
    seen += bytes;
  });
  child->write("ping\n");
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (std::chrono::steady_clock::now() < deadline) {
    std::lock_guard lock(mutex);
    if (ended) break;
  }
  std::lock_guard lock(mutex);
  EXPECT_TRUE(ended);
  EXPECT_EQ(seen, "ping\n");
}

TEST(ChildProcessTest, AChildThatWillNotEndIsKilledWhenLetGo) {
  const auto started = std::chrono::steady_clock::now();
  pid_t pid;
  {
    auto child = shell("exec sleep 30", true);
    ASSERT_TRUE(child);
    pid = child->pid();
    child->startReading([](std::string) {});
  }
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
  EXPECT_NE(::kill(pid, 0), 0);  // reaped: no such process any more
}

}  // namespace
}  // namespace sodam
