// The macOS entry of sodamjari: the menu-bar application, or one of its two
// special runs chosen by a switch.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "camerawatch/log_link.h"
#include "mac/app_controller.h"
#include "mac/mac_confinement.h"
#include "mac/mac_log_tool.h"
#include "mac/mac_scheduler.h"
#include "mac/probe.h"
#include "platform/lockdown.h"
#include "posix/pipe_helper_launcher.h"

namespace {

constexpr const char* logHelperFlag = "--camera-log-helper";

bool hasFlag(int argc, char** argv, const char* flag) {
  for (int i = 1; i < argc; ++i)
    if (std::strcmp(argv[i], flag) == 0) return true;
  return false;
}

// The main bundle's own executable, which the camera-log helper runs again.
std::string mainExecutable() {
  const char* path = NSBundle.mainBundle.executablePath.UTF8String;
  return path ? path : "";
}

}  // namespace

// The application, its ports and the lock are made once and never destroyed,
// on purpose: quitting ends the process with no stopping routine, and
// everything that must outlive the run was written when it changed. Kept in
// statics with destructors, they would be torn down inside exit(), in an
// order nobody chose, with the capture's destructor waiting on its queues.
int main(int argc, char** argv) {
  // The process becomes the camera-log helper and nothing else.
  if (hasFlag(argc, argv, logHelperFlag)) sodam::runMacLogHelper();
  @autoreleasepool {
    auto* scheduler = new sodam::MacScheduler();
    auto* confinement = new sodam::MacConfinement();
    // The log helper first: the lock forbids starting programs from then on.
    auto* launcher = new sodam::PipeHelperLauncher(mainExecutable());
    sodam::LogLink* link = sodam::LogLink::spawn(*launcher, *scheduler).release();
    sodam::Lockdown* lock = sodam::Lockdown::engage(*confinement, *scheduler).release();
    if (hasFlag(argc, argv, sodam::probeFlag)) sodam::runProbe(*lock);

    NSApplication* application = NSApplication.sharedApplication;
    SJAppController* controller = [[SJAppController alloc] initWithLock:*lock
                                                                   link:link
                                                              scheduler:*scheduler];
    // The application holds its delegate weakly; this reference is never
    // given back, so the controller lives until the process ends.
    (void)CFBridgingRetain(controller);
    application.delegate = controller;
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [application run];
  }
  return EXIT_SUCCESS;
}
