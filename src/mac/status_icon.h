#pragma once

// Main thread: called when the status item's face changes. The images draw
// themselves later, whenever AppKit renders them.

#import <AppKit/AppKit.h>

#include "app/status_item.h"
#include "mac/cf_holder.h"

namespace sodam {

// Where the companion's ears sit on a head, with y growing upwards.
struct EarPlacement {
  CGPoint headTop;  // the middle of the head's top edge
  CGFloat spread;   // from there to the middle of each ear
  CGFloat height;   // of a plain ear; long ears and horns reach higher
};

// The ears of a raw ears value (cat, bear, bunny, mouse, hamster, koala, dog,
// fox, horns, antlers, antenna, unicorn, none) as one outline to fill. Each
// ear reaches a little below the head's top so that it joins the head. An
// unknown value draws cat ears; `none` is an empty outline.
CFHolder<CGPathRef> earsPath(int ears, EarPlacement placement);

// The menu-bar icon: an 18-point template image of a round face with the
// companion's ears and the given eyes.
NSImage* statusIconImage(StatusIcon::Eyes eyes, int ears);

}  // namespace sodam
