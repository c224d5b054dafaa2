#pragma once

#import <AppKit/AppKit.h>

#include "workspace/desk_setup.h"

NS_ASSUME_NONNULL_BEGIN

// The side view of a desk setup: body, chair or sofa, cushion, footrest,
// desk, laptop or monitor and stand, the sight line to the screen's top and
// the measures, drawn in Core Graphics from the core's scene and scaled to
// fit. A new kind of place blends over from the last one. Main thread only.
@interface SJDeskSideView : NSView
- (void)showSetup:(const sodam::DeskSetup&)setup animated:(BOOL)animated;
@end

NS_ASSUME_NONNULL_END
