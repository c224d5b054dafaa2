#include "support/serial_queue.h"

#include <future>

namespace sodam {

ThreadQueue::ThreadQueue(std::string label) : label_(std::move(label)) {
  worker_ = std::thread([this] { run(); });
}

ThreadQueue::~ThreadQueue() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  worker_.join();
}

void ThreadQueue::async(std::function<void()> task) {
  {
    std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  wake_.notify_one();
}

void ThreadQueue::sync(std::function<void()> task) {
  std::promise<void> done;
  async([&] {
    task();
    done.set_value();
  });
  done.get_future().wait();
}

void ThreadQueue::run() {
  for (;;) {
    std::function<void()> task;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
      if (tasks_.empty()) return;  // stopping, and everything queued has run
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
  }
}

}  // namespace sodam
