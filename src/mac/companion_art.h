#pragma once

// Main thread only: layers made for Core Animation. The companion's look
// drawn piece by piece, for the pill and for the companion's page alike.

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

#include "companion/pill_eyes.h"
#include "companion/pill_look.h"

namespace sodam {

NSColor* lookNSColor(LookColor color, CGFloat alpha = 1);

// One closed outline of a heart of the size, from the tip round both lobes,
// so it fills whole.
void addHeartPath(CGMutablePathRef path, CGPoint center, CGFloat size);

// The body's pattern over a capsule of the size: light marks on the body,
// clipped to the capsule's round ends. Nil for the plain body.
CALayer* makePatternLayer(PillPattern pattern, CGSize size, CGFloat scale);

// What the look wears on its head, in a layer the size of its `trimBox`;
// the caller stands it with its bottom edge at the box's bottom. Nil for none.
CALayer* makeTrimLayer(PillTrim trim, CGFloat scale);

// What the look wears on its face, over the eyes of a character of the size
// whose eyes stand `eyeApart` from its middle. Nil for none.
CALayer* makeFaceLayer(PillFace face, CGSize size, CGFloat eyeApart, CGFloat scale);

// Eyes of the given shapes (filled and stroked) in the colour of the eyes:
// the colour's stops from top to bottom, seen through the shapes.
CALayer* makeColouredEyes(CGPathRef fills, CGPathRef strokes, CGFloat lineWidth, PillEyeColor color,
                          CGSize size, CGFloat scale);

}  // namespace sodam
