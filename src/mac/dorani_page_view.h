#pragma once

// Main thread only: the companion's page in the panel, over the core's
// companion and its page model.

#import <AppKit/AppKit.h>

#include <functional>
#include <optional>

#include "app/app_delegate.h"
#include "companion/pill_look.h"
#include "support/geometry.h"

NS_ASSUME_NONNULL_BEGIN

// 도란이 drawn large in its look with the eyes of a mood: its body with the
// pattern, ears and trim, face and eyes that blink and follow a gaze. A
// click pokes it and it bounces.
@interface SJCompanionView : NSView
@property(nonatomic, copy, nullable) void (^onPoke)(void);
// Where the eyes look now; unset, or nothing, rests them.
@property(nonatomic) std::function<std::optional<sodam::Point>()> gaze;
- (void)showLook:(const sodam::PillLook&)look mood:(sodam::PillEyes::Mood)mood;
- (void)bounce;
@end

// The companion's page: the character, its level, title and the way to the
// next step, today's points, the line it says now (a tap pokes it), and the
// look editor with the locked options shown with their level. It tells the
// page model when it comes to the front and when it goes.
@interface SJDoraniPageView : NSView
- (instancetype)initWithCore:(sodam::AppDelegate&)core;
@end

NS_ASSUME_NONNULL_END
