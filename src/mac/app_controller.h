#pragma once

// Main thread only: it is the application's delegate and the menus' delegate.

#import <AppKit/AppKit.h>

#include "camerawatch/log_link.h"
#include "platform/lockdown.h"
#include "support/scheduler.h"

// The application's delegate: owns the platform's ports and the application
// core made over them, draws the status item and the menus from the core's
// data, and forwards the system's notifications and the menu commands to the
// core. It decides nothing itself.
@interface SJAppController : NSObject <NSApplicationDelegate, NSMenuDelegate>

// `link` is the camera-log helper's, started before the lock; none when it
// could not be started.
- (instancetype)initWithLock:(sodam::Lockdown&)lock
                        link:(sodam::LogLink*)link
                   scheduler:(sodam::Scheduler&)scheduler NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;

// The action of every menu item that asks something of the core.
- (void)performMenuCommand:(NSMenuItem*)sender;

@end
