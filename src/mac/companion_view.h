#pragma once

// Main thread only: the companion drawn large, for its page in the panel.

#import <AppKit/AppKit.h>

#include <functional>
#include <optional>

#include "companion/pill_eyes.h"
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

NS_ASSUME_NONNULL_END
