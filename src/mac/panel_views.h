#pragma once

// Main thread only: views of the panel.

#import <AppKit/AppKit.h>

#include <optional>
#include <string>
#include <vector>

#include "app/report_chart.h"
#import "mac/guide_views.h"

NS_ASSUME_NONNULL_BEGIN

namespace sodam {

// The building blocks the panel's pages share: system fonts, the system's
// label colours (so dark mode follows), SF Symbols and rounded cards.

// A label that wraps to the width it is given.
NSTextField* panelLabel(NSString* text, NSFont* font, NSColor* color);
NSTextField* panelTitle(NSString* text);
NSTextField* panelCaption(NSString* text);
// An SF Symbol in the tint, described for VoiceOver.
NSImageView* panelSymbol(NSString* name, NSColor* tint, CGFloat pointSize, NSString* description);
// A column of views, leading-aligned, filling its width.
NSStackView* panelColumn(NSArray<NSView*>* views, CGFloat spacing);
NSStackView* panelRow(NSArray<NSView*>* views, CGFloat spacing);
// A push button that runs the action.
NSButton* panelButton(NSString* title, void (^action)(void));
// Puts the view into the host, edge to edge.
void panelFill(NSView* host, NSView* view);
// A rounded card around a column of views.
NSView* panelCard(NSArray<NSView*>* views);
// A page's content that scrolls vertically and keeps the page's width.
NSScrollView* panelScroller(NSView* content);

}  // namespace sodam

// A bar chart drawn in Core Graphics: columns that rise from a baseline, or
// rows that run from the left with their labels before them. It redraws in
// the appearance of the moment, and reads its bars to VoiceOver.
@interface SJBarChartView : NSView
- (instancetype)initWithBars:(std::vector<sodam::ChartBar>)bars
                  horizontal:(BOOL)horizontal
                       title:(NSString*)title;
@end

NS_ASSUME_NONNULL_END
