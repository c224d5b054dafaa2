#pragma once

// Main thread only: layers made and moved by Core Animation.

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

#include <optional>

#include "alerts/pill.h"
#include "support/date.h"
#include "support/geometry.h"

// An art that changes while its pill is up: the countdown ring, the
// breathing dot, the companion's eyes following the user.
@protocol SJMovingArt <NSObject>
- (void)advanceTo:(sodam::Date)now gaze:(std::optional<sodam::Point>)gaze;
@end

namespace sodam {

// The art of a pill as a layer of `pillArtSize`, with the part that moves
// (itself, for the moving arts), if any. The companion wears the look, and
// its eyes follow a gaze when `follow`.
struct PillArtLayer {
  CALayer* layer;
  id<SJMovingArt> moving;
};
CGSize pillArtSize(const Pill::Art& art);
PillArtLayer makePillArtLayer(const Pill& pill, const PillLook& look, bool follow, CGFloat scale);

// The companion's ears in the body's colour over a capsule of the width:
// their roots stand on the layer's bottom edge, which goes on the capsule's
// top edge.
CALayer* makeEarsLayer(const PillLook& look, CGFloat width, CGFloat scale);

}  // namespace sodam
