#pragma once

#import <AppKit/AppKit.h>

#include "platform/capture_shield.h"
#include "posture/guide_model.h"
#include "posture/live_feed.h"

NS_ASSUME_NONNULL_BEGIN

// The learning guide's window: draws the guide model's steps and the live
// feed's picture, and passes the user's clicks back to the model. It owns the
// feed's change callback and a place in the capture shield while it is open.
// Main thread.
@interface SJGuideController : NSObject <NSWindowDelegate>

- (instancetype)initWithModel:(sodam::GuideModel&)model
                         feed:(sodam::LiveFeed&)feed
                       shield:(sodam::CaptureShield&)shield NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;

// Activates the application, centres the window and brings it to the front
// even when the system declines the activation.
- (void)present;
// Orders the window out and lets go of the model, the feed's callback and the
// shield; after this the model and feed are never touched again.
- (void)close;

@end

NS_ASSUME_NONNULL_END
