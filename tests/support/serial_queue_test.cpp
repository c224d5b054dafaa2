#include "support/serial_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace sodam {
namespace {

TEST(ThreadQueue, RunsTasksInOrderOffTheCallingThread) {
  std::vector<int> order;
  std::thread::id worker;
  {
    ThreadQueue queue("test.serial");
    for (int i = 0; i < 100; ++i)
      queue.async([&order, i] { order.push_back(i); });
    queue.sync([&] { worker = std::this_thread::get_id(); });
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_EQ(order.size(), 100u);
  }
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(order[i], i);
}

TEST(ThreadQueue, DestructionFinishesQueuedWork) {
  std::atomic<int> done = 0;
  {
    ThreadQueue queue("test.drain");
    for (int i = 0; i < 50; ++i)
      queue.async([&] { ++done; });
  }
  EXPECT_EQ(done, 50);
}

}  // namespace
}  // namespace sodam
