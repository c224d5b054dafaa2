#pragma once

// Runs on the main thread in place of the application; it never returns.

#include "platform/lockdown.h"

namespace sodam {

inline constexpr const char* probeFlag = "--probe";

// The diagnostic run: the capture without any window for PROBE_SECONDS
// seconds (30 unless the variable holds a positive number), a line per frame
// and per side view in the system log under the category "probe", then a
// closing count, and the process exits. For development only.
[[noreturn]] void runProbe(Lockdown& lock);

}  // namespace sodam
