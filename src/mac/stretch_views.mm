#import "mac/stretch_views.h"

#include <cmath>
#include <memory>
#include <string>

#include "coach/avatar_smoother.h"
#include "coach/stretch_library.h"
#include "mac/guide_views.h"
#include "mac/pill_views.h"
#include "mac/stretch_figure_geometry.h"
#include "support/text.h"

namespace {

using sodam::CoachSession;
using sodam::FigureSkeleton;
using Kind = CoachSession::Phase::Kind;

constexpr double framesPerSecond = 30;
constexpr CGFloat figureWidth = 240;
constexpr CGFloat figureHeight = 280;
constexpr CGFloat pageInset = 24;
// The figure spans about this many head radii from the hanging hands to the
// top of the head, and this many across with the arms out.
constexpr CGFloat figureUnitsHigh = 15;
constexpr CGFloat figureUnitsWide = 13;
constexpr CGFloat hipsAboveBottom = 6;

NSString* S(const std::string& text) {
  return SJString(text);
}

NSTextField* label(NSString* text, CGFloat size, NSFontWeight weight = NSFontWeightRegular) {
  NSTextField* field = [NSTextField wrappingLabelWithString:text];
  field.font = [NSFont systemFontOfSize:size weight:weight];
  return field;
}

NSStackView* column(NSArray<NSView*>* views, CGFloat spacing) {
  NSStackView* stack = [NSStackView stackViewWithViews:views];
  stack.orientation = NSUserInterfaceLayoutOrientationVertical;
  stack.alignment = NSLayoutAttributeLeading;
  stack.spacing = spacing;
  return stack;
}

NSStackView* row(NSArray<NSView*>* views, CGFloat spacing) {
  NSStackView* stack = [NSStackView stackViewWithViews:views];
  stack.orientation = NSUserInterfaceLayoutOrientationHorizontal;
  stack.spacing = spacing;
  return stack;
}

NSProgressIndicator* bar() {
  NSProgressIndicator* bar = [[NSProgressIndicator alloc] initWithFrame:NSZeroRect];
  bar.indeterminate = NO;
  bar.minValue = 0;
  bar.maxValue = 1;
  bar.style = NSProgressIndicatorStyleBar;
  [bar.widthAnchor constraintEqualToConstant:figureWidth * 2].active = YES;
  return bar;
}

// Sets a label's text only when it changed, so a redraw at the display's
// rate costs nothing while nothing moves.
void show(NSTextField* field, NSString* text) {
  if (![field.stringValue isEqualToString:text]) field.stringValue = text;
}

std::string sideName(const sodam::Stretch& stretch, sodam::Side side) {
  if (!stretch.sides) return "";
  return side == sodam::Side::right ? " (오른쪽)" : " (왼쪽)";
}

std::string phaseLine(const CoachSession& s) {
  const int n = s.phase().seconds;
  switch (s.phase().kind) {
    case Kind::frame:
      return "카메라에 몸이 보이게 앉아 주세요";
    case Kind::turn:
      return "옆으로 돌아앉아 주세요";
    case Kind::ready:
      return sodam::format("%d초 뒤에 시작해요", n);
    case Kind::switching:
      return sodam::format("반대쪽은 %d초 뒤에 시작해요", n);
    case Kind::rest: {
      const std::string next = s.current().name;
      return sodam::format("잠깐 쉬어요 · 다음은 %s · %d", next.c_str(), n);
    }
    case Kind::active:
      return sodam::format("%d초 남았어요",
                           static_cast<int>(std::ceil(std::max(s.remaining(), 0.0))));
    case Kind::done:
      return "스트레칭을 마쳤어요";
    case Kind::intro:
      break;
  }
  return "";
}

std::string countLine(const CoachSession& s) {
  if (s.phase().is(Kind::done)) {
    const auto& accuracy = s.accuracy();
    std::string line = sodam::format("%d초 동안 했어요", static_cast<int>(s.elapsed()));
    if (accuracy) line += sodam::format(" · 정확도 %.0f%%", *accuracy * 100);
    return line;
  }
  if (!s.phase().is(Kind::active)) return "";
  if (s.repTarget() == 0) return "시간에 맞춰 따라 해요";
  return sodam::format("%d / %d회", s.reps(), s.repTarget());
}

}  // namespace

// Runs a block when a control fires; the page keeps these alive.
@interface SJAction : NSObject
@property(nonatomic, copy) void (^run)(void);
- (void)fire:(id)sender;
@end

@implementation SJAction
- (void)fire:(id)sender {
  if (self.run) self.run();
}
@end

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
  const FigureSkeleton f = sodam::figure::skeleton(_pose, _stage);

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

// One coach session, read at the display's rate.
@interface SJStretchSessionView : NSView
- (instancetype)initWithSession:(CoachSession*)session;
- (void)advanceTo:(sodam::Date)now;
@end

@implementation SJStretchSessionView {
  CoachSession* _session;
  sodam::AvatarSmoother _smoother;
  NSMutableArray<SJAction*>* _actions;
  NSProgressIndicator* _progress;
  NSTextField* _title;
  NSTextField* _phase;
  SJStretchFigureView* _figure;
  SJStretchFigureView* _user;
  NSTextField* _cue;
  NSTextField* _count;
  NSProgressIndicator* _reach;
  NSStackView* _checks;
  NSTextField* _hint;
  NSButton* _skipCheck;
  NSButton* _pause;
  NSStackView* _controls;
}

- (NSButton*)button:(NSString*)title run:(void (^)(void))run {
  SJAction* action = [[SJAction alloc] init];
  action.run = run;
  [_actions addObject:action];
  return [NSButton buttonWithTitle:title target:action action:@selector(fire:)];
}

- (instancetype)initWithSession:(CoachSession*)session {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _session = session;
  _actions = [NSMutableArray array];
  _progress = bar();
  _title = label(@"", 20, NSFontWeightBold);
  _phase = label(@"", 13);
  _phase.textColor = NSColor.secondaryLabelColor;
  _figure = [[SJStretchFigureView alloc] initWithFrame:NSZeroRect];
  _figure.tint = sodam::themeNSColor(sodam::Theme::coral);
  _user = [[SJStretchFigureView alloc] initWithFrame:NSZeroRect];
  _user.tint = sodam::themeNSColor(sodam::Theme::blue);
  _cue = label(@"", 17, NSFontWeightSemibold);
  _count = label(@"", 15, NSFontWeightMedium);
  _reach = bar();
  _checks = column(@[], 4);
  _hint = label(@"", 13);
  _hint.textColor = NSColor.systemOrangeColor;
  __weak SJStretchSessionView* weakSelf = self;
  _skipCheck = [self button:@""
                        run:^{
                          [weakSelf skipCheck];
                        }];
  _pause = [self button:@"일시정지"
                    run:^{
                      [weakSelf command:&CoachSession::togglePause];
                    }];
  _controls = row(
      @[
        [self button:@"이전"
                 run:^{
                   [weakSelf command:&CoachSession::previous];
                 }],
        _pause,
        [self button:@"건너뛰기"
                 run:^{
                   [weakSelf command:&CoachSession::skip];
                 }],
        [self button:@"닫기"
                 run:^{
                   [weakSelf command:&CoachSession::close];
                 }]
      ],
      8);
  NSStackView* page = column(
      @[
        _progress, _title, _phase, row(@[ _figure, _user ], 16), _cue, _count, _reach, _checks,
        _hint, _skipCheck, _controls
      ],
      10);
  page.translatesAutoresizingMaskIntoConstraints = NO;
  [self addSubview:page];
  [NSLayoutConstraint activateConstraints:@[
    [page.topAnchor constraintEqualToAnchor:self.topAnchor constant:pageInset],
    [page.leadingAnchor constraintEqualToAnchor:self.leadingAnchor constant:pageInset],
    [page.trailingAnchor constraintLessThanOrEqualToAnchor:self.trailingAnchor constant:-pageInset],
  ]];
  return self;
}

- (void)command:(void (CoachSession::*)())command {
  if (_session) (_session->*command)();
}

- (void)skipCheck {
  if (!_session) return;
  if (_session->phase().is(Kind::frame)) _session->skipFrame();
  if (_session->phase().is(Kind::turn)) _session->skipTurn();
}

- (void)showChecks {
  const bool framing = _session->phase().is(Kind::frame) || _session->phase().is(Kind::turn);
  _checks.hidden = !framing;
  _hint.hidden = !framing || !_session->framingHint();
  if (_session->framingHint()) show(_hint, S(std::string(*_session->framingHint())));
  const auto& checks = _session->checks();
  while (_checks.arrangedSubviews.count > checks.size())
    [_checks.arrangedSubviews.lastObject removeFromSuperview];
  while (_checks.arrangedSubviews.count < checks.size()) {
    NSImageView* mark = [[NSImageView alloc] initWithFrame:NSZeroRect];
    [_checks addArrangedSubview:row(@[ mark, label(@"", 13) ], 6)];
  }
  for (std::size_t i = 0; i < checks.size(); ++i) {
    NSStackView* line = (NSStackView*)_checks.arrangedSubviews[i];
    NSImageView* mark = (NSImageView*)line.arrangedSubviews[0];
    NSString* symbol = checks[i].ok ? @"checkmark.circle.fill" : @"circle";
    mark.image = [NSImage imageWithSystemSymbolName:symbol accessibilityDescription:nil];
    mark.contentTintColor = checks[i].ok ? NSColor.systemGreenColor : NSColor.tertiaryLabelColor;
    show((NSTextField*)line.arrangedSubviews[1], S(std::string(checks[i].title)));
  }
  const bool offerSkip = _session->phase().is(Kind::frame) ||
                         (_session->phase().is(Kind::turn) && _session->turnSlow());
  _skipCheck.hidden = !offerSkip;
  _skipCheck.title = _session->phase().is(Kind::turn) ? @"옆모습 없이 할게요" : @"그냥 시작할게요";
}

- (void)showCue {
  NSString* cue = _session->cue() && _session->phase().is(Kind::active) ? S(*_session->cue()) : @"";
  if ([_cue.stringValue isEqualToString:cue]) return;
  _cue.stringValue = cue;
  _cue.alphaValue = 0;
  [NSAnimationContext runAnimationGroup:^(NSAnimationContext* context) {
    context.duration = CoachSession::cueFadeSeconds;
    self->_cue.animator.alphaValue = 1;
  }];
}

- (void)advanceTo:(sodam::Date)now {
  if (!_session) return;
  const CoachSession& s = *_session;
  const sodam::Stretch& stretch = s.current();
  _progress.doubleValue =
      s.progress(s.phase().is(Kind::done) ? static_cast<int>(s.items().size()) : s.index());
  show(_title, S(sodam::format("%d/%zu ", s.index() + 1, s.items().size()) + stretch.name +
                 sideName(stretch, s.side())));
  show(_phase, S(phaseLine(s)));
  show(_count, S(countLine(s)));
  _reach.hidden = !s.phase().is(Kind::active) || s.repTarget() == 0;
  _reach.doubleValue = s.reach();
  _pause.title = s.paused() ? @"계속" : @"일시정지";
  _controls.hidden = s.phase().is(Kind::done);
  [self showCue];
  [self showChecks];

  const bool playing = s.phase().is(Kind::active) && !s.paused();
  const sodam::Pose demo = playing ? s.motion().pose(now - s.motionStart()).pose : s.figure();
  [_figure showPose:demo stage:stretch.stage focus:stretch.focus(s.side())];
  _user.hidden = !s.userPose();
  if (s.userPose())
    [_user showPose:_smoother.step(*s.userPose(), now) stage:stretch.stage focus:{}];
}

@end

@implementation SJStretchPageView {
  sodam::StretchHost _host;
  CoachSession* _shown;
  bool _showingLibrary;
  NSView* _content;
  SJStretchSessionView* _sessionView;
  NSMutableArray<SJAction*>* _actions;
  NSTimer* _timer;
}

- (instancetype)initWithHost:(sodam::StretchHost)host {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _host = std::move(host);
  _shown = nullptr;
  _showingLibrary = false;
  _actions = [NSMutableArray array];
  [self reload];
  return self;
}

- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  [_timer invalidate];
  _timer = nil;
  if (!self.window) return;
  __weak SJStretchPageView* weakSelf = self;
  _timer = [NSTimer scheduledTimerWithTimeInterval:1 / framesPerSecond
                                           repeats:YES
                                             block:^(NSTimer*) {
                                               [weakSelf tick];
                                             }];
}

- (void)tick {
  CoachSession* session = _host.session ? _host.session() : nullptr;
  if (session != _shown || (!session && !_showingLibrary)) [self reload];
  [_sessionView advanceTo:sodam::Date{NSDate.timeIntervalSinceReferenceDate}];
}

- (void)place:(NSView*)view {
  [_content removeFromSuperview];
  _content = view;
  view.translatesAutoresizingMaskIntoConstraints = NO;
  [self addSubview:view];
  [NSLayoutConstraint activateConstraints:@[
    [view.topAnchor constraintEqualToAnchor:self.topAnchor],
    [view.leadingAnchor constraintEqualToAnchor:self.leadingAnchor],
    [view.trailingAnchor constraintEqualToAnchor:self.trailingAnchor],
    [view.bottomAnchor constraintEqualToAnchor:self.bottomAnchor],
  ]];
}

- (void)reload {
  _shown = _host.session ? _host.session() : nullptr;
  [_actions removeAllObjects];
  if (_shown) {
    _showingLibrary = false;
    _sessionView = [[SJStretchSessionView alloc] initWithSession:_shown];
    [self place:_sessionView];
    return;
  }
  _sessionView = nil;
  _showingLibrary = true;
  [self place:[self library:_host.page ? _host.page() : sodam::StretchPage{}]];
}

- (NSButton*)button:(NSString*)title run:(void (^)(void))run {
  SJAction* action = [[SJAction alloc] init];
  action.run = run;
  [_actions addObject:action];
  return [NSButton buttonWithTitle:title target:action action:@selector(fire:)];
}

- (NSView*)routineCard:(const sodam::StretchPage&)page {
  NSMutableArray<NSView*>* lines = [NSMutableArray array];
  [lines
      addObject:label(S(std::string(sodam::StretchLibrary::routineTitle)), 17, NSFontWeightBold)];
  if (page.reasons.empty()) {
    [lines addObject:label(S(std::string(sodam::StretchLibrary::routineStock)), 13)];
  }
  for (const auto& reason : page.reasons)
    [lines addObject:label(S(reason), 13)];
  std::string names;
  for (const auto& stretch : page.routine)
    names += (names.empty() ? "" : " · ") + stretch.name;
  NSTextField* list =
      label(S(names + " · " + sodam::StretchPage::length(page.routineSeconds())), 12);
  list.textColor = NSColor.secondaryLabelColor;
  [lines addObject:list];
  auto host = _host;
  [lines addObject:[self button:@"추천 루틴 시작"
                            run:^{
                              if (host.startRoutine) host.startRoutine();
                            }]];
  NSBox* card = [[NSBox alloc] initWithFrame:NSZeroRect];
  card.boxType = NSBoxCustom;
  card.cornerRadius = 12;
  card.borderWidth = 0;
  card.fillColor = [sodam::themeNSColor(sodam::Theme::green) colorWithAlphaComponent:0.12];
  card.contentView = column(lines, 6);
  card.contentViewMargins = NSMakeSize(16, 14);
  return card;
}

- (NSView*)stretchRow:(const sodam::Stretch&)stretch {
  NSTextField* name = label(S(stretch.name), 14, NSFontWeightSemibold);
  NSTextField* summary = label(S(stretch.summary), 12);
  summary.textColor = NSColor.secondaryLabelColor;
  NSTextField* time = label(S(sodam::StretchPage::length(stretch.totalSeconds())), 12);
  time.textColor = NSColor.secondaryLabelColor;
  auto host = _host;
  const sodam::Stretch one = stretch;
  NSButton* start = [self button:@"시작"
                             run:^{
                               if (host.start) host.start({one});
                             }];
  return row(@[ column(@[ name, summary ], 2), time, start ], 12);
}

- (NSView*)library:(const sodam::StretchPage&)page {
  NSMutableArray<NSView*>* parts = [NSMutableArray arrayWithObject:[self routineCard:page]];
  for (const auto& area : page.areas) {
    [parts addObject:label(S(std::string(sodam::areaName(area.area))), 15, NSFontWeightBold)];
    for (const auto& stretch : area.stretches)
      [parts addObject:[self stretchRow:stretch]];
  }
  NSStackView* list = column(parts, 10);
  list.edgeInsets = NSEdgeInsetsMake(pageInset, pageInset, pageInset, pageInset);
  NSScrollView* scroll = [[NSScrollView alloc] initWithFrame:NSZeroRect];
  scroll.hasVerticalScroller = YES;
  scroll.drawsBackground = NO;
  list.translatesAutoresizingMaskIntoConstraints = NO;
  NSClipView* clip = scroll.contentView;
  scroll.documentView = list;
  [NSLayoutConstraint activateConstraints:@[
    [list.topAnchor constraintEqualToAnchor:clip.topAnchor],
    [list.leadingAnchor constraintEqualToAnchor:clip.leadingAnchor],
    [list.widthAnchor constraintEqualToAnchor:clip.widthAnchor],
  ]];
  return scroll;
}

@end
