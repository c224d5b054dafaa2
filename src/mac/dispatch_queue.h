#pragma once

// Any thread may call it (sync never from the queue itself); tasks run on the
// queue's own thread, one at a time, in order.

#include <memory>
#include <string>

#include "support/serial_queue.h"

namespace sodam {

// A serial dispatch queue with a label, as the core's serial queue. The
// header stays plain C++ so core-facing code can hold one without
// Objective-C; the queue object lives in the implementation.
class DispatchSerialQueue final : public SerialQueue {
 public:
  explicit DispatchSerialQueue(const std::string& label);
  ~DispatchSerialQueue() override;
  DispatchSerialQueue(const DispatchSerialQueue&) = delete;
  DispatchSerialQueue& operator=(const DispatchSerialQueue&) = delete;

  void async(std::function<void()> task) override;
  void sync(std::function<void()> task) override;

 private:
  struct Queue;
  std::unique_ptr<Queue> queue_;
};

}  // namespace sodam
