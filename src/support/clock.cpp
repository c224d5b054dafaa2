#include "support/clock.h"

#include <chrono>

namespace sodam {

Date SystemClock::now() const {
  using namespace std::chrono;
  const auto since = system_clock::now().time_since_epoch();
  return Date::fromUnix(duration<double>(since).count());
}

}  // namespace sodam
