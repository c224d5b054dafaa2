#include "posture/probe_access.h"

#include <utility>

namespace sodam {

void obtainProbeAccess(Capture& capture, CameraAccess& access,
                       std::function<void(bool allowed)> then) {
  if (capture.authorized()) {
    then(true);
  } else if (access.undecided()) {
    capture.authorize(std::move(then));
  } else {
    then(false);
  }
}

}  // namespace sodam
