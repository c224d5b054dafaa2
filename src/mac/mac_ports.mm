#include "mac/mac_ports.h"

#include "mac/display_height.h"
#include "mac/mac_calendar.h"

namespace sodam {

AppDelegate::Platform MacPorts::platform(AppShell& shell, Scheduler& scheduler, LogLink* link) {
  languageModel = MacLanguageModel::make(scheduler);
  cloud = std::make_unique<MacCloud>(scheduler);
  AppDelegate::Platform platform{camera,
                                 detector,
                                 access,
                                 &glass,
                                 sessionQueue,
                                 frameQueue,
                                 MacLidDevice::open(),
                                 lidQueue,
                                 power,
                                 defaults,
                                 pills,
                                 screens,
                                 overlays,
                                 shell,
                                 process,
                                 clock,
                                 scheduler,
                                 systemCalendar(),
                                 builtInDisplayHeightCm(),
                                 languageModel.get(),
                                 &cameraDevices,
                                 &appCatalog,
                                 link};
  platform.cloud.emplace(AppDelegate::Platform::Cloud{CloudConfig::built(), cloud->http,
                                                      cloud->keychain, makeMacLoopbackListener});
  return platform;
}

}  // namespace sodam
