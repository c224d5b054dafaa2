#include "mac/mac_ports.h"

#include "mac/display_height.h"
#include "mac/mac_calendar.h"

namespace sodam {

AppDelegate::Platform MacPorts::platform(AppShell& shell, Scheduler& scheduler, LogLink* link) {
  languageModel = MacLanguageModel::make(scheduler);
  return AppDelegate::Platform{camera,
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
}

}  // namespace sodam
