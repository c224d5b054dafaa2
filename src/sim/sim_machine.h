#pragma once

#include <memory>

#include "alerts/pill_center.h"
#include "posture/capture.h"
#include "sim/sim_camera.h"
#include "sim/sim_camera_stack.h"
#include "sim/sim_devices.h"
#include "sim/virtual_sitter.h"
#include "support/serial_queue.h"

namespace sodam {

// The laptop of the simulation: the virtual sitter before its camera, the
// lid sensor, the power source and the camera permission, all in the main
// scheduler's virtual time. Main thread only.
class SimMachine {
 public:
  struct Access final : CameraAccess {
    bool granted = true;
    bool authorized() override { return granted; }
    void request(std::function<void(bool)> done) override { done(granted); }
  };

  SimMachine(Scheduler& scheduler, Clock& clock)
      : camera(scheduler, clock, [this] { return sitter.view(); }), cameras(camera, clock) {}

  std::unique_ptr<LidDevice> lidDevice() { return std::make_unique<SitterLidDevice>(sitter); }

  // The laptop's own display, with a notch: the one screen of the simulation.
  static ScreenInfo builtInScreen() {
    ScreenInfo screen;
    screen.frame = {{0, 0}, {1512, 982}};
    screen.visibleFrame = {{0, 0}, {1512, 945}};
    screen.safeAreaTop = 32;
    screen.builtIn = true;
    screen.main = true;
    return screen;
  }

  VirtualSitter sitter;
  ScriptedPowerSource power;
  Access access;
  // Session and frame work run at once: virtual time has no other thread.
  InlineQueue queue;
  SimCamera camera;
  // The camera as other programs and the system's records see it.
  SimCameraStack cameras;
};

}  // namespace sodam
