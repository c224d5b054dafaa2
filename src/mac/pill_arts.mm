#include "mac/pill_arts.h"

#include <cmath>
#include <numbers>

#include "mac/cf_holder.h"
#include "mac/companion_art.h"
#include "mac/companion_geometry.h"
#include "mac/pill_geometry.h"
#include "mac/pill_views.h"
#include "mac/status_icon.h"

using sodam::Date;
using sodam::PillEyes;

namespace {

constexpr CGFloat symbolSide = 36;
constexpr CGFloat fixSide = 40;
constexpr CGSize characterSize{70, 28};
constexpr CGFloat ringSide = 34;
constexpr CGFloat breatheGap = 6;

// The companion's eyes: where they rest, and how far they follow a gaze.
constexpr CGFloat eyeApart = 13;
constexpr sodam::Size eyeReach{4, 3};
constexpr CGFloat eyeLine = 2.6;

// The ears over the capsule; they stay short so they keep below the menu bar.
constexpr CGFloat earRoom = 14;
constexpr CGFloat earSpread = 14;
constexpr CGFloat earHeight = 8;

CGSize square(CGFloat side) {
  return CGSizeMake(side, side);
}

CAShapeLayer* shapeLayer(CGSize size, CGPathRef path, CGFloat scale) {
  CAShapeLayer* layer = [CAShapeLayer layer];
  layer.bounds = CGRectMake(0, 0, size.width, size.height);
  layer.position = CGPointMake(size.width / 2, size.height / 2);
  layer.path = path;
  layer.contentsScale = scale;
  return layer;
}

sodam::CFHolder<CGPathRef> circlePath(CGPoint center, CGFloat radius) {
  return sodam::adopt(CGPathCreateWithEllipseInRect(
      CGRectMake(center.x - radius, center.y - radius, 2 * radius, 2 * radius), nullptr));
}

NSAttributedString* digits(NSString* text, CGFloat size) {
  return sodam::styledText(
      text, [NSFont monospacedDigitSystemFontOfSize:size weight:NSFontWeightSemibold],
      [NSColor colorWithWhite:1 alpha:0.92]);
}

// Replaces the text of a small label and keeps it centred on the point.
void setLabel(CALayer* label, NSAttributedString* text, CGFloat maxWidth, CGPoint center,
              CGFloat scale) {
  sodam::drawTextBlock(label, {{text}}, maxWidth, scale);
  label.position = center;
}

}  // namespace

// The companion's face: two eyes in the mood and the look's eye colour, with
// what the look wears on the face. They blink unless still, and follow the
// user's face when they follow and a gaze is given.
@interface SJFaceLayer : CALayer <SJMovingArt>
- (instancetype)initWithEyes:(const PillEyes&)eyes face:(sodam::PillFace)face scale:(CGFloat)scale;
@end

// An art that runs for some seconds from the pill's start and shows a number
// of seconds left, redrawn only when it changes.
@interface SJTimedLayer : CALayer {
 @protected
  Date _started;
  int _seconds;
  CGFloat _scale;
}
- (instancetype)initWithStart:(Date)started seconds:(int)seconds scale:(CGFloat)scale;
// True once for each new number.
- (BOOL)numberChangedTo:(int)number;
@end

// A ring that empties over the countdown, with the seconds left inside.
@interface SJCountdownLayer : SJTimedLayer <SJMovingArt>
- (instancetype)initWithStart:(Date)started
                      seconds:(int)seconds
                         tint:(NSColor*)tint
                        scale:(CGFloat)scale;
@end

// A dot that fills as the user breathes in and empties as they breathe out,
// beside the time left.
@interface SJBreatheLayer : SJTimedLayer <SJMovingArt>
- (instancetype)initWithStart:(Date)started
                      seconds:(int)seconds
                         tint:(NSColor*)tint
                        scale:(CGFloat)scale;
@end

namespace {

using Mood = PillEyes::Mood;

void addRoundedEye(CGMutablePathRef path, CGPoint center, CGFloat width, CGFloat height) {
  const CGFloat radius = std::min(width, height) / 2;
  CGPathAddRoundedRect(path, nullptr,
                       CGRectMake(center.x - width / 2, center.y - height / 2, width, height),
                       radius, radius);
}

// An arc of the circle from one angle to the other, counter-clockwise (y up).
void addArc(CGMutablePathRef path, CGPoint center, CGFloat radius, CGFloat from, CGFloat to) {
  CGPathMoveToPoint(path, nullptr, center.x + radius * std::cos(from),
                    center.y + radius * std::sin(from));
  CGPathAddArc(path, nullptr, center.x, center.y, radius, from, to, false);
}

void addLine(CGMutablePathRef path, CGPoint from, CGPoint to) {
  CGPathMoveToPoint(path, nullptr, from.x, from.y);
  CGPathAddLineToPoint(path, nullptr, to.x, to.y);
}

// A brow cut slanting down towards the nose, for a cross face.
void addPoutEye(CGMutablePathRef path, CGPoint c, CGFloat side) {
  const CGFloat inner = -side;
  const CGFloat innerTop = c.y + 1.5;
  const CGFloat outerTop = c.y + 5;
  const CGPoint corners[] = {{c.x - 4, c.y - 5},
                             {c.x + 4, c.y - 5},
                             {c.x + 4, inner > 0 ? innerTop : outerTop},
                             {c.x - 4, inner > 0 ? outerTop : innerTop}};
  CGPathAddLines(path, nullptr, corners, 4);
  CGPathCloseSubpath(path);
}

// One eye of the mood; `side` is −1 for the left eye and 1 for the right.
void addMoodEye(CGMutablePathRef fill, CGMutablePathRef stroke, Mood mood, CGPoint c,
                CGFloat side) {
  constexpr CGFloat pi = std::numbers::pi;
  switch (mood) {
    case Mood::looking:
      return addRoundedEye(fill, c, 8, 12);
    case Mood::focus:
      return addRoundedEye(fill, {c.x, c.y - 0.5}, 9, 7);
    case Mood::happy:
      return addArc(stroke, {c.x, c.y - 2.5}, 4.5, 0.15 * pi, 0.85 * pi);
    case Mood::curious:
      return side < 0 ? addRoundedEye(fill, c, 8, 11) : addRoundedEye(fill, {c.x, c.y + 1}, 10, 15);
    case Mood::sleepy:
      return addLine(stroke, {c.x - 4.5, c.y - 1.5}, {c.x + 4.5, c.y - 1.5});
    case Mood::love:
      return sodam::addHeartPath(fill, c, 12);
    case Mood::sleep:
      return addArc(stroke, {c.x, c.y + 2.5}, 4.5, 1.15 * pi, 1.85 * pi);
    case Mood::wink:
      if (side < 0) return addRoundedEye(fill, c, 8, 12);
      return addArc(stroke, {c.x, c.y - 2.5}, 4.5, 0.15 * pi, 0.85 * pi);
    case Mood::surprised:
      CGPathAddEllipseInRect(stroke, nullptr, CGRectMake(c.x - 5, c.y - 5, 10, 10));
      return;
    case Mood::dizzy:
      addLine(stroke, {c.x - 4, c.y - 4}, {c.x + 4, c.y + 4});
      return addLine(stroke, {c.x - 4, c.y + 4}, {c.x + 4, c.y - 4});
    case Mood::pout:
      return addPoutEye(fill, c, side);
  }
}

NSString* toNSString(std::string_view text) {
  return [[NSString alloc] initWithBytes:text.data()
                                  length:text.size()
                                encoding:NSUTF8StringEncoding];
}

NSImage* symbolImage(NSString* name, CGFloat pointSize) {
  NSImage* image = [NSImage imageWithSystemSymbolName:name accessibilityDescription:nil];
  return [image imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                                 configurationWithPointSize:pointSize
                                                                     weight:NSFontWeightSemibold]];
}

// A glyph that shows the fix more than the fault; the issue's own symbol
// stands in where the system lacks the glyph.
NSString* fixSymbolName(sodam::IssueKind kind) {
  switch (kind) {
    case sodam::IssueKind::forwardHead:
      return @"arrow.left.to.line";
    case sodam::IssueKind::leaning:
      return @"chair.fill";
    case sodam::IssueKind::slouch:
      return @"arrow.up.to.line";
    case sodam::IssueKind::lookingDown:
      return @"arrow.up.circle.fill";
    case sodam::IssueKind::shoulderTilt:
      return @"level.fill";
    case sodam::IssueKind::headTilt:
      return @"arrow.up.and.down.circle.fill";
    case sodam::IssueKind::lean:
      return @"arrow.right.and.line.vertical.and.arrow.left";
    case sodam::IssueKind::tooClose:
      return @"arrow.down.right.and.arrow.up.left";
  }
  return nil;
}

NSImage* fixSymbol(sodam::IssueKind kind, CGFloat pointSize) {
  for (NSString* name : {fixSymbolName(kind), toNSString(kind.symbol()), @"exclamationmark"}) {
    if (NSImage* image = name ? symbolImage(name, pointSize) : nil) return image;
  }
  return nil;
}

// The symbol in the tint, centred on a tinted badge of the side.
CALayer* badge(CGFloat side, CGFloat cornerRadius, NSImage* symbol, NSColor* tint, CGFloat scale) {
  CALayer* layer = [CALayer layer];
  layer.bounds = CGRectMake(0, 0, side, side);
  layer.cornerRadius = cornerRadius;
  layer.backgroundColor = [tint colorWithAlphaComponent:0.2].CGColor;
  if (!symbol) return layer;
  CALayer* glyph = sodam::imageLayer(symbol.size, scale, NO, ^(NSRect bounds) {
    [symbol drawInRect:bounds];
    [tint set];
    NSRectFillUsingOperation(bounds, NSCompositingOperationSourceAtop);
  });
  glyph.position = CGPointMake(side / 2, side / 2);
  [layer addSublayer:glyph];
  return layer;
}

CGFloat breatheTimeWidth() {
  return std::ceil(digits(@"00:00", 13).size.width);
}

}  // namespace

@implementation SJFaceLayer {
  CALayer* _eyes;
  PillEyes _look;
}

- (instancetype)initWithEyes:(const PillEyes&)eyes face:(sodam::PillFace)face scale:(CGFloat)scale {
  self = [super init];
  if (self) {
    _look = eyes;
    self.bounds = CGRectMake(0, 0, characterSize.width, characterSize.height);
    auto fills = sodam::adopt(CGPathCreateMutable());
    auto strokes = sodam::adopt(CGPathCreateMutable());
    for (CGFloat side : {-1.0, 1.0}) {
      const CGPoint center{characterSize.width / 2 + side * eyeApart, characterSize.height / 2};
      addMoodEye(fills.get(), strokes.get(), eyes.mood, center, side);
    }
    _eyes = sodam::makeColouredEyes(fills.get(), strokes.get(), eyeLine, eyes.color, characterSize,
                                    scale);
    [self addSublayer:_eyes];
    if (CALayer* decor = sodam::makeFaceLayer(face, characterSize, eyeApart, scale)) {
      decor.position = CGPointMake(characterSize.width / 2, characterSize.height / 2);
      [self addSublayer:decor];
    }
  }
  return self;
}

- (void)advanceTo:(Date)now gaze:(std::optional<sodam::Point>)gaze {
  const sodam::Point shift = sodam::eyeShift(_look.follow ? gaze : std::nullopt, eyeReach);
  const CGFloat open = sodam::eyeOpenness(_look.start, now, _look.still);
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  // The gaze's y points down, the layer's up; a blink closes towards the eye line.
  _eyes.transform = CATransform3DScale(CATransform3DMakeTranslation(shift.x, -shift.y, 0), 1,
                                       std::max<CGFloat>(open, 0.08), 1);
  [CATransaction commit];
}

@end

@implementation SJTimedLayer {
  int _shownNumber;
}

- (instancetype)initWithStart:(Date)started seconds:(int)seconds scale:(CGFloat)scale {
  self = [super init];
  if (self) {
    _started = started;
    _seconds = seconds;
    _scale = scale;
    _shownNumber = -1;
  }
  return self;
}

- (BOOL)numberChangedTo:(int)number {
  if (number == _shownNumber) return NO;
  _shownNumber = number;
  return YES;
}

@end

@implementation SJCountdownLayer {
  CAShapeLayer* _progress;
  CALayer* _number;
}

- (instancetype)initWithStart:(Date)started
                      seconds:(int)seconds
                         tint:(NSColor*)tint
                        scale:(CGFloat)scale {
  self = [super initWithStart:started seconds:seconds scale:scale];
  if (self) {
    self.bounds = CGRectMake(0, 0, ringSide, ringSide);
    constexpr CGFloat width = 3.5;
    const CGPoint center{ringSide / 2, ringSide / 2};
    const CGFloat radius = ringSide / 2 - width / 2;
    auto track = circlePath(center, radius);
    CAShapeLayer* trackLayer = shapeLayer(square(ringSide), track.get(), scale);
    trackLayer.fillColor = nil;
    trackLayer.strokeColor = [tint colorWithAlphaComponent:0.25].CGColor;
    trackLayer.lineWidth = width;
    // From the top, clockwise, so the ring empties back towards the top.
    auto arc = sodam::adopt(CGPathCreateMutable());
    constexpr CGFloat top = std::numbers::pi / 2;
    CGPathAddArc(arc.get(), nullptr, center.x, center.y, radius, top, top - 2 * std::numbers::pi,
                 true);
    _progress = shapeLayer(square(ringSide), arc.get(), scale);
    _progress.fillColor = nil;
    _progress.strokeColor = tint.CGColor;
    _progress.lineWidth = width;
    _progress.lineCap = kCALineCapRound;
    _number = [CALayer layer];
    for (CALayer* layer in @[ trackLayer, _progress, _number ])
      [self addSublayer:layer];
  }
  return self;
}

- (void)advanceTo:(Date)now gaze:(std::optional<sodam::Point>)gaze {
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  _progress.strokeEnd = sodam::countdownLeft(_started, _seconds, now);
  const int number = sodam::countdownSecondsLeft(_started, _seconds, now);
  if ([self numberChangedTo:number]) {
    setLabel(_number, digits(@(number).stringValue, number >= 100 ? 10 : 12), ringSide - 8,
             CGPointMake(ringSide / 2, ringSide / 2), _scale);
  }
  [CATransaction commit];
}

@end

@implementation SJBreatheLayer {
  CAShapeLayer* _dot;
  CALayer* _time;
}

- (instancetype)initWithStart:(Date)started
                      seconds:(int)seconds
                         tint:(NSColor*)tint
                        scale:(CGFloat)scale {
  self = [super initWithStart:started seconds:seconds scale:scale];
  if (self) {
    self.bounds = CGRectMake(0, 0, ringSide + breatheGap + breatheTimeWidth(), ringSide);
    const CGPoint center{ringSide / 2, ringSide / 2};
    auto rim = circlePath(center, ringSide / 2 - 0.75);
    CAShapeLayer* rimLayer = shapeLayer(square(ringSide), rim.get(), scale);
    rimLayer.fillColor = nil;
    rimLayer.strokeColor = [tint colorWithAlphaComponent:0.3].CGColor;
    rimLayer.lineWidth = 1.5;
    auto dot = circlePath(center, ringSide / 2 - 3);
    _dot = shapeLayer(square(ringSide), dot.get(), scale);
    _dot.fillColor = [tint colorWithAlphaComponent:0.9].CGColor;
    _time = [CALayer layer];
    for (CALayer* layer in @[ rimLayer, _dot, _time ])
      [self addSublayer:layer];
  }
  return self;
}

- (void)advanceTo:(Date)now gaze:(std::optional<sodam::Point>)gaze {
  constexpr CGFloat emptyScale = 0.3;
  const double fullness = sodam::breathFullness(_started, _seconds, now);
  const CGFloat dotScale = emptyScale + (1 - emptyScale) * fullness;
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  _dot.transform = CATransform3DMakeScale(dotScale, dotScale, 1);
  const int left = sodam::countdownSecondsLeft(_started, _seconds, now);
  if ([self numberChangedTo:left]) {
    const CGFloat width = breatheTimeWidth();
    setLabel(_time, digits(@(sodam::minutesAndSeconds(left).c_str()), 13), width,
             CGPointMake(ringSide + breatheGap + width / 2, ringSide / 2), _scale);
  }
  [CATransaction commit];
}

@end

namespace sodam {

CGSize pillArtSize(const Pill::Art& art) {
  switch (art.kind()) {
    case Pill::Art::Kind::symbol:
      return square(symbolSide);
    case Pill::Art::Kind::fix:
      return square(fixSide);
    case Pill::Art::Kind::buddy:
    case Pill::Art::Kind::say:
      return characterSize;
    case Pill::Art::Kind::countdown:
      return square(ringSide);
    case Pill::Art::Kind::breathe:
      return CGSizeMake(ringSide + breatheGap + breatheTimeWidth(), ringSide);
  }
  return square(symbolSide);
}

PillArtLayer makePillArtLayer(const Pill& pill, const PillLook& look, bool follow, CGFloat scale) {
  NSColor* tint = themeNSColor(pill.tint);
  const Pill::Art& art = pill.art;
  switch (art.kind()) {
    case Pill::Art::Kind::symbol:
      return {badge(symbolSide, symbolSide / 2, symbolImage(toNSString(art.symbolName()), 17), tint,
                    scale),
              nil};
    case Pill::Art::Kind::fix:
      return {badge(fixSide, 11, fixSymbol(*art.issue(), 19), tint, scale), nil};
    case Pill::Art::Kind::buddy:
    case Pill::Art::Kind::say: {
      const PillEyes eyes{*art.mood(), pill.started, false, look.eyes, follow};
      SJFaceLayer* face = [[SJFaceLayer alloc] initWithEyes:eyes face:look.face scale:scale];
      return {face, face};
    }
    case Pill::Art::Kind::countdown: {
      SJCountdownLayer* ring = [[SJCountdownLayer alloc] initWithStart:pill.started
                                                               seconds:art.seconds()
                                                                  tint:tint
                                                                 scale:scale];
      return {ring, ring};
    }
    case Pill::Art::Kind::breathe: {
      SJBreatheLayer* breathe = [[SJBreatheLayer alloc] initWithStart:pill.started
                                                              seconds:art.seconds()
                                                                 tint:tint
                                                                scale:scale];
      return {breathe, breathe};
    }
  }
  return {[CALayer layer], nil};
}

CALayer* makeEarsLayer(const PillLook& look, CGFloat width, CGFloat scale) {
  auto path = earsPath(lookRaw(look.ears), {{width / 2, 0}, earSpread, earHeight});
  CAShapeLayer* layer = shapeLayer(CGSizeMake(width, earRoom), path.get(), scale);
  layer.fillColor = lookNSColor(bodyColor(look.body)).CGColor;
  // A faint rim keeps black ears readable over dark windows; its part below
  // the roots hides behind the capsule.
  layer.strokeColor = [NSColor colorWithWhite:1 alpha:0.2].CGColor;
  layer.lineWidth = 1;
  return layer;
}

}  // namespace sodam
