#import "mac/mate_figure_view.h"

#import "mac/guide_views.h"

using namespace sodam;

namespace {

constexpr CGFloat figureSize = 120;
constexpr CGFloat deskY = 34;
constexpr CGFloat headRadius = 13;
constexpr CGFloat bodyWidth = 30;
constexpr CGFloat lineWidth = 4;

// Where the figure's head sits and how its back bends, per state.
struct Pose {
  CGFloat headDx = 0;   // ahead of the shoulders, towards the desk
  CGFloat headDy = 0;   // below the upright head
  CGFloat lean = 0;     // the back's bend towards the desk
  bool seated = true;   // false: the chair is empty
  bool phone = false;   // a phone in the hands
  bool asleep = false;  // closed eyes and a "z"
  bool armsUp = false;  // stretching
};

NSArray<NSColor*>* skinTones() {
  return @[
    [NSColor colorWithSRGBRed:0.98 green:0.85 blue:0.74 alpha:1],
    [NSColor colorWithSRGBRed:0.91 green:0.74 blue:0.60 alpha:1],
    [NSColor colorWithSRGBRed:0.76 green:0.57 blue:0.42 alpha:1],
    [NSColor colorWithSRGBRed:0.52 green:0.37 blue:0.26 alpha:1],
  ];
}

NSArray<NSColor*>* hairColors() {
  return @[
    [NSColor colorWithSRGBRed:0.12 green:0.10 blue:0.09 alpha:1],
    [NSColor colorWithSRGBRed:0.40 green:0.26 blue:0.15 alpha:1],
    [NSColor colorWithSRGBRed:0.78 green:0.60 blue:0.32 alpha:1],
    [NSColor colorWithSRGBRed:0.62 green:0.20 blue:0.16 alpha:1],
    NSColor.systemGrayColor,
    NSColor.systemPinkColor,
  ];
}

NSArray<NSColor*>* shirtColors() {
  return @[
    NSColor.systemBlueColor, NSColor.systemGreenColor, NSColor.systemOrangeColor,
    NSColor.systemPurpleColor, NSColor.systemRedColor, NSColor.systemTealColor,
    NSColor.systemYellowColor, NSColor.systemGrayColor
  ];
}

// Any index picks a colour, so a look from a newer program still draws.
NSColor* paletteColor(NSArray<NSColor*>* palette, int index) {
  const NSInteger count = static_cast<NSInteger>(palette.count);
  return palette[static_cast<NSUInteger>(((index % count) + count) % count)];
}

Pose poseOf(MateState state) {
  Pose pose;
  switch (state) {
    case MateState::away:
    case MateState::offline:
      pose.seated = false;
      break;
    case MateState::phone:
      pose.headDy = 8;
      pose.phone = true;
      break;
    case MateState::turtle:
      pose.headDx = 14;
      pose.headDy = 4;
      break;
    case MateState::slouch:
      pose.lean = 12;
      pose.headDx = 8;
      pose.headDy = 12;
      break;
    case MateState::drowsy:
      pose.headDx = 6;
      pose.headDy = 16;
      pose.asleep = true;
      break;
    case MateState::stretch:
      pose.armsUp = true;
      break;
    case MateState::focus:
    case MateState::desk:
      break;
  }
  return pose;
}

void strokeLine(NSPoint a, NSPoint b, NSColor* color) {
  NSBezierPath* path = [NSBezierPath bezierPath];
  path.lineWidth = lineWidth;
  path.lineCapStyle = NSLineCapStyleRound;
  [path moveToPoint:a];
  [path lineToPoint:b];
  [color setStroke];
  [path stroke];
}

}  // namespace

@implementation SJMateFigureView {
  MateState::Value _state;
}

- (instancetype)initWithState:(MateState)state {
  if (!(self = [super initWithFrame:NSMakeRect(0, 0, figureSize, figureSize)])) return nil;
  _state = state;
  self.translatesAutoresizingMaskIntoConstraints = NO;
  [NSLayoutConstraint activateConstraints:@[
    [self.widthAnchor constraintEqualToConstant:figureSize],
    [self.heightAnchor constraintEqualToConstant:figureSize],
  ]];
  [self setAccessibilityElement:YES];
  self.accessibilityRole = NSAccessibilityImageRole;
  self.accessibilityLabel = SJString(std::string(state.title()));
  return self;
}

- (MateState)state {
  return _state;
}

- (void)setLook:(MateLook)look {
  _look = look;
  self.needsDisplay = YES;
}

- (void)setState:(MateState)state {
  _state = state;
  self.accessibilityLabel = SJString(std::string(state.title()));
  self.needsDisplay = YES;
}

- (void)viewDidChangeEffectiveAppearance {
  [super viewDidChangeEffectiveAppearance];
  self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirtyRect {
  const Pose pose = poseOf(_state);
  NSColor* ink = NSColor.secondaryLabelColor;
  const bool dressed = !(_look == MateLook{});
  NSColor* skin = dressed ? paletteColor(skinTones(), _look.skin) : NSColor.labelColor;
  NSColor* shirt = dressed ? paletteColor(shirtColors(), _look.shirt) : skin;
  // The desk on the right, the chair on the left.
  strokeLine(NSMakePoint(70, deskY + 20), NSMakePoint(112, deskY + 20), ink);
  strokeLine(NSMakePoint(104, deskY + 20), NSMakePoint(104, 8), ink);
  strokeLine(NSMakePoint(22, 8), NSMakePoint(22, deskY + 36), ink);
  strokeLine(NSMakePoint(22, deskY), NSMakePoint(52, deskY), ink);
  if (!pose.seated) return;

  const NSPoint hip = NSMakePoint(40, deskY + 6);
  const NSPoint shoulder = NSMakePoint(hip.x + 4 + pose.lean, hip.y + 38 - pose.lean / 2);
  NSBezierPath* back = [NSBezierPath bezierPath];
  back.lineWidth = bodyWidth / 2;
  back.lineCapStyle = NSLineCapStyleRound;
  [back moveToPoint:hip];
  [back curveToPoint:shoulder
       controlPoint1:NSMakePoint(hip.x - 2, hip.y + 18)
       controlPoint2:NSMakePoint(shoulder.x - pose.lean, shoulder.y - 10)];
  [[shirt colorWithAlphaComponent:0.8] setStroke];
  [back stroke];

  const NSPoint head =
      NSMakePoint(shoulder.x + 4 + pose.headDx, shoulder.y + headRadius + 6 - pose.headDy);
  [[skin colorWithAlphaComponent:0.9] setFill];
  [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(head.x - headRadius, head.y - headRadius,
                                                     2 * headRadius, 2 * headRadius)] fill];
  if (dressed) {
    // The hair: a cap over the top of the head.
    NSBezierPath* hair = [NSBezierPath bezierPath];
    [hair appendBezierPathWithArcWithCenter:head radius:headRadius + 1 startAngle:20 endAngle:200];
    [paletteColor(hairColors(), _look.hairColor) setFill];
    [hair fill];
  }

  const NSPoint hand = pose.armsUp  ? NSMakePoint(shoulder.x + 6, shoulder.y + 44)
                       : pose.phone ? NSMakePoint(shoulder.x + 22, shoulder.y - 10)
                                    : NSMakePoint(76, deskY + 24);
  strokeLine(shoulder, hand, skin);
  if (pose.phone) {
    [NSColor.systemBlueColor setFill];
    NSRectFill(NSMakeRect(hand.x - 2, hand.y - 2, 8, 13));
  }
  if (pose.asleep) {
    NSDictionary* style = @{
      NSFontAttributeName : [NSFont systemFontOfSize:15 weight:NSFontWeightBold],
      NSForegroundColorAttributeName : NSColor.systemIndigoColor
    };
    [@"z" drawAtPoint:NSMakePoint(head.x + 12, head.y + 10) withAttributes:style];
  }
}

@end
