#include "mac/companion_view.h"

#include <CoreFoundation/CoreFoundation.h>

#include "companion/dorani_poke.h"
#include "mac/companion_art.h"
#include "mac/companion_geometry.h"
#include "mac/pill_arts.h"
#include "mac/pill_geometry.h"

using sodam::PillEyes;
using sodam::PillLook;

namespace {

// The character at pill size, with room above for what it wears, drawn this
// many times larger.
constexpr CGSize bodySize{94, 44};
constexpr CGFloat headRoom = 20;
constexpr CGFloat enlarge = 2.4;
constexpr CGFloat pokedScale = 0.86;

}  // namespace

@implementation SJCompanionView {
  CALayer* _figure;
  id<SJMovingArt> _moving;
  NSTimer* _ticker;
  std::optional<PillLook> _look;
  PillEyes::Mood _mood;
}

- (instancetype)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self) {
    self.wantsLayer = YES;
    _figure = [CALayer layer];
    _figure.bounds = CGRectMake(0, 0, bodySize.width, bodySize.height + headRoom);
    _figure.transform = CATransform3DMakeScale(enlarge, enlarge, 1);
  }
  return self;
}

- (NSSize)intrinsicContentSize {
  return NSMakeSize(bodySize.width * enlarge + 24, (bodySize.height + headRoom) * enlarge + 16);
}

- (void)layout {
  [super layout];
  if (!_figure.superlayer) [self.layer addSublayer:_figure];
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  _figure.position = CGPointMake(NSMidX(self.bounds), NSMidY(self.bounds));
  [CATransaction commit];
}

- (void)showLook:(const PillLook&)look mood:(PillEyes::Mood)mood {
  if (_look == look && _mood == mood) return;
  _look = look;
  _mood = mood;
  [self rebuild];
}

// Body, pattern, ears and trim, face: the pill's pieces put together, each
// drawn at the enlarged scale so that nothing blurs.
- (void)rebuild {
  if (!_look) return;
  const PillLook look = *_look;
  const CGFloat scale = (self.window ? self.window.backingScaleFactor : 2) * enlarge;
  [CATransaction begin];
  [CATransaction setDisableActions:YES];
  _figure.sublayers = nil;
  const CGPoint bodyMiddle{bodySize.width / 2, bodySize.height / 2};

  CALayer* decor = sodam::makeEarsLayer(look, bodySize.width, scale);
  decor.anchorPoint = CGPointMake(0.5, 0);
  decor.position = CGPointMake(bodyMiddle.x, bodySize.height);
  [_figure addSublayer:decor];
  if (CALayer* trim = sodam::makeTrimLayer(look.trim, scale)) {
    const sodam::TrimBox box = sodam::trimBox(look.trim);
    trim.anchorPoint = CGPointMake(0.5, 0);
    trim.position = CGPointMake(bodyMiddle.x + box.centerX, bodySize.height + box.bottom);
    [_figure addSublayer:trim];
  }

  CALayer* body = [CALayer layer];
  body.bounds = CGRectMake(0, 0, bodySize.width, bodySize.height);
  body.position = bodyMiddle;
  body.cornerRadius = bodySize.height / 2;
  body.backgroundColor = sodam::lookNSColor(sodam::bodyColor(look.body)).CGColor;
  if (CALayer* pattern = sodam::makePatternLayer(look.pattern, bodySize, scale)) {
    pattern.position = bodyMiddle;
    [body addSublayer:pattern];
  }
  const sodam::Pill face(sodam::Date{CFAbsoluteTimeGetCurrent()}, sodam::Pill::Art::buddy(_mood),
                         sodam::Theme::white);
  sodam::PillArtLayer art = sodam::makePillArtLayer(face, look, true, scale);
  art.layer.position = bodyMiddle;
  [body addSublayer:art.layer];
  [_figure addSublayer:body];
  _moving = art.moving;
  [CATransaction commit];
  [self tick];
}

- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  [_ticker invalidate];
  _ticker = nil;
  if (!self.window) return;
  [self rebuild];
  __weak SJCompanionView* weakSelf = self;
  _ticker = [NSTimer timerWithTimeInterval:sodam::movingArtInterval
                                   repeats:YES
                                     block:^(NSTimer*) {
                                       [weakSelf tick];
                                     }];
  _ticker.tolerance = sodam::movingArtInterval / 4;
  [NSRunLoop.mainRunLoop addTimer:_ticker forMode:NSRunLoopCommonModes];
}

- (void)tick {
  const std::optional<sodam::Point> look = _gaze ? _gaze() : std::nullopt;
  [_moving advanceTo:sodam::Date{CFAbsoluteTimeGetCurrent()} gaze:look];
}

- (void)bounce {
  const sodam::SpringParameters spring =
      sodam::springParameters(sodam::DoraniPoke::bounceResponse, sodam::DoraniPoke::bounceDamping);
  CASpringAnimation* animation = [CASpringAnimation animationWithKeyPath:@"transform.scale"];
  animation.mass = spring.mass;
  animation.stiffness = spring.stiffness;
  animation.damping = spring.damping;
  animation.fromValue = @(enlarge * pokedScale);
  animation.toValue = @(enlarge);
  animation.duration = animation.settlingDuration;
  [_figure addAnimation:animation forKey:@"poke"];
}

- (void)mouseDown:(NSEvent*)event {
  [self bounce];
  if (self.onPoke) self.onPoke();
}

- (void)resetCursorRects {
  [self addCursorRect:self.bounds cursor:NSCursor.pointingHandCursor];
}

@end
