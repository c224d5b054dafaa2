#include "linux/stop_signals.h"

#include <string>

namespace sodam {

namespace {

constexpr int stopping[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t lastCaught = 0;

void noteStop(int signal) {
  lastCaught = signal;
}

}  // namespace

StopSignals::StopSignals() {
  lastCaught = 0;
  struct sigaction action {};
  action.sa_handler = noteStop;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (int signal : stopping)
    sigaddset(&action.sa_mask, signal);
  for (int i = 0; i < 3; ++i)
    sigaction(stopping[i], &action, &previous_[i]);
}

StopSignals::~StopSignals() {
  for (int i = 0; i < 3; ++i)
    sigaction(stopping[i], &previous_[i], nullptr);
}

int StopSignals::caught() const {
  return lastCaught;
}

std::string StopSignals::name(int signal) {
  switch (signal) {
    case SIGINT:
      return "SIGINT";
    case SIGTERM:
      return "SIGTERM";
    case SIGHUP:
      return "SIGHUP";
    default:
      return "signal " + std::to_string(signal);
  }
}

}  // namespace sodam
