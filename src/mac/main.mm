// The macOS entry of sodamjari: the menu-bar application, or one of its two
// special runs chosen by a switch.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

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

// The application, its ports and the lock are made once and never destroyed,
// on purpose: quitting ends the process with no stopping routine, and
// everything that must outlive the run was written when it changed. Kept in
// statics with destructors, they would be torn down inside exit(), in an
// order nobody chose, with the capture's destructor waiting on its queues.
int main(int argc, char** argv) {
  if (hasFlag(argc, argv, logHelperFlag)) runLogHelper();
  @autoreleasepool {
    auto* scheduler = new sodam::MacScheduler();
    auto* confinement = new sodam::MacConfinement();
    // The log helper is started here once it exists: before the lock, which
    // forbids starting programs from then on.
    sodam::Lockdown* lock = sodam::Lockdown::engage(*confinement, *scheduler).release();
    if (hasFlag(argc, argv, sodam::probeFlag)) sodam::runProbe(*lock);

    NSApplication* application = NSApplication.sharedApplication;
    SJAppController* controller = [[SJAppController alloc] initWithLock:*lock scheduler:*scheduler];
    // The application holds its delegate weakly; this reference is never
    // given back, so the controller lives until the process ends.
    (void)CFBridgingRetain(controller);
    application.delegate = controller;
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [application run];
  }
  return EXIT_SUCCESS;
}
