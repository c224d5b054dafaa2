#pragma once

// Main thread, like the watch it shows.

#import <AppKit/AppKit.h>

#include "camerawatch/camera_watch.h"
#include "support/calendar.h"

NS_ASSUME_NONNULL_BEGIN

// The panel's camera watch page: who used the camera, the status line, the
// note on where the names come from, the switch "켜지면 알림", and the
// buttons to read the log now and to clear the record. Each row shows the
// application's icon and name, what happened and when; resting the pointer
// on a row shows the executable's path. Showing the page marks the record
// seen.
@interface SJCameraPageView : NSView

- (instancetype)initWithWatch:(sodam::CameraWatch&)watch
                     calendar:(const sodam::Calendar&)calendar NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithFrame:(NSRect)frame NS_UNAVAILABLE;
- (nullable instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;

@end

NS_ASSUME_NONNULL_END
