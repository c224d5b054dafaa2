#pragma once

// Main thread only.

#import <AppKit/AppKit.h>

#include "app/app_delegate.h"

NS_ASSUME_NONNULL_BEGIN

// The focus coach's set-up, a sheet on the panel's window: what the camera
// sees of face, shoulders and hands, the hint for what is missing, and the
// start, which calibrates the watcher; cancelling gives the camera back. It
// follows the watcher while it is up.
@interface SJWatchSetupSheet : NSWindow
- (instancetype)initWithCore:(sodam::AppDelegate&)core;
@end

NS_ASSUME_NONNULL_END
