#import "mac/guide_preview.h"

#import <QuartzCore/QuartzCore.h>

#include <algorithm>

#include "alerts/theme.h"
#include "posture/live_feed.h"

namespace {

// The picture keeps the camera's 16:9 shape.
constexpr CGFloat pictureWidth = 384;
constexpr CGFloat pictureHeight = 216;
constexpr CGFloat pictureCornerRadius = 12;
// Where the shoulders of someone sitting at a comfortable distance from a
// laptop's camera fall in its picture, measured up from the bottom edge.
constexpr CGFloat shoulderLineShare = 0.3;
constexpr CGFloat shoulderLineInsetShare = 0.08;
constexpr CGFloat barHeight = 6;

NSColor* paletteColor(sodam::Theme tint) {
  const auto rgb = sodam::themeColor(tint);
  return [NSColor colorWithSRGBRed:rgb.red / 255.0
                             green:rgb.green / 255.0
                              blue:rgb.blue / 255.0
                             alpha:1];
}

// Layers that follow a view's layout must not animate on their own.
void withoutAnimation(void (^change)(void)) {
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  change();
  [CATransaction commit];
}

}  // namespace

// The blurred picture and the dotted shoulder line over it.
@interface SJGlassPicture : NSView
@property(nonatomic, readonly) CALayer* imageLayer;
@property(nonatomic, readonly) CAShapeLayer* shoulderLine;
@end

@implementation SJGlassPicture

- (instancetype)initWithFrame:(NSRect)frame {
  if (!(self = [super initWithFrame:frame])) return nil;
  self.wantsLayer = YES;
  self.layer.backgroundColor = NSColor.blackColor.CGColor;
  self.layer.cornerRadius = pictureCornerRadius;
  self.clipsToBounds = YES;

  _imageLayer = [CALayer layer];
  _imageLayer.contentsGravity = kCAGravityResizeAspectFill;
  [self.layer addSublayer:_imageLayer];

  _shoulderLine = [CAShapeLayer layer];
  _shoulderLine.fillColor = nil;
  _shoulderLine.lineDashPattern = @[ @6, @5 ];
  _shoulderLine.lineCap = kCALineCapRound;
  [self.layer addSublayer:_shoulderLine];
  return self;
}

- (NSSize)intrinsicContentSize {
  return NSMakeSize(pictureWidth, pictureHeight);
}

- (void)layout {
  [super layout];
  const NSRect bounds = self.bounds;
  const CGFloat y = NSMinY(bounds) + NSHeight(bounds) * shoulderLineShare;
  const CGFloat inset = NSWidth(bounds) * shoulderLineInsetShare;
  CGMutablePathRef path = CGPathCreateMutable();
  CGPathMoveToPoint(path, nullptr, NSMinX(bounds) + inset, y);
  CGPathAddLineToPoint(path, nullptr, NSMaxX(bounds) - inset, y);
  withoutAnimation(^{
    self.imageLayer.frame = bounds;
    self.shoulderLine.frame = bounds;
    self.shoulderLine.path = path;
  });
  CGPathRelease(path);
}

- (void)viewDidChangeBackingProperties {
  [super viewDidChangeBackingProperties];
  const CGFloat scale = self.window ? self.window.backingScaleFactor : 2;
  self.imageLayer.contentsScale = scale;
  self.shoulderLine.contentsScale = scale;
}

@end

// A rounded track that fills from the left as the user gets into place.
@interface SJReadinessBar : NSView
- (void)showReadiness:(double)readiness animated:(BOOL)animated;
@end

@implementation SJReadinessBar {
  CALayer* _fill;
  double _readiness;
}

- (instancetype)initWithFrame:(NSRect)frame {
  if (!(self = [super initWithFrame:frame])) return nil;
  self.wantsLayer = YES;
  self.layer.backgroundColor =
      [paletteColor(sodam::Theme::gray) colorWithAlphaComponent:0.3].CGColor;
  self.layer.cornerRadius = barHeight / 2;
  self.clipsToBounds = YES;
  _fill = [CALayer layer];
  _fill.backgroundColor = paletteColor(sodam::Theme::green).CGColor;
  _fill.cornerRadius = barHeight / 2;
  [self.layer addSublayer:_fill];
  return self;
}

- (NSSize)intrinsicContentSize {
  return NSMakeSize(pictureWidth, barHeight);
}

- (CGRect)fillFrame {
  const NSRect bounds = self.bounds;
  return CGRectMake(NSMinX(bounds), NSMinY(bounds), NSWidth(bounds) * _readiness, NSHeight(bounds));
}

- (void)layout {
  [super layout];
  withoutAnimation(^{
    self->_fill.frame = [self fillFrame];
  });
}

- (void)showReadiness:(double)readiness animated:(BOOL)animated {
  _readiness = std::clamp(readiness, 0.0, 1.0);
  if (!animated) {
    withoutAnimation(^{
      self->_fill.frame = [self fillFrame];
    });
    return;
  }
  [CATransaction begin];
  [CATransaction setAnimationDuration:sodam::LiveFeed::readinessAnimationSeconds];
  [CATransaction setAnimationTimingFunction:[CAMediaTimingFunction
                                                functionWithName:kCAMediaTimingFunctionEaseOut]];
  _fill.frame = [self fillFrame];
  [CATransaction commit];
}

@end

@implementation SJGlassPreview {
  SJGlassPicture* _picture;
  NSTextField* _waiting;
  SJReadinessBar* _bar;
  NSTextField* _hint;
}

- (instancetype)initWithFrame:(NSRect)frame {
  if (!(self = [super initWithFrame:frame])) return nil;
  _picture = [[SJGlassPicture alloc] initWithFrame:NSZeroRect];
  _waiting = [NSTextField labelWithString:@"카메라를 켜고 있어요…"];
  _waiting.textColor = [NSColor colorWithWhite:1 alpha:0.8];
  _bar = [[SJReadinessBar alloc] initWithFrame:NSZeroRect];
  _hint = [NSTextField labelWithString:@""];
  _hint.font = [NSFont systemFontOfSize:13 weight:NSFontWeightMedium];
  _hint.alignment = NSTextAlignmentCenter;

  NSStackView* stack = [NSStackView stackViewWithViews:@[ _picture, _bar, _hint ]];
  stack.orientation = NSUserInterfaceLayoutOrientationVertical;
  stack.alignment = NSLayoutAttributeCenterX;
  stack.spacing = 10;
  [self addPinned:stack];

  _waiting.translatesAutoresizingMaskIntoConstraints = NO;
  [_picture addSubview:_waiting];
  [NSLayoutConstraint activateConstraints:@[
    [_picture.widthAnchor constraintEqualToConstant:pictureWidth],
    [_picture.heightAnchor constraintEqualToConstant:pictureHeight],
    [_bar.widthAnchor constraintEqualToAnchor:_picture.widthAnchor],
    [_bar.heightAnchor constraintEqualToConstant:barHeight],
    [_hint.widthAnchor constraintEqualToAnchor:_picture.widthAnchor],
    [_waiting.centerXAnchor constraintEqualToAnchor:_picture.centerXAnchor],
    [_waiting.centerYAnchor constraintEqualToAnchor:_picture.centerYAnchor],
  ]];
  [self showHint:nil lineUpShoulders:NO];
  return self;
}

- (void)addPinned:(NSView*)view {
  view.translatesAutoresizingMaskIntoConstraints = NO;
  [self addSubview:view];
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:self.leadingAnchor],
    [view.trailingAnchor constraintEqualToAnchor:self.trailingAnchor],
    [view.topAnchor constraintEqualToAnchor:self.topAnchor],
    [view.bottomAnchor constraintEqualToAnchor:self.bottomAnchor],
  ]];
}

// Frames come ten times a second: a cross-fade between them would smear.
- (void)showGlass:(CGImageRef)image {
  CALayer* layer = _picture.imageLayer;
  withoutAnimation(^{
    layer.contents = (__bridge id)image;
  });
  _waiting.hidden = image != nullptr;
}

- (void)showReadiness:(double)readiness animated:(BOOL)animated {
  [_bar showReadiness:readiness animated:animated];
}

- (void)showHint:(NSString*)hint lineUpShoulders:(BOOL)lineUpShoulders {
  // The label keeps its line when empty, so the page doesn't jump.
  _hint.stringValue = hint ? hint : @" ";
  _hint.textColor = lineUpShoulders ? paletteColor(sodam::Theme::orange) : NSColor.labelColor;
  CAShapeLayer* line = _picture.shoulderLine;
  NSColor* stroke =
      lineUpShoulders ? paletteColor(sodam::Theme::orange) : [NSColor colorWithWhite:1 alpha:0.6];
  withoutAnimation(^{
    line.strokeColor = stroke.CGColor;
    line.lineWidth = lineUpShoulders ? 2.5 : 1.5;
  });
}

@end
