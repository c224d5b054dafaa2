#pragma once

// Main thread only.

#import <AppKit/AppKit.h>

#include "companion/mate_look.h"
#include "companion/mate_state.h"

NS_ASSUME_NONNULL_BEGIN

// The study-room figure at its desk, drawn in the pose of a state: upright
// at work, bent over a phone, nodding off, sunk, turtle-necked, stretching,
// or an empty chair. It redraws in the appearance of the moment and reads
// the state's title to VoiceOver. A look dresses it: skin, hair and shirt
// from small palettes; the default look keeps the system's label colours.
@interface SJMateFigureView : NSView
@property(nonatomic) sodam::MateState state;
@property(nonatomic) sodam::MateLook look;
- (instancetype)initWithState:(sodam::MateState)state;
@end

NS_ASSUME_NONNULL_END
