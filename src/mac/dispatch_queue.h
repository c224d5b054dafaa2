#pragma once

// Any thread may call it (sync never from the queue itself); tasks run on the
// queue's own thread, one at a time, in order.

#include <dispatch/dispatch.h>

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

  // The dispatch queue itself, for platform calls that deliver onto a queue
  // (the camera output delivers its frames straight onto the frame queue).
  dispatch_queue_t native() const;

 private:
  struct Queue;
  std::unique_ptr<Queue> queue_;
};

}  // namespace sodam
