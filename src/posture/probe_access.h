#pragma once

#include <functional>

#include "posture/capture.h"

namespace sodam {

// How the diagnostic run comes by the camera. Allowed: it may run at once.
// Not answered yet: it asks, and runs or gives up on the answer; a run
// started from a terminal is answered for the terminal, which has usually
// never been asked. Refused: it gives up without asking, as the system would
// not show the question again. `then` runs on the main thread, at once unless
// the user is asked.
void obtainProbeAccess(Capture& capture, CameraAccess& access,
                       std::function<void(bool allowed)> then);

}  // namespace sodam
