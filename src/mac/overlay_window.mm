#import "mac/overlay_window.h"

#include <CoreGraphics/CoreGraphics.h>

@implementation SJOverlayWindow

+ (instancetype)overlayForScreen:(NSScreen*)screen {
  return [self overlayWithFrame:screen.frame];
}

// The initializer without a screen takes global coordinates; the one with a
// screen would offset the rectangle by that screen's origin a second time.
+ (instancetype)overlayWithFrame:(NSRect)frame {
  SJOverlayWindow* window = [[self alloc] initWithContentRect:frame
                                                    styleMask:NSWindowStyleMaskBorderless
                                                      backing:NSBackingStoreBuffered
                                                        defer:NO];
  window.level = CGWindowLevelForKey(kCGScreenSaverWindowLevelKey);
  window.opaque = NO;
  window.backgroundColor = NSColor.clearColor;
  window.hasShadow = NO;
  window.ignoresMouseEvents = YES;
  window.releasedWhenClosed = NO;
  window.restorable = NO;
  window.collectionBehavior = SJOnEverySpace;
  return window;
}

// The frame must cover the menu bar and the dock too, so it is never pushed
// back inside the screen's visible area.
- (NSRect)constrainFrameRect:(NSRect)frameRect toScreen:(NSScreen*)screen {
  return frameRect;
}

@end
