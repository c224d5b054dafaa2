#pragma once

// Made and used on the main thread; the queues inside carry the camera's and
// the lid sensor's work off it, as the core asks.

#include <memory>

#include "app/app_delegate.h"
#include "mac/core_image_glass.h"
#include "mac/dispatch_queue.h"
#include "mac/mac_camera.h"
#include "mac/mac_camera_devices.h"
#include "mac/mac_cloud.h"
#include "mac/mac_defaults.h"
#include "mac/mac_language_model.h"
#include "mac/mac_lid_device.h"
#include "mac/mac_overlays.h"
#include "mac/mac_power_source.h"
#include "mac/mac_process_inspector.h"
#include "mac/mac_screens.h"
#include "mac/pill_presenter.h"
#include "mac/vision_detector.h"
#include "support/clock.h"

namespace sodam {

// Every platform port the application core is made over, in one place so
// they outlive the core that holds references to them.
struct MacPorts {
  SystemClock clock;
  DispatchSerialQueue sessionQueue{"capture.session"};
  DispatchSerialQueue frameQueue{"capture.frames"};
  DispatchSerialQueue lidQueue{lidQueueLabel};
  MacCamera camera{sessionQueue, frameQueue};
  VisionDetector detector;
  MacCameraAccess access;
  CoreImageGlass glass;
  MacPowerSource power;
  MacDefaults defaults;
  MacPillPresenter pills;
  MacScreens screens;
  MacOverlays overlays;
  MacProcessInspector process;
  // Made with the scheduler its replies come back through; none where the
  // system offers no model.
  std::unique_ptr<MacLanguageModel> languageModel;
  MacCameraDevices cameraDevices;
  MacAppCatalog appCatalog;
  // Made with the main thread's scheduler, which its answers hop through.
  std::unique_ptr<MacCloud> cloud;

  // The core's view of these ports; the lid device is handed over, so this
  // is called once. `link` may be none.
  AppDelegate::Platform platform(AppShell& shell, Scheduler& scheduler, LogLink* link);
};

}  // namespace sodam
