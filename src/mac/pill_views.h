#pragma once

// Main thread only: the pill's views, and the text and picture layers they
// and the pill's arts draw with, animated by Core Animation.

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

#include <optional>
#include <vector>

#include "alerts/pill_center.h"

// The drawing panel's content. It draws the capsule (black, or the
// companion's body in its look), the pill's content, the companion's ears
// and trim and the speech bubble. Positions come from the model, measured
// down from the top of the view.
@interface SJPillStageView : NSView
- (void)showModel:(const sodam::PillModel&)model animation:(sodam::PillAnimation)animation;
- (void)advanceTo:(sodam::Date)now gaze:(std::optional<sodam::Point>)gaze;
@end

// Takes the clicks on a pill. The first click counts even while another
// application is active, and the pointer is a hand over the view.
@interface SJClickView : NSView
@property(nonatomic, copy) void (^action)(void);
@end

namespace sodam {

// Fitting sizes of a pill's content (art and text in a row, or the
// companion alone) and of its speech bubble.
Size pillContentSize(const Pill& pill);
Size sayBubbleSize(const Pill& pill);

// One paragraph of a text block: a single truncated line, or wrapped lines.
struct TextLine {
  NSAttributedString* text;
  bool wraps = false;
};

NSAttributedString* styledText(NSString* text, NSFont* font, NSColor* color);
// The size the lines take, one under the other, within the width.
CGSize textBlockSize(const std::vector<TextLine>& lines, CGFloat maxWidth);
// Draws the lines into the layer and sizes the layer to fit them.
void drawTextBlock(CALayer* layer, const std::vector<TextLine>& lines, CGFloat maxWidth,
                   CGFloat scale);
// A layer showing a picture drawn once, at the screen's scale.
CALayer* imageLayer(CGSize size, CGFloat scale, BOOL flipped, void (^draw)(NSRect bounds));
NSColor* themeNSColor(Theme tint, CGFloat alpha = 1);

}  // namespace sodam
