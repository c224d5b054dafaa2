#pragma once

// Made, changed and ordered on the main thread only; it has no callbacks.

#import <AppKit/AppKit.h>

// Joins every space, stays put when spaces change, is skipped by window
// cycling and shows beside full-screen windows: the alert windows and the
// pill's panels all float this way.
inline constexpr NSWindowCollectionBehavior SJOnEverySpace =
    NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
    NSWindowCollectionBehaviorIgnoresCycle | NSWindowCollectionBehaviorFullScreenAuxiliary;
static_assert(SJOnEverySpace == 337);

// A click-through window above other applications' windows that joins every
// space, stays put when spaces change, is skipped by window cycling, shows
// beside full-screen windows and never takes focus. It sits at the
// screen-saver level, clear and without shadow, until its owner lowers it.
// Its owner keeps it alive: closing does not release it, and it is not
// restored at the next launch.
@interface SJOverlayWindow : NSWindow

// Covers the whole screen, menu bar and dock included.
+ (instancetype)overlayForScreen:(NSScreen*)screen;
// Covers the given rectangle, in global screen coordinates.
+ (instancetype)overlayWithFrame:(NSRect)frame;

@end
