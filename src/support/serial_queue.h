#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace sodam {

// A serial queue: tasks run one after another, in order, off the caller's
// thread. The platform shells have their own (dispatch queues); the core
// brings a thread-backed one and an inline one for tests.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  virtual void async(std::function<void()> task) = 0;
  // Runs the task and waits for it; never call it from the queue itself.
  virtual void sync(std::function<void()> task) = 0;
};

// Runs each task at once on the calling thread.
class InlineQueue final : public SerialQueue {
 public:
  void async(std::function<void()> task) override { task(); }
  void sync(std::function<void()> task) override { task(); }
};

// One worker thread. Destruction finishes the queued tasks, then joins.
// Callable from any thread; tasks run on the worker.
class ThreadQueue final : public SerialQueue {
 public:
  explicit ThreadQueue(std::string label);
  ~ThreadQueue() override;
  ThreadQueue(const ThreadQueue&) = delete;
  ThreadQueue& operator=(const ThreadQueue&) = delete;

  void async(std::function<void()> task) override;
  void sync(std::function<void()> task) override;
  const std::string& label() const { return label_; }

 private:
  void run();

  std::string label_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> tasks_;
  bool stopping_ = false;
  std::thread worker_;
};

}  // namespace sodam
