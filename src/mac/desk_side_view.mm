#import "mac/desk_side_view.h"

#include <algorithm>
#include <cmath>
#include <functional>

#import "mac/guide_views.h"
#import "mac/pill_views.h"
#include "workspace/desk_check.h"
#include "workspace/desk_scene.h"

using namespace sodam;

namespace {

constexpr CGFloat viewHeight = 340;
constexpr double blendSeconds = 0.35;
constexpr double framesPerSecond = 60;

NSColor* strokeOf(DeskScene::Ink ink) {
  switch (ink) {
    case DeskScene::Ink::floor:
      return NSColor.separatorColor;
    case DeskScene::Ink::furniture:
      return NSColor.systemGrayColor;
    case DeskScene::Ink::soft:
      return NSColor.systemBrownColor;
    case DeskScene::Ink::screen:
      return themeNSColor(Theme::blue);
    case DeskScene::Ink::body:
      return themeNSColor(Theme::coral);
    case DeskScene::Ink::guide:
      return themeNSColor(Theme::orange);
  }
  return NSColor.labelColor;
}

NSColor* fillOf(DeskScene::Ink ink) {
  switch (ink) {
    case DeskScene::Ink::furniture:
      return NSColor.quaternaryLabelColor;
    case DeskScene::Ink::soft:
      return [NSColor.systemBrownColor colorWithAlphaComponent:0.3];
    default:
      return strokeOf(ink);
  }
}

// Both ends of a blend in one frame, so that the picture does not zoom as
// it moves.
std::pair<V2, V2> frameOf(const DeskScene& a, const DeskScene& b) {
  return {{std::min(a.low.x, b.low.x), std::min(a.low.y, b.low.y)},
          {std::max(a.high.x, b.high.x), std::max(a.high.y, b.high.y)}};
}

}  // namespace

@implementation SJDeskSideView {
  DeskSetup _from;
  DeskSetup _to;
  double _progress;
  V2 _low;
  V2 _high;
  NSTimer* _timer;
}

- (instancetype)initWithFrame:(NSRect)frame {
  if (!(self = [super initWithFrame:frame])) return nil;
  _progress = 1;
  self.translatesAutoresizingMaskIntoConstraints = NO;
  [self.heightAnchor constraintEqualToConstant:viewHeight].active = YES;
  [self setAccessibilityElement:YES];
  self.accessibilityRole = NSAccessibilityImageRole;
  [self showSetup:_to animated:NO];
  return self;
}

- (void)dealloc {
  [_timer invalidate];
}

- (void)viewDidChangeEffectiveAppearance {
  [super viewDidChangeEffectiveAppearance];
  self.needsDisplay = YES;
}

- (void)showSetup:(const DeskSetup&)setup animated:(BOOL)animated {
  _from = [self shownSetup];
  _to = setup;
  const auto [low, high] =
      frameOf(DeskScene::of(DeskGeometry(_from)), DeskScene::of(DeskGeometry(_to)));
  _low = low;
  _high = high;
  [_timer invalidate];
  _timer = nil;
  _progress = animated && !(_from == _to) ? 0 : 1;
  if (_progress < 1) {
    __weak SJDeskSideView* weakSelf = self;
    _timer = [NSTimer scheduledTimerWithTimeInterval:1 / framesPerSecond
                                             repeats:YES
                                               block:^(NSTimer*) {
                                                 [weakSelf step];
                                               }];
  }
  [self describe];
  self.needsDisplay = YES;
}

- (void)step {
  _progress = std::min(1.0, _progress + 1 / (blendSeconds * framesPerSecond));
  if (_progress >= 1) {
    [_timer invalidate];
    _timer = nil;
    const DeskScene scene = DeskScene::of(DeskGeometry(_to));
    _low = scene.low;
    _high = scene.high;
  }
  self.needsDisplay = YES;
}

- (DeskSetup)shownSetup {
  // Eased out, as the rest of the panel moves.
  const double t = 1 - std::pow(1 - _progress, 3);
  return DeskSetup::lerp(_from, _to, t);
}

// What VoiceOver reads: the kind and the measures the labels show.
- (void)describe {
  const DeskGeometry g(_to);
  self.accessibilityLabel = [NSString
      stringWithFormat:@"옆에서 본 자리, %@: 시선 %.0f도 아래, 화면까지 %.0f센티, 팔꿈치 %.0f도",
                       SJString(std::string(_to.kind.title())), g.gazeDownDegrees(),
                       g.viewDistance(), g.elbowDegrees()];
}

- (void)drawRect:(NSRect)dirtyRect {
  CGContextRef context = NSGraphicsContext.currentContext.CGContext;
  const DeskScene scene = DeskScene::of(DeskGeometry([self shownSetup]));
  const NSRect bounds = self.bounds;
  const double width = _high.x - _low.x;
  const double height = _high.y - _low.y;
  if (width <= 0 || height <= 0) return;
  const CGFloat scale = std::min(bounds.size.width / width, bounds.size.height / height);
  const CGFloat left = (bounds.size.width - width * scale) / 2;
  const CGFloat bottom = (bounds.size.height - height * scale) / 2;
  auto at = [&](V2 p) {
    return CGPointMake(left + (p.x - _low.x) * scale, bottom + (p.y - _low.y) * scale);
  };
  CGContextSetLineCap(context, kCGLineCapRound);
  CGContextSetLineJoin(context, kCGLineJoinRound);
  for (const auto& shape : scene.shapes)
    [self draw:shape in:context at:at scale:scale];
  NSDictionary* style = @{
    NSFontAttributeName : [NSFont systemFontOfSize:NSFont.smallSystemFontSize],
    NSForegroundColorAttributeName : NSColor.secondaryLabelColor
  };
  for (const auto& label : scene.labels)
    [SJString(label.text) drawAtPoint:NSPointFromCGPoint(at(label.at)) withAttributes:style];
}

- (void)draw:(const DeskScene::Shape&)shape
          in:(CGContextRef)context
          at:(const std::function<CGPoint(V2)>&)at
       scale:(CGFloat)scale {
  using Kind = DeskScene::Shape::Kind;
  CGContextSetStrokeColorWithColor(context, strokeOf(shape.ink).CGColor);
  CGContextSetFillColorWithColor(context, fillOf(shape.ink).CGColor);
  if (shape.kind == Kind::circle) {
    const CGPoint c = at(shape.points[0]);
    const CGFloat r = shape.radius * scale;
    CGContextFillEllipseInRect(context, CGRectMake(c.x - r, c.y - r, 2 * r, 2 * r));
    return;
  }
  CGContextBeginPath(context);
  for (std::size_t i = 0; i < shape.points.size(); ++i) {
    const CGPoint p = at(shape.points[i]);
    if (i == 0) {
      CGContextMoveToPoint(context, p.x, p.y);
    } else {
      CGContextAddLineToPoint(context, p.x, p.y);
    }
  }
  if (shape.kind == Kind::polygon) {
    CGContextClosePath(context);
    CGContextSetLineWidth(context, 1);
    CGContextSetLineDash(context, 0, nullptr, 0);
    CGContextDrawPath(context, kCGPathFillStroke);
    return;
  }
  CGContextSetLineWidth(context, std::max<CGFloat>(shape.width * scale, 1));
  const CGFloat dash[] = {6, 5};
  CGContextSetLineDash(context, 0, shape.dashed ? dash : nullptr, shape.dashed ? 2 : 0);
  CGContextStrokePath(context);
}

@end
