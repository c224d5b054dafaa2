#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

// The live feed as the user sees it while finding their place: the blurred
// camera picture with a dotted line where the shoulders belong, a bar of how
// ready they are to be measured, and the hint on how to sit. Main thread.
@interface SJGlassPreview : NSView

// The feed's blurred picture, or none while the camera has not delivered one;
// the layer keeps its own reference.
- (void)showGlass:(nullable CGImageRef)image;
// Readiness from 0 to 1; changes are eased out as the feed asks.
- (void)showReadiness:(double)readiness animated:(BOOL)animated;
// The feed's hint, if any; `lineUpShoulders` draws attention to the dotted
// line when the hint asks the user to line up with it.
- (void)showHint:(nullable NSString*)hint lineUpShoulders:(BOOL)lineUpShoulders;

@end

NS_ASSUME_NONNULL_END
