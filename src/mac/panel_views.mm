#import "mac/panel_views.h"

#include <algorithm>

#import "mac/pill_views.h"

// A view whose origin is at the top, as a page reads.
@interface SJFlippedView : NSView
@end

@implementation SJFlippedView
- (BOOL)isFlipped {
  return YES;
}
@end

// A button that runs a block of its own.
@interface SJActionButton : NSButton
@property(nonatomic, copy) void (^run)(void);
@end

@implementation SJActionButton
- (void)pressed:(id)sender {
  if (self.run) self.run();
}
@end

namespace sodam {

namespace {

constexpr CGFloat cardRadius = 12;
constexpr NSEdgeInsets cardInsets{16, 18, 16, 18};

NSStackView* stack(NSArray<NSView*>* views, NSUserInterfaceLayoutOrientation orientation,
                   NSLayoutAttribute alignment, CGFloat spacing) {
  NSStackView* stack = [NSStackView stackViewWithViews:views];
  stack.orientation = orientation;
  stack.alignment = alignment;
  stack.spacing = spacing;
  return stack;
}

}  // namespace

NSTextField* panelLabel(NSString* text, NSFont* font, NSColor* color) {
  NSTextField* label = [NSTextField wrappingLabelWithString:text];
  label.font = font;
  label.textColor = color;
  label.selectable = NO;
  return label;
}

NSTextField* panelTitle(NSString* text) {
  NSTextField* title =
      panelLabel(text, [NSFont systemFontOfSize:22 weight:NSFontWeightBold], NSColor.labelColor);
  title.accessibilityRole = NSAccessibilityStaticTextRole;
  return title;
}

NSTextField* panelCaption(NSString* text) {
  return panelLabel(text, [NSFont systemFontOfSize:NSFont.systemFontSize],
                    NSColor.secondaryLabelColor);
}

NSImageView* panelSymbol(NSString* name, NSColor* tint, CGFloat pointSize, NSString* description) {
  NSImage* image = [NSImage imageWithSystemSymbolName:name accessibilityDescription:description];
  NSImageView* view = [NSImageView imageViewWithImage:image ? image : [[NSImage alloc] init]];
  view.symbolConfiguration =
      [NSImageSymbolConfiguration configurationWithPointSize:pointSize weight:NSFontWeightMedium];
  view.contentTintColor = tint;
  return view;
}

NSStackView* panelColumn(NSArray<NSView*>* views, CGFloat spacing) {
  return stack(views, NSUserInterfaceLayoutOrientationVertical, NSLayoutAttributeLeading, spacing);
}

NSStackView* panelRow(NSArray<NSView*>* views, CGFloat spacing) {
  return stack(views, NSUserInterfaceLayoutOrientationHorizontal, NSLayoutAttributeCenterY,
               spacing);
}

NSButton* panelButton(NSString* title, void (^action)(void)) {
  SJActionButton* button = [SJActionButton buttonWithTitle:title target:nil action:nil];
  button.run = action;
  button.target = button;
  button.action = @selector(pressed:);
  return button;
}

void panelFill(NSView* host, NSView* view) {
  view.translatesAutoresizingMaskIntoConstraints = NO;
  [host addSubview:view];
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:host.leadingAnchor],
    [view.trailingAnchor constraintEqualToAnchor:host.trailingAnchor],
    [view.topAnchor constraintEqualToAnchor:host.topAnchor],
    [view.bottomAnchor constraintEqualToAnchor:host.bottomAnchor],
  ]];
}

NSView* panelCard(NSArray<NSView*>* views) {
  NSBox* card = [[NSBox alloc] init];
  card.boxType = NSBoxCustom;
  card.borderWidth = 0;
  card.cornerRadius = cardRadius;
  card.fillColor = NSColor.controlBackgroundColor;
  card.titlePosition = NSNoTitle;
  card.contentViewMargins = NSZeroSize;
  NSStackView* column = panelColumn(views, 8);
  column.edgeInsets = cardInsets;
  panelFill(card.contentView, column);
  for (NSView* view in views)
    [view.widthAnchor constraintLessThanOrEqualToAnchor:column.widthAnchor
                                               constant:-(cardInsets.left + cardInsets.right)]
        .active = YES;
  return card;
}

NSScrollView* panelScroller(NSView* content) {
  NSScrollView* scroller = [[NSScrollView alloc] init];
  scroller.hasVerticalScroller = YES;
  scroller.drawsBackground = NO;
  // A flipped document keeps a short page at the top.
  SJFlippedView* document = [[SJFlippedView alloc] init];
  document.translatesAutoresizingMaskIntoConstraints = NO;
  content.translatesAutoresizingMaskIntoConstraints = NO;
  [document addSubview:content];
  scroller.documentView = document;
  NSClipView* clip = scroller.contentView;
  [NSLayoutConstraint activateConstraints:@[
    [document.leadingAnchor constraintEqualToAnchor:clip.leadingAnchor],
    [document.trailingAnchor constraintEqualToAnchor:clip.trailingAnchor],
    [document.topAnchor constraintEqualToAnchor:clip.topAnchor],
    [content.leadingAnchor constraintEqualToAnchor:document.leadingAnchor],
    [content.trailingAnchor constraintEqualToAnchor:document.trailingAnchor],
    [content.topAnchor constraintEqualToAnchor:document.topAnchor],
    [content.bottomAnchor constraintEqualToAnchor:document.bottomAnchor],
  ]];
  return scroller;
}

}  // namespace sodam

namespace {

constexpr CGFloat chartHeight = 180;
constexpr CGFloat valueRoom = 18;
constexpr CGFloat labelRoom = 22;
constexpr CGFloat barGap = 0.3;  // of each column
constexpr CGFloat barRadius = 4;
constexpr CGFloat rowHeight = 26;
constexpr CGFloat rowLabelWidth = 120;
constexpr CGFloat rowValueWidth = 52;

NSDictionary<NSAttributedStringKey, id>* textStyle(NSColor* color, BOOL bold) {
  NSFont* font = [NSFont systemFontOfSize:NSFont.smallSystemFontSize
                                   weight:bold ? NSFontWeightSemibold : NSFontWeightRegular];
  return @{NSFontAttributeName : font, NSForegroundColorAttributeName : color};
}

// Draws the text centred on x, or from x, or ending at x.
void drawText(NSString* text, CGFloat x, CGFloat y, NSTextAlignment alignment, NSColor* color,
              BOOL bold) {
  NSDictionary* style = textStyle(color, bold);
  const NSSize size = [text sizeWithAttributes:style];
  CGFloat left = x;
  if (alignment == NSTextAlignmentCenter) left = x - size.width / 2;
  if (alignment == NSTextAlignmentRight) left = x - size.width;
  [text drawAtPoint:NSMakePoint(left, y - size.height / 2) withAttributes:style];
}

void fillBar(CGContextRef context, CGRect rect, NSColor* color) {
  const CGFloat radius = std::min(barRadius, std::min(rect.size.width, rect.size.height) / 2);
  CGPathRef path = CGPathCreateWithRoundedRect(rect, radius, radius, nullptr);
  CGContextSetFillColorWithColor(context, color.CGColor);
  CGContextAddPath(context, path);
  CGContextFillPath(context);
  CGPathRelease(path);
}

}  // namespace

@implementation SJBarChartView {
  std::vector<sodam::ChartBar> _bars;
  BOOL _horizontal;
}

- (instancetype)initWithBars:(std::vector<sodam::ChartBar>)bars
                  horizontal:(BOOL)horizontal
                       title:(NSString*)title {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _bars = std::move(bars);
  _horizontal = horizontal;
  self.translatesAutoresizingMaskIntoConstraints = NO;
  const CGFloat height = horizontal ? std::max<CGFloat>(_bars.size(), 1) * rowHeight : chartHeight;
  [self.heightAnchor constraintEqualToConstant:height].active = YES;
  [self setAccessibilityElement:YES];
  self.accessibilityRole = NSAccessibilityImageRole;
  NSMutableArray<NSString*>* spoken = [NSMutableArray arrayWithObject:title];
  for (const auto& bar : _bars)
    [spoken addObject:SJString(bar.spoken)];
  self.accessibilityLabel = [spoken componentsJoinedByString:@", "];
  return self;
}

- (BOOL)isFlipped {
  return YES;
}

- (void)viewDidChangeEffectiveAppearance {
  [super viewDidChangeEffectiveAppearance];
  self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirtyRect {
  CGContextRef context = NSGraphicsContext.currentContext.CGContext;
  if (_horizontal) {
    [self drawRowsIn:context];
  } else {
    [self drawColumnsIn:context];
  }
}

- (void)drawColumnsIn:(CGContextRef)context {
  const NSRect bounds = self.bounds;
  const CGFloat plot = bounds.size.height - valueRoom - labelRoom;
  const CGFloat baseline = valueRoom + plot;
  const CGFloat slot = bounds.size.width / std::max<CGFloat>(_bars.size(), 1);
  const CGFloat width = slot * (1 - barGap);
  CGContextSetStrokeColorWithColor(context, NSColor.separatorColor.CGColor);
  const CGPoint axis[] = {{0, baseline}, {bounds.size.width, baseline}};
  CGContextStrokeLineSegments(context, axis, 2);
  for (std::size_t i = 0; i < _bars.size(); ++i) {
    const sodam::ChartBar& bar = _bars[i];
    const CGFloat x = slot * i + (slot - width) / 2;
    const CGFloat height = bar.fill ? std::max<CGFloat>(*bar.fill * plot, 2) : 2;
    NSColor* color = bar.fill ? sodam::themeNSColor(bar.tint) : NSColor.quaternaryLabelColor;
    fillBar(context, CGRectMake(x, baseline - height, width, height), color);
    if (bar.fill) {
      drawText(SJString(bar.value), x + width / 2, baseline - height - valueRoom / 2,
               NSTextAlignmentCenter, NSColor.labelColor, YES);
    }
    drawText(SJString(bar.label), x + width / 2, baseline + labelRoom / 2 + 2,
             NSTextAlignmentCenter, bar.stressed ? NSColor.labelColor : NSColor.secondaryLabelColor,
             bar.stressed);
  }
}

- (void)drawRowsIn:(CGContextRef)context {
  const CGFloat track = self.bounds.size.width - rowLabelWidth - rowValueWidth;
  for (std::size_t i = 0; i < _bars.size(); ++i) {
    const sodam::ChartBar& bar = _bars[i];
    const CGFloat middle = rowHeight * i + rowHeight / 2;
    drawText(SJString(bar.label), rowLabelWidth - 10, middle, NSTextAlignmentRight,
             NSColor.secondaryLabelColor, NO);
    const CGFloat width = std::max<CGFloat>(bar.fill.value_or(0) * track, 4);
    fillBar(context, CGRectMake(rowLabelWidth, middle - 8, width, 16),
            sodam::themeNSColor(bar.tint));
    drawText(SJString(bar.value), rowLabelWidth + width + 8, middle, NSTextAlignmentLeft,
             NSColor.labelColor, YES);
  }
}

@end
