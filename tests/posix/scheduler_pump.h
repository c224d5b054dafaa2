#pragma once

#include <chrono>
#include <thread>

#include "support/manual_scheduler.h"

namespace sodam {

// Runs what reader threads posted to the scheduler, in real time, until the
// condition holds or ten seconds have passed; whether it held.
template <class Condition>
bool pumpUntil(ManualScheduler& scheduler, Condition done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (std::chrono::steady_clock::now() < deadline) {
    scheduler.runPosted();
    if (done()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return false;
}

}  // namespace sodam
