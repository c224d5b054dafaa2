#import "mac/stretch_figure_view.h"

#include <algorithm>

#include "mac/stretch_figure_geometry.h"

namespace {

constexpr CGFloat figureWidth = 240;
constexpr CGFloat figureHeight = 280;
// The figure spans about this many head radii from the hanging hands to the
// top of the head, and this many across with the arms out.
constexpr CGFloat figureUnitsHigh = 15;
constexpr CGFloat figureUnitsWide = 13;
constexpr CGFloat hipsAboveBottom = 6;

}  // namespace

@implementation SJStretchFigureView {
  sodam::Pose _pose;
  sodam::Stage _stage;
  std::vector<sodam::Focus> _focus;
}

- (instancetype)initWithFrame:(NSRect)frame {
  if (!(self = [super initWithFrame:frame])) return nil;
  _tint = NSColor.systemOrangeColor;
  _stage = sodam::Stage::front;
  [self.widthAnchor constraintEqualToConstant:figureWidth].active = YES;
  [self.heightAnchor constraintEqualToConstant:figureHeight].active = YES;
  return self;
}

- (void)showPose:(const sodam::Pose&)pose
           stage:(sodam::Stage)stage
           focus:(const std::vector<sodam::Focus>&)focus {
  if (pose == _pose && stage == _stage && focus == _focus) return;
  _pose = pose;
  _stage = stage;
  _focus = focus;
  self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirty {
  const NSRect b = self.bounds;
  const CGFloat unit = std::min(b.size.width / figureUnitsWide, b.size.height / figureUnitsHigh);
  const NSPoint origin{NSMidX(b), NSMinY(b) + hipsAboveBottom * unit};
  auto at = [&](sodam::Point p) {
    return NSMakePoint(origin.x + p.x * unit, origin.y + p.y * unit);
  };
  const sodam::FigureSkeleton f = sodam::figure::skeleton(_pose, _stage);

  for (const auto& glow : sodam::figure::glows(f, _focus, _stage)) {
    const NSPoint c = at(glow.centre);
    const CGFloat r = glow.radius * unit;
    [[self.tint colorWithAlphaComponent:0.22] setFill];
    [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(c.x - r, c.y - r, 2 * r, 2 * r)] fill];
  }
  auto limb = [&](int arm, CGFloat alpha) {
    NSBezierPath* path = [NSBezierPath bezierPath];
    path.lineWidth = 0.55 * unit;
    path.lineCapStyle = NSLineCapStyleRound;
    path.lineJoinStyle = NSLineJoinStyleRound;
    [path moveToPoint:at(f.shoulder[arm])];
    [path lineToPoint:at(f.elbow[arm])];
    [path lineToPoint:at(f.wrist[arm])];
    [path lineToPoint:at(f.hand[arm])];
    [[self.tint colorWithAlphaComponent:alpha] setStroke];
    [path stroke];
  };
  for (int arm : {0, 1}) {
    if (f.behind[arm]) limb(arm, 0.4);
  }
  NSBezierPath* trunk = [NSBezierPath bezierPath];
  trunk.lineWidth = 1.3 * unit;
  trunk.lineCapStyle = NSLineCapStyleRound;
  [trunk moveToPoint:at(f.hip)];
  [trunk curveToPoint:at(f.neck) controlPoint1:at(f.chest) controlPoint2:at(f.chest)];
  if (_stage == sodam::Stage::front) {
    [trunk moveToPoint:at(f.shoulder[0])];
    [trunk lineToPoint:at(f.shoulder[1])];
  }
  [self.tint setStroke];
  [trunk stroke];
  NSBezierPath* neck = [NSBezierPath bezierPath];
  neck.lineWidth = 0.6 * unit;
  [neck moveToPoint:at(f.neck)];
  [neck lineToPoint:at(f.head)];
  [neck stroke];
  const NSPoint head = at(f.head);
  const CGFloat r = f.headRadius * unit;
  [self.tint setFill];
  [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(head.x - r, head.y - r, 2 * r, 2 * r)] fill];
  const NSPoint face = at(f.face);
  [NSColor.whiteColor setFill];
  const CGFloat dot = 0.22 * unit;
  [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(face.x - dot, face.y - dot, 2 * dot, 2 * dot)]
      fill];
  for (int arm : {0, 1}) {
    if (!f.behind[arm]) limb(arm, 1);
  }
}

@end
