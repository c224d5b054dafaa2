#include "mac/dispatch_queue.h"

#include <dispatch/dispatch.h>

namespace sodam {

// Automatic reference counting owns the dispatch object here.
struct DispatchSerialQueue::Queue {
  dispatch_queue_t queue;
};

DispatchSerialQueue::DispatchSerialQueue(const std::string& label)
    : queue_(std::make_unique<Queue>(
          Queue{dispatch_queue_create(label.c_str(), DISPATCH_QUEUE_SERIAL)})) {}

// Queued blocks keep the dispatch queue alive until they have run.
DispatchSerialQueue::~DispatchSerialQueue() = default;

void DispatchSerialQueue::async(std::function<void()> task) {
  dispatch_async(queue_->queue, ^{
    task();
  });
}

void DispatchSerialQueue::sync(std::function<void()> task) {
  dispatch_sync(queue_->queue, ^{
    task();
  });
}

dispatch_queue_t DispatchSerialQueue::native() const {
  return queue_->queue;
}

}  // namespace sodam
