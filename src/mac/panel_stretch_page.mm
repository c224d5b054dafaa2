// The stretch page: without a session, the day's routine card and the
// library by area; with one, the session: the figure and the user's mirrored
// figure, the framing checklist with its hint, the countdowns, the cue, the
// repetitions against the target, the reach and the commands.
#import "mac/panel_pages.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "app/stretch_page.h"
#include "coach/avatar_smoother.h"
#include "coach/stretch_library.h"
#import "mac/pill_views.h"
#import "mac/stretch_figure_view.h"
#include "support/text.h"

using namespace sodam;

namespace {

using Kind = CoachSession::Phase::Kind;

constexpr double framesPerSecond = 30;
constexpr CGFloat barWidth = 496;

NSTextField* text(const std::string& line, CGFloat size, NSFontWeight weight,
                  NSColor* color = NSColor.labelColor) {
  return panelLabel(SJString(line), [NSFont systemFontOfSize:size weight:weight], color);
}

NSProgressIndicator* bar() {
  NSProgressIndicator* bar = [[NSProgressIndicator alloc] init];
  bar.indeterminate = NO;
  bar.minValue = 0;
  bar.maxValue = 1;
  bar.style = NSProgressIndicatorStyleBar;
  [bar.widthAnchor constraintEqualToConstant:barWidth].active = YES;
  return bar;
}

// Sets a label's text only when it changed, so that drawing at the display's
// rate costs nothing while nothing moves.
void show(NSTextField* field, const std::string& line) {
  NSString* value = SJString(line);
  if (![field.stringValue isEqualToString:value]) field.stringValue = value;
}

std::string sideName(const Stretch& stretch, Side side) {
  if (!stretch.sides) return "";
  return side == Side::right ? " (오른쪽)" : " (왼쪽)";
}

std::string phaseLine(const CoachSession& s) {
  const int n = s.phase().seconds;
  switch (s.phase().kind) {
    case Kind::frame:
      return "카메라에 몸이 보이게 앉아 주세요";
    case Kind::turn:
      return "옆으로 돌아앉아 주세요";
    case Kind::ready:
      return format("%d초 뒤에 시작해요", n);
    case Kind::switching:
      return format("반대쪽은 %d초 뒤에 시작해요", n);
    case Kind::rest:
      return format("잠깐 쉬어요 · 다음은 %s · %d", s.current().name.c_str(), n);
    case Kind::active:
      return format("%d초 남았어요", static_cast<int>(std::ceil(std::max(s.remaining(), 0.0))));
    case Kind::done:
      return "스트레칭을 마쳤어요";
    case Kind::intro:
      break;
  }
  return "";
}

std::string countLine(const CoachSession& s) {
  if (s.phase().is(Kind::done)) {
    std::string line = format("%d초 동안 했어요", static_cast<int>(s.elapsed()));
    if (s.accuracy()) line += format(" · 정확도 %.0f%%", *s.accuracy() * 100);
    return line;
  }
  if (!s.phase().is(Kind::active)) return "";
  if (s.repTarget() == 0) return "시간에 맞춰 따라 해요";
  return format("%d / %d회", s.reps(), s.repTarget());
}

}  // namespace

// One coach session, read at the display's rate while it lives.
@interface SJStretchSessionView : NSView
- (instancetype)initWithSession:(CoachSession*)session;
- (void)advanceTo:(Date)now;
@end

@implementation SJStretchSessionView {
  CoachSession* _session;
  AvatarSmoother _smoother;
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

- (instancetype)initWithSession:(CoachSession*)session {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _session = session;
  _progress = bar();
  _title = text("", 20, NSFontWeightBold);
  _phase = text("", 13, NSFontWeightRegular, NSColor.secondaryLabelColor);
  _figure = [[SJStretchFigureView alloc] initWithFrame:NSZeroRect];
  _figure.tint = themeNSColor(Theme::coral);
  _figure.accessibilityLabel = @"따라 할 동작";
  _user = [[SJStretchFigureView alloc] initWithFrame:NSZeroRect];
  _user.tint = themeNSColor(Theme::blue);
  _user.accessibilityLabel = @"내 자세";
  _cue = text("", 17, NSFontWeightSemibold);
  _count = text("", 15, NSFontWeightMedium);
  _reach = bar();
  _checks = panelColumn(@[], 4);
  _hint = text("", 13, NSFontWeightRegular, NSColor.systemOrangeColor);
  __weak SJStretchSessionView* weakSelf = self;
  _skipCheck = panelButton(@"", ^{
    [weakSelf skipCheck];
  });
  _pause = panelButton(@"일시정지", ^{
    [weakSelf command:&CoachSession::togglePause];
  });
  _controls = panelRow(
      @[
        panelButton(@"이전",
                    ^{
                      [weakSelf command:&CoachSession::previous];
                    }),
        _pause,
        panelButton(@"건너뛰기",
                    ^{
                      [weakSelf command:&CoachSession::skip];
                    }),
        panelButton(@"닫기",
                    ^{
                      [weakSelf command:&CoachSession::close];
                    })
      ],
      8);
  NSStackView* page = panelColumn(
      @[
        _progress, _title, _phase, panelRow(@[ _figure, _user ], 16), _cue, _count, _reach, _checks,
        _hint, _skipCheck, _controls
      ],
      10);
  page.edgeInsets = NSEdgeInsetsMake(24, 24, 24, 24);
  panelFill(self, page);
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

// The checklist and its hint while the camera is being fitted.
- (void)showChecks {
  const CoachSession& s = *_session;
  const bool framing = s.phase().is(Kind::frame) || s.phase().is(Kind::turn);
  _checks.hidden = !framing;
  _hint.hidden = !framing || !s.framingHint();
  if (s.framingHint()) show(_hint, std::string(*s.framingHint()));
  const auto& checks = s.checks();
  while (_checks.arrangedSubviews.count > checks.size())
    [_checks.arrangedSubviews.lastObject removeFromSuperview];
  while (_checks.arrangedSubviews.count < checks.size()) {
    NSImageView* mark = [[NSImageView alloc] init];
    [_checks addArrangedSubview:panelRow(@[ mark, text("", 13, NSFontWeightRegular) ], 6)];
  }
  for (std::size_t i = 0; i < checks.size(); ++i) {
    NSStackView* line = (NSStackView*)_checks.arrangedSubviews[i];
    NSImageView* mark = (NSImageView*)line.arrangedSubviews[0];
    NSString* symbol = checks[i].ok ? @"checkmark.circle.fill" : @"circle";
    mark.image = [NSImage imageWithSystemSymbolName:symbol
                           accessibilityDescription:checks[i].ok ? @"됐어요" : @"아직이에요"];
    mark.contentTintColor = checks[i].ok ? NSColor.systemGreenColor : NSColor.tertiaryLabelColor;
    show((NSTextField*)line.arrangedSubviews[1], std::string(checks[i].title));
  }
  const bool turning = s.phase().is(Kind::turn);
  _skipCheck.hidden = !(s.phase().is(Kind::frame) || (turning && s.turnSlow()));
  _skipCheck.title = turning ? @"옆모습 없이 할게요" : @"그냥 시작할게요";
}

// A new line of the figure fades in.
- (void)showCue {
  const CoachSession& s = *_session;
  NSString* cue = s.cue() && s.phase().is(Kind::active) ? SJString(*s.cue()) : @"";
  if ([_cue.stringValue isEqualToString:cue]) return;
  _cue.stringValue = cue;
  _cue.alphaValue = 0;
  NSTextField* label = _cue;
  [NSAnimationContext runAnimationGroup:^(NSAnimationContext* context) {
    context.duration = CoachSession::cueFadeSeconds;
    label.animator.alphaValue = 1;
  }];
}

- (void)advanceTo:(Date)now {
  if (!_session) return;
  const CoachSession& s = *_session;
  const Stretch& stretch = s.current();
  const bool done = s.phase().is(Kind::done);
  _progress.doubleValue = s.progress(done ? static_cast<int>(s.items().size()) : s.index());
  show(_title, format("%d/%zu ", s.index() + 1, s.items().size()) + stretch.name +
                   sideName(stretch, s.side()));
  show(_phase, phaseLine(s));
  show(_count, countLine(s));
  _reach.hidden = !s.phase().is(Kind::active) || s.repTarget() == 0;
  _reach.doubleValue = s.reach();
  _pause.title = s.paused() ? @"계속" : @"일시정지";
  [_controls.arrangedSubviews[0] setHidden:done];
  [_controls.arrangedSubviews[1] setHidden:done];
  [_controls.arrangedSubviews[2] setHidden:done];
  [self showCue];
  [self showChecks];

  // The figure plays at the display's rate; paused or between stretches it
  // shows what the session shows.
  const bool playing = s.phase().is(Kind::active) && !s.paused();
  const Pose demo = playing ? s.motion().pose(now - s.motionStart()).pose : s.figure();
  [_figure showPose:demo stage:stretch.stage focus:stretch.focus(s.side())];
  _user.hidden = !s.userPose();
  if (s.userPose()) {
    [_user showPose:_smoother.step(*s.userPose(), now) stage:stretch.stage focus:{}];
  }
}

@end

// The page itself: the library, or the session while one runs.
@interface SJStretchPage : NSView <SJPanelPage>
@end

@implementation SJStretchPage {
  SJPanelContext _context;
  CoachSession* _shown;
  SJStretchSessionView* _sessionView;
  NSView* _content;
  NSTimer* _timer;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  _shown = nullptr;
  [self build];
  return self;
}

- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  [_timer invalidate];
  _timer = nil;
  if (!self.window) return;
  __weak SJStretchPage* weakSelf = self;
  _timer = [NSTimer scheduledTimerWithTimeInterval:1 / framesPerSecond
                                           repeats:YES
                                             block:^(NSTimer*) {
                                               [weakSelf advance];
                                             }];
}

- (void)advance {
  if (_context.model().session() != _shown) [self build];
  [_sessionView advanceTo:Date{NSDate.timeIntervalSinceReferenceDate}];
}

// A running session's view stays as it is; the library follows the records.
- (void)reload {
  if (_shown && _context.model().session() == _shown) return;
  [self build];
}

- (void)build {
  _shown = _context.model().session();
  [_content removeFromSuperview];
  if (_shown) {
    _sessionView = [[SJStretchSessionView alloc] initWithSession:_shown];
    _content = _sessionView;
  } else {
    _sessionView = nil;
    _content = [self library];
  }
  panelFill(self, _content);
}

- (NSView*)routineCard:(const StretchPage&)page {
  NSMutableArray<NSView*>* lines = [NSMutableArray array];
  [lines addObject:text(std::string(StretchLibrary::routineTitle), 17, NSFontWeightBold)];
  if (page.reasons.empty()) {
    [lines addObject:text(std::string(StretchLibrary::routineStock), 13, NSFontWeightRegular)];
  }
  for (const auto& reason : page.reasons)
    [lines addObject:text(reason, 13, NSFontWeightRegular)];
  std::string names;
  for (const auto& stretch : page.routine)
    names += (names.empty() ? "" : " · ") + stretch.name;
  [lines addObject:text(names + " · " + StretchPage::length(page.routineSeconds()), 12,
                        NSFontWeightRegular, NSColor.secondaryLabelColor)];
  AppDelegate* core = _context.core;
  [lines addObject:panelButton(@"추천 루틴 시작", ^{
           core->startRoutine();
         })];
  return panelCard(lines);
}

- (NSView*)stretchRow:(const Stretch&)stretch {
  PanelModel* model = &_context.model();
  const Stretch one = stretch;
  NSButton* start = panelButton(@"시작", ^{
    model->start({one});
  });
  NSStackView* words = panelColumn(
      @[
        text(stretch.name, 14, NSFontWeightSemibold),
        text(stretch.summary, 12, NSFontWeightRegular, NSColor.secondaryLabelColor)
      ],
      2);
  return panelRow(
      @[
        words,
        text(StretchPage::length(stretch.totalSeconds()), 12, NSFontWeightRegular,
             NSColor.secondaryLabelColor),
        start
      ],
      12);
}

- (NSView*)library {
  const StretchPage page = StretchPage::of(_context.model().log().issueWeights());
  NSMutableArray<NSView*>* parts = [NSMutableArray arrayWithObject:[self routineCard:page]];
  for (const auto& area : page.areas) {
    NSMutableArray<NSView*>* rows = [NSMutableArray
        arrayWithObject:text(std::string(areaName(area.area)), 15, NSFontWeightBold)];
    for (const auto& stretch : area.stretches)
      [rows addObject:[self stretchRow:stretch]];
    [parts addObject:panelCard(rows)];
  }
  NSStackView* column = panelColumn(parts, 14);
  for (NSView* part in parts)
    [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  return SJPageFrame(SJString(std::string(pageTitle(PanelPage::stretch))),
                     SJString(std::string(pageCaption(PanelPage::stretch))), column);
}

@end

NSView<SJPanelPage>* SJMakeStretchPage(const SJPanelContext& context) {
  return [[SJStretchPage alloc] initWithContext:context];
}
