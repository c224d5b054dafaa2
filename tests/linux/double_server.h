#pragma once
// The service's double served over TCP on 127.0.0.1, for the tests that go
// through libcurl and real sockets. One connection at a time, each closed
// after its answer; a dropped answer closes the connection unanswered.
#include <array>
#include <atomic>
#include <mutex>
#include <thread>

#include "sim/cloud_double.h"

namespace sodam::testing {

// A socket listening on 127.0.0.1 at a port the system picks, which it tells.
int listenOnLoopback(int& port);

class DoubleServer {
 public:
  DoubleServer();
  ~DoubleServer();
  DoubleServer(const DoubleServer&) = delete;
  DoubleServer& operator=(const DoubleServer&) = delete;

  int port() const { return port_; }
  // The double, under the lock the serving thread takes for each request.
  template <class F>
  auto with(F change) {
    std::lock_guard lock(mutex_);
    return change(service_);
  }

 private:
  void serve();
  void answer(int fd);

  CloudDouble service_;
  std::mutex mutex_;
  int listenFd_ = -1;
  int port_ = 0;
  std::array<int, 2> wake_{-1, -1};
  std::thread thread_;
};

}  // namespace sodam::testing
