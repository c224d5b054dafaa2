#include "mac/pill_views.h"

#include <algorithm>
#include <cmath>

#include "mac/companion_art.h"
#include "mac/companion_geometry.h"
#include "mac/pill_arts.h"
#include "mac/pill_geometry.h"

namespace sodam {

namespace {

constexpr CGFloat capsuleTextWidth = 300;

// The speech bubble: white body, dark text, a tail pointing at the capsule.
constexpr CGFloat bubbleTextWidth = 230;
constexpr CGSize bubblePad{12, 8};
constexpr CGFloat bubbleTail = 6;
constexpr CGFloat bubbleRadius = 12;

constexpr CGFloat lineGap = 1;
constexpr CGFloat swapFadeSeconds = 0.15;

NSString* toNSString(const std::optional<std::string>& text) {
  if (!text || text->empty()) return nil;
  return [NSString stringWithUTF8String:text->c_str()];
}

std::vector<TextLine> capsuleLines(const Pill& pill) {
  std::vector<TextLine> lines;
  if (NSString* title = toNSString(pill.title))
    lines.push_back({styledText(title, [NSFont systemFontOfSize:13 weight:NSFontWeightSemibold],
                                NSColor.whiteColor)});
  if (NSString* detail = toNSString(pill.detail))
    lines.push_back({styledText(detail, [NSFont systemFontOfSize:11.5],
                                [NSColor colorWithWhite:1 alpha:0.72])});
  return lines;
}

std::vector<TextLine> bubbleLines(const Pill& pill) {
  std::vector<TextLine> lines;
  if (NSString* title = toNSString(pill.title))
    lines.push_back({styledText(title, [NSFont systemFontOfSize:13 weight:NSFontWeightSemibold],
                                [NSColor colorWithWhite:0.1 alpha:1]),
                     true});
  if (NSString* detail = toNSString(pill.detail))
    lines.push_back(
        {styledText(detail, [NSFont systemFontOfSize:12], [NSColor colorWithWhite:0.35 alpha:1]),
         true});
  return lines;
}

constexpr NSStringDrawingOptions textOptions =
    NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading;

CGSize lineSize(const TextLine& line, CGFloat maxWidth) {
  if (!line.wraps) {
    NSSize natural = line.text.size;
    return {std::ceil(std::min<CGFloat>(natural.width, maxWidth)), std::ceil(natural.height)};
  }
  NSRect box = [line.text boundingRectWithSize:NSMakeSize(maxWidth, CGFLOAT_MAX)
                                       options:textOptions
                                       context:nil];
  return {std::ceil(box.size.width), std::ceil(box.size.height)};
}

CGRect sizedRect(Size size) {
  return CGRectMake(0, 0, size.width, size.height);
}

CGPoint cgPoint(Point point) {
  return CGPointMake(point.x, point.y);
}

CGPoint middle(CGSize size) {
  return CGPointMake(size.width / 2, size.height / 2);
}

// The content of a pill: art and text in a row, or the companion alone on
// its body's pattern. Its eyes follow whatever gaze the ticker passes on.
PillArtLayer makeContent(const Pill& pill, const PillLook& look, Size size, CGFloat scale) {
  CALayer* content = [CALayer layer];
  content.bounds = sizedRect(size);
  PillArtLayer art = makePillArtLayer(pill, look, true, scale);
  const CGSize artSize = art.layer.bounds.size;
  if (pill.isBuddy()) {
    if (CALayer* pattern =
            makePatternLayer(look.pattern, CGSizeMake(size.width, size.height), scale)) {
      pattern.position = middle(content.bounds.size);
      [content addSublayer:pattern];
    }
    art.layer.position = CGPointMake(size.width / 2, size.height / 2);
    [content addSublayer:art.layer];
    return {content, art.moving};
  }
  art.layer.position = CGPointMake(ContentSpacing::leading + artSize.width / 2, size.height / 2);
  [content addSublayer:art.layer];
  auto lines = capsuleLines(pill);
  if (!lines.empty()) {
    CALayer* text = [CALayer layer];
    drawTextBlock(text, lines, capsuleTextWidth, scale);
    text.anchorPoint = CGPointMake(0, 0.5);
    text.position = CGPointMake(ContentSpacing::leading + artSize.width + ContentSpacing::artToText,
                                size.height / 2);
    [content addSublayer:text];
  }
  return {content, art.moving};
}

CALayer* makeSayBubble(const Pill& pill, Size size, CGFloat scale) {
  auto lines = bubbleLines(pill);
  const CGSize box{size.width, size.height};
  return imageLayer(box, scale, YES, ^(NSRect bounds) {
    NSRect body = NSMakeRect(bubbleTail, 0, bounds.size.width - bubbleTail, bounds.size.height);
    CGFloat radius = std::min(bubbleRadius, body.size.height / 2);
    [NSColor.whiteColor setFill];
    [[NSBezierPath bezierPathWithRoundedRect:body xRadius:radius yRadius:radius] fill];
    NSBezierPath* tail = [NSBezierPath bezierPath];
    [tail moveToPoint:NSMakePoint(0, NSMidY(body))];
    [tail lineToPoint:NSMakePoint(bubbleTail + 2, NSMidY(body) - 5)];
    [tail lineToPoint:NSMakePoint(bubbleTail + 2, NSMidY(body) + 5)];
    [tail closePath];
    [tail fill];
    CGFloat y = bubblePad.height;
    for (const TextLine& line : lines) {
      CGSize each = lineSize(line, bubbleTextWidth);
      [line.text drawWithRect:NSMakeRect(bubbleTail + bubblePad.width, y, each.width, each.height)
                      options:textOptions
                      context:nil];
      y += each.height + lineGap;
    }
  });
}

// Core Animation's curve for a model change; none for an instant change.
CAAnimation* makeAnimation(NSString* keyPath, PillAnimation curve, id from, id to) {
  CABasicAnimation* animation = nil;
  switch (curve.curve) {
    case PillAnimation::Curve::none:
      return nil;
    case PillAnimation::Curve::spring: {
      if (curve.seconds <= 0) return nil;
      CASpringAnimation* spring = [CASpringAnimation animationWithKeyPath:keyPath];
      const SpringParameters parameters = springParameters(curve.seconds, curve.damping);
      spring.mass = parameters.mass;
      spring.stiffness = parameters.stiffness;
      spring.damping = parameters.damping;
      spring.duration = spring.settlingDuration;
      animation = spring;
      break;
    }
    case PillAnimation::Curve::easeOut:
    case PillAnimation::Curve::easeIn: {
      if (curve.seconds <= 0) return nil;
      animation = [CABasicAnimation animationWithKeyPath:keyPath];
      animation.duration = curve.seconds;
      animation.timingFunction =
          [CAMediaTimingFunction functionWithName:curve.curve == PillAnimation::Curve::easeOut
                                                      ? kCAMediaTimingFunctionEaseOut
                                                      : kCAMediaTimingFunctionEaseIn];
      break;
    }
  }
  animation.fromValue = from;
  animation.toValue = to;
  return animation;
}

// Moves a layer's property to the target along the curve, starting from
// what is on screen now. `shift` moves the start along with positions that
// change at once (a new pill's top, a wider screen).
void animate(CALayer* layer, NSString* keyPath, id target, PillAnimation curve,
             CGPoint shift = CGPointZero) {
  id current = [layer valueForKeyPath:keyPath];
  const bool shifted = shift.x != 0 || shift.y != 0;
  if ([current isEqual:target] && !shifted) return;
  CALayer* shown = layer.presentationLayer;
  id from = shown ? [shown valueForKeyPath:keyPath] : current;
  if (shifted && [from isKindOfClass:NSValue.class]) {
    NSPoint point = [from pointValue];
    from = [NSValue valueWithPoint:NSMakePoint(point.x + shift.x, point.y + shift.y)];
  }
  [layer setValue:target forKeyPath:keyPath];
  if (CAAnimation* animation = makeAnimation(keyPath, curve, from, target))
    [layer addAnimation:animation forKey:keyPath];
  else
    [layer removeAnimationForKey:keyPath];
}

NSValue* pointValue(CGPoint point) {
  return [NSValue valueWithPoint:NSPointFromCGPoint(point)];
}

}  // namespace

NSAttributedString* styledText(NSString* text, NSFont* font, NSColor* color) {
  return [[NSAttributedString alloc]
      initWithString:text ? text : @""
          attributes:@{NSFontAttributeName : font, NSForegroundColorAttributeName : color}];
}

CGSize textBlockSize(const std::vector<TextLine>& lines, CGFloat maxWidth) {
  CGSize total{0, 0};
  for (const TextLine& line : lines) {
    CGSize each = lineSize(line, maxWidth);
    total.width = std::max(total.width, each.width);
    total.height += each.height + (total.height > 0 ? lineGap : 0);
  }
  return total;
}

void drawTextBlock(CALayer* layer, const std::vector<TextLine>& lines, CGFloat maxWidth,
                   CGFloat scale) {
  const CGSize size = textBlockSize(lines, maxWidth);
  NSImage* image =
      [NSImage imageWithSize:size
                     flipped:YES
              drawingHandler:^BOOL(NSRect) {
                CGFloat y = 0;
                for (const TextLine& line : lines) {
                  CGSize each = lineSize(line, maxWidth);
                  [line.text drawWithRect:NSMakeRect(0, y, each.width, each.height)
                                  options:textOptions | NSStringDrawingTruncatesLastVisibleLine
                                  context:nil];
                  y += each.height + lineGap;
                }
                return YES;
              }];
  layer.bounds = CGRectMake(0, 0, size.width, size.height);
  layer.contentsScale = scale;
  layer.contents = [image layerContentsForContentsScale:scale];
}

CALayer* imageLayer(CGSize size, CGFloat scale, BOOL flipped, void (^draw)(NSRect bounds)) {
  NSImage* image = [NSImage imageWithSize:size
                                  flipped:flipped
                           drawingHandler:^BOOL(NSRect bounds) {
                             draw(bounds);
                             return YES;
                           }];
  CALayer* layer = [CALayer layer];
  layer.bounds = CGRectMake(0, 0, size.width, size.height);
  layer.contentsScale = scale;
  layer.contents = [image layerContentsForContentsScale:scale];
  return layer;
}

NSColor* themeNSColor(Theme tint, CGFloat alpha) {
  const ThemeColor color = themeColor(tint);
  return [NSColor colorWithSRGBRed:color.red / 255.0
                             green:color.green / 255.0
                              blue:color.blue / 255.0
                             alpha:alpha];
}

Size pillContentSize(const Pill& pill) {
  const CGSize art = pillArtSize(pill.art);
  const CGSize text =
      pill.isBuddy() ? CGSizeZero : textBlockSize(capsuleLines(pill), capsuleTextWidth);
  return contentSizeFor({art.width, art.height}, {text.width, text.height}, pill.isBuddy());
}

Size sayBubbleSize(const Pill& pill) {
  const CGSize text = textBlockSize(bubbleLines(pill), bubbleTextWidth);
  return {bubbleTail + text.width + 2 * bubblePad.width, text.height + 2 * bubblePad.height};
}

}  // namespace sodam

@implementation SJPillStageView {
  // Bottom to top: the ears behind the capsule, the capsule, its content,
  // the bubble. Each holder stays; what it holds changes with the pill.
  CALayer* _decor;
  CALayer* _capsule;
  CALayer* _content;
  CALayer* _bubble;
  id<SJMovingArt> _movingArt;
  std::optional<sodam::Pill> _builtPill;
  sodam::PillModel _shown;
  CGFloat _shownWidth;
}

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self) {
    self.wantsLayer = YES;
    _decor = [CALayer layer];
    _decor.anchorPoint = CGPointMake(0.5, 0);
    _capsule = [CALayer layer];
    _capsule.backgroundColor = NSColor.blackColor.CGColor;
    _capsule.hidden = YES;
    _content = [CALayer layer];
    _bubble = [CALayer layer];
    for (CALayer* faded in @[ _decor, _content, _bubble ])
      faded.opacity = 0;
    _shownWidth = frame.size.width;
  }
  return self;
}

- (BOOL)isOpaque {
  return NO;
}

- (CGFloat)drawingScale {
  return self.window ? self.window.backingScaleFactor : 2;
}

- (void)attachLayers {
  if (_capsule.superlayer) return;
  for (CALayer* layer in @[ _decor, _capsule, _content, _bubble ])
    [self.layer addSublayer:layer];
}

- (void)showModel:(const sodam::PillModel&)model animation:(sodam::PillAnimation)animation {
  [self attachLayers];
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  const bool buddy = model.pill && model.pill->isBuddy();
  const bool lookChanged = buddy && model.look != _shown.look;
  if (model.pill != _builtPill || lookChanged) [self buildFor:model];
  const bool instant = animation.curve == sodam::PillAnimation::Curve::none;
  if (instant) {
    for (CALayer* layer in @[ _decor, _capsule, _content, _bubble ])
      [layer removeAllAnimations];
  }
  const CGSize stage = self.bounds.size;
  const sodam::StagePlaces places = sodam::stagePlaces(model, {stage.width, stage.height});
  const sodam::Point moved = sodam::instantShift(_shown, _shownWidth, model, stage.width);
  const CGPoint shift{moved.x, moved.y};
  auto own = [&](sodam::PillAnimation curve) { return instant ? animation : curve; };

  _capsule.hidden = !model.pill;
  // The companion's pill is its body; every other pill is one with the notch.
  const sodam::LookColor body = buddy ? sodam::bodyColor(model.look.body) : sodam::LookColor{};
  _capsule.backgroundColor = sodam::lookNSColor(body).CGColor;
  sodam::animate(_capsule, @"bounds", [NSValue valueWithRect:sodam::sizedRect(places.capsule)],
                 animation);
  sodam::animate(_capsule, @"position", sodam::pointValue(sodam::cgPoint(places.center)), animation,
                 shift);
  sodam::animate(_capsule, @"cornerRadius", @(places.cornerRadius), animation);

  sodam::animate(_content, @"position", sodam::pointValue(sodam::cgPoint(places.center)), animation,
                 shift);
  sodam::animate(_content, @"opacity", @(model.contentOpacity()),
                 own(sodam::PillModel::contentFade));

  const bool decor = model.decorShown();
  sodam::animate(_decor, @"position", sodam::pointValue(sodam::cgPoint(places.capsuleTop)),
                 animation, shift);
  sodam::animate(_decor, @"opacity", @(decor ? 1 : 0), own(sodam::PillModel::decorSpring));
  sodam::animate(_decor, @"transform.scale", @(decor ? 1 : sodam::PillModel::decorStartScale),
                 own(sodam::PillModel::decorSpring));

  const bool bubble = model.bubbleShown();
  sodam::animate(_bubble, @"position", sodam::pointValue(sodam::cgPoint(places.bubbleCenter)),
                 animation, shift);
  sodam::animate(_bubble, @"opacity", @(bubble ? 1 : 0), own(sodam::PillModel::bubbleSpring));
  sodam::animate(_bubble, @"transform.scale", @(bubble ? 1 : sodam::PillModel::bubbleStartScale),
                 own(sodam::PillModel::bubbleSpring));
  [CATransaction commit];

  _shown = model;
  _shownWidth = stage.width;
}

// Puts the pill's content, ears and bubble into their holders; a pill that
// replaces one on screen cross-fades while the capsule reshapes.
- (void)buildFor:(const sodam::PillModel&)model {
  const bool replacing = _builtPill && model.pill && _shown.phase >= 3;
  for (CALayer* holder in @[ _decor, _content, _bubble ])
    holder.sublayers = nil;
  _movingArt = nil;
  _builtPill = model.pill;
  if (!model.pill) return;
  const sodam::Pill& pill = *model.pill;
  const CGFloat scale = self.drawingScale;

  sodam::PillArtLayer content = sodam::makeContent(pill, model.look, model.size, scale);
  _content.bounds = sodam::sizedRect(model.size);
  content.layer.position = sodam::middle(_content.bounds.size);
  [_content addSublayer:content.layer];
  _movingArt = content.moving;
  if (replacing) {
    CATransition* fade = [CATransition animation];
    fade.type = kCATransitionFade;
    fade.duration = sodam::swapFadeSeconds;
    [_content addAnimation:fade forKey:@"swap"];
  }

  if (pill.isBuddy()) [self decorate:model.look width:model.size.width scale:scale];
  if (pill.isSay()) {
    _bubble.bounds = sodam::sizedRect(model.bubble);
    CALayer* bubble = sodam::makeSayBubble(pill, model.bubble, scale);
    bubble.position = sodam::middle(_bubble.bounds.size);
    [_bubble addSublayer:bubble];
  }
}

// The ears and what the look wears on its head, standing on the capsule's
// top edge, which is the decor holder's bottom edge.
- (void)decorate:(const sodam::PillLook&)look width:(CGFloat)width scale:(CGFloat)scale {
  CALayer* earsLayer = sodam::makeEarsLayer(look, width, scale);
  CALayer* trim = sodam::makeTrimLayer(look.trim, scale);
  const sodam::TrimBox box = sodam::trimBox(look.trim);
  const CGFloat height = std::max<CGFloat>(earsLayer.bounds.size.height, box.top());
  _decor.bounds = CGRectMake(0, 0, width, height);
  earsLayer.anchorPoint = CGPointMake(0.5, 0);
  earsLayer.position = CGPointMake(width / 2, 0);
  [_decor addSublayer:earsLayer];
  if (!trim) return;
  trim.anchorPoint = CGPointMake(0.5, 0);
  trim.position = CGPointMake(width / 2 + box.centerX, box.bottom);
  [_decor addSublayer:trim];
}

- (void)advanceTo:(sodam::Date)now gaze:(std::optional<sodam::Point>)gaze {
  [_movingArt advanceTo:now gaze:gaze];
}

// Moved to a screen of another scale: draw the pill again for it.
- (void)viewDidChangeBackingProperties {
  [super viewDidChangeBackingProperties];
  if (!_builtPill) return;
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  [self buildFor:_shown];
  [CATransaction commit];
}

@end

@implementation SJClickView {
  NSTrackingArea* _tracking;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
  return YES;
}

- (void)mouseDown:(NSEvent*)event {
  // The click hides this panel, so no exit event will reset the pointer.
  [NSCursor.arrowCursor set];
  if (self.action) self.action();
}

- (void)resetCursorRects {
  [self addCursorRect:self.bounds cursor:NSCursor.pointingHandCursor];
}

// Cursor rectangles work only in the key window, and this panel never
// becomes key, so a tracking area sets the pointer too.
- (void)updateTrackingAreas {
  [super updateTrackingAreas];
  if (_tracking) return;
  _tracking =
      [[NSTrackingArea alloc] initWithRect:NSZeroRect
                                   options:NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved |
                                           NSTrackingActiveAlways | NSTrackingInVisibleRect
                                     owner:self
                                  userInfo:nil];
  [self addTrackingArea:_tracking];
}

- (void)mouseEntered:(NSEvent*)event {
  [NSCursor.pointingHandCursor set];
}

- (void)mouseMoved:(NSEvent*)event {
  [NSCursor.pointingHandCursor set];
}

- (void)mouseExited:(NSEvent*)event {
  [NSCursor.arrowCursor set];
}

@end
