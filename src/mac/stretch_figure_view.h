#pragma once

#import <AppKit/AppKit.h>

#include <vector>

#include "coach/pose.h"
#include "coach/stretch.h"

NS_ASSUME_NONNULL_BEGIN

// A stretch figure drawn from a pose, facing the camera or sideways, with the
// parts the stretch works on glowing behind it and the arms held behind the
// trunk drawn behind it. Main thread only.
@interface SJStretchFigureView : NSView
@property(nonatomic, copy) NSColor* tint;
- (void)showPose:(const sodam::Pose&)pose
           stage:(sodam::Stage)stage
           focus:(const std::vector<sodam::Focus>&)focus;
@end

NS_ASSUME_NONNULL_END
