#pragma once

// While an object of this class lives, SIGINT, SIGTERM and SIGHUP no longer
// end the process at once: the signal is noted, and the run that asks
// `caught()` between its steps ends itself, so that a write under way
// finishes. Interrupted system calls resume. Made and asked on the main
// thread; the previous handlers come back when it goes.

#include <csignal>
#include <string>

namespace sodam {

class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  // The last stopping signal that arrived, or 0.
  int caught() const;
  // "SIGINT", "SIGTERM", "SIGHUP".
  static std::string name(int signal);

 private:
  struct sigaction previous_[3];
};

}  // namespace sodam
