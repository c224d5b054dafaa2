#pragma once

// Main thread only: it owns the panel's window.

#import <AppKit/AppKit.h>

#include "app/app_delegate.h"
#include "app/panel_page.h"
#include "platform/capture_shield.h"

NS_ASSUME_NONNULL_BEGIN

// The panel: the application's one ordinary window, made on first use and
// then kept. It shows the panel model's page beside a sidebar of the pages'
// sections, saves its frame under "SodamJariPanel", and puts the
// application in the dock while it is open. It follows the panel model, the
// posture log, the work-life tracker and the monitor, and tells the model
// when the user picks a page or closes the window.
@interface SJPanelController : NSObject <NSWindowDelegate>

- (instancetype)initWithCore:(sodam::AppDelegate&)core
                      shield:(sodam::CaptureShield&)shield NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;

// Brings the window to the front on the model's page.
- (void)present;

@end

NS_ASSUME_NONNULL_END
