// The macOS entry of sodamjari: the menu-bar application, or one of its two
// special runs chosen by a switch.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "mac/app_controller.h"
#include "mac/mac_confinement.h"
#include "mac/mac_scheduler.h"
#include "mac/probe.h"
#include "platform/lockdown.h"

namespace {

constexpr const char* logHelperFlag = "--camera-log-helper";

bool hasFlag(int argc, char** argv, const char* flag) {
  for (int i = 1; i < argc; ++i)
    if (std::strcmp(argv[i], flag) == 0) return true;
  return false;
}

// The process becomes the camera-log helper and nothing else; the helper is
// not part of this build yet, so the switch ends the process plainly.
[[noreturn]] void runLogHelper() {
  std::fputs("sodamjari: the camera log helper is not built yet\n", stderr);
  std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
  if (hasFlag(argc, argv, logHelperFlag)) runLogHelper();
  @autoreleasepool {
    // Made once and kept for the life of the process: there is no shutdown.
    static sodam::MacScheduler scheduler;
    static sodam::MacConfinement confinement;
    // The log helper is started here once it exists: before the lock, which
    // forbids starting programs from then on.
    static std::unique_ptr<sodam::Lockdown> lock = sodam::Lockdown::engage(confinement, scheduler);
    if (hasFlag(argc, argv, sodam::probeFlag)) sodam::runProbe(*lock);

    NSApplication* application = NSApplication.sharedApplication;
    // The application holds its delegate weakly.
    static SJAppController* controller = [[SJAppController alloc] initWithLock:*lock
                                                                     scheduler:scheduler];
    application.delegate = controller;
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [application run];
  }
  return EXIT_SUCCESS;
}
