#include "mac/dorani_page_view.h"

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <utility>

#include "mac/companion_art.h"
#include "mac/companion_geometry.h"
#include "mac/guide_views.h"
#include "mac/pill_arts.h"
#include "mac/pill_geometry.h"
#include "support/text.h"

using sodam::PillEyes;
using sodam::PillLook;

namespace {

// The character at pill size, with room above for what it wears, drawn this
// many times larger.
constexpr CGSize bodySize{94, 44};
constexpr CGFloat headRoom = 20;
constexpr CGFloat enlarge = 2.4;
constexpr CGFloat pokedScale = 0.86;

// The rows of the look editor, by the popup's tag.
enum LookRow : NSInteger { earsRow, trimRow, bodyRow, eyesRow, faceRow, patternRow };

NSString* choiceTitle(const sodam::DoraniPage::Choice& choice) {
  std::string title(choice.title);
  if (!choice.open) title += sodam::format(" · 레벨 %d", choice.level);
  return SJString(title);
}

NSPopUpButton* lookPopUp(LookRow row, id target, SEL action) {
  NSPopUpButton* popUp = [[NSPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
  popUp.autoenablesItems = NO;
  popUp.tag = row;
  popUp.target = target;
  popUp.action = action;
  return popUp;
}

// The options in raw order, those the level has not opened disabled, the one
// worn now selected.
template <class Option>
void fillPopUp(NSPopUpButton* popUp, const sodam::DoraniPage& page) {
  [popUp removeAllItems];
  for (const auto& choice : page.choices<Option>()) {
    [popUp addItemWithTitle:choiceTitle(choice)];
    NSMenuItem* item = popUp.lastItem;
    item.tag = choice.raw;
    item.enabled = choice.open;
    if (choice.chosen) [popUp selectItem:item];
  }
}

NSTextField* label(CGFloat size, NSFontWeight weight) {
  NSTextField* field = [NSTextField wrappingLabelWithString:@""];
  field.font = [NSFont systemFontOfSize:size weight:weight];
  return field;
}

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

@implementation SJDoraniPageView {
  sodam::AppDelegate* _core;
  sodam::Signal<>::Token _pageToken;
  sodam::Signal<>::Token _doraniToken;
  SJCompanionView* _companion;
  NSTextField* _level;
  NSProgressIndicator* _progress;
  NSTextField* _next;
  NSTextField* _points;
  NSTextField* _line;
  NSTextField* _today;
  NSArray<NSPopUpButton*>* _looks;
  // What the editor was last filled for, so a turning line leaves an open
  // menu alone.
  std::optional<std::pair<int, PillLook>> _filledFor;
}

- (instancetype)initWithCore:(sodam::AppDelegate&)core {
  self = [super initWithFrame:NSZeroRect];
  if (self) {
    _core = &core;
    [self build];
    __weak SJDoraniPageView* weakSelf = self;
    auto reload = [weakSelf] { [weakSelf reload]; };
    _pageToken = core.doraniPage().onChange.subscribe(reload);
    _doraniToken = core.dorani().onChange.subscribe(reload);
    [self reload];
  }
  return self;
}

- (void)dealloc {
  _core->doraniPage().onChange.unsubscribe(_pageToken);
  _core->dorani().onChange.unsubscribe(_doraniToken);
}

- (void)build {
  sodam::AppDelegate* core = _core;
  _companion = [[SJCompanionView alloc] initWithFrame:NSZeroRect];
  _companion.onPoke = ^{
    core->doraniPage().poke();
  };
  _companion.gaze = [core] {
    return core->buddySight().current(sodam::Date{CFAbsoluteTimeGetCurrent()});
  };
  _level = label(20, NSFontWeightBold);
  _progress = [[NSProgressIndicator alloc] initWithFrame:NSZeroRect];
  _progress.indeterminate = NO;
  _progress.minValue = 0;
  _progress.maxValue = 1;
  _next = label(12, NSFontWeightRegular);
  _next.textColor = NSColor.secondaryLabelColor;
  _points = label(13, NSFontWeightMedium);
  NSStackView* info = [NSStackView stackViewWithViews:@[ _level, _progress, _next, _points ]];
  info.orientation = NSUserInterfaceLayoutOrientationVertical;
  info.alignment = NSLayoutAttributeLeading;
  NSStackView* header = [NSStackView stackViewWithViews:@[ _companion, info ]];
  header.alignment = NSLayoutAttributeCenterY;

  _line = label(15, NSFontWeightSemibold);
  _today = label(12, NSFontWeightRegular);
  _today.textColor = NSColor.secondaryLabelColor;
  NSGridView* editor = [self lookEditor];

  NSStackView* page = [NSStackView stackViewWithViews:@[ header, _line, _today, editor ]];
  page.orientation = NSUserInterfaceLayoutOrientationVertical;
  page.alignment = NSLayoutAttributeLeading;
  page.spacing = 16;
  page.edgeInsets = NSEdgeInsetsMake(24, 24, 24, 24);
  page.translatesAutoresizingMaskIntoConstraints = NO;
  [self addSubview:page];
  [NSLayoutConstraint activateConstraints:@[
    [page.topAnchor constraintEqualToAnchor:self.topAnchor],
    [page.leadingAnchor constraintEqualToAnchor:self.leadingAnchor],
    [page.trailingAnchor constraintLessThanOrEqualToAnchor:self.trailingAnchor],
    [_progress.widthAnchor constraintEqualToConstant:220],
    [_line.widthAnchor constraintLessThanOrEqualToConstant:460],
  ]];
}

- (NSGridView*)lookEditor {
  const SEL chosen = @selector(lookChosen:);
  _looks = @[
    lookPopUp(earsRow, self, chosen), lookPopUp(trimRow, self, chosen),
    lookPopUp(bodyRow, self, chosen), lookPopUp(eyesRow, self, chosen),
    lookPopUp(faceRow, self, chosen), lookPopUp(patternRow, self, chosen)
  ];
  NSArray<NSString*>* names = @[ @"귀", @"머리 장식", @"몸 색", @"눈 색", @"얼굴", @"무늬" ];
  NSMutableArray<NSArray<NSView*>*>* rows = [NSMutableArray array];
  for (NSUInteger i = 0; i < _looks.count; ++i)
    [rows addObject:@[ [NSTextField labelWithString:names[i]], _looks[i] ]];
  NSGridView* grid = [NSGridView gridViewWithViews:rows];
  grid.rowSpacing = 8;
  grid.columnSpacing = 12;
  return grid;
}

- (void)fillLooks {
  const sodam::DoraniPage& page = _core->doraniPage();
  const std::pair<int, PillLook> state{_core->dorani().level(), page.look()};
  if (_filledFor == state) return;
  _filledFor = state;
  fillPopUp<sodam::PillEars>(_looks[earsRow], page);
  fillPopUp<sodam::PillTrim>(_looks[trimRow], page);
  fillPopUp<sodam::PillBody>(_looks[bodyRow], page);
  fillPopUp<sodam::PillEyeColor>(_looks[eyesRow], page);
  fillPopUp<sodam::PillFace>(_looks[faceRow], page);
  fillPopUp<sodam::PillPattern>(_looks[patternRow], page);
}

// A locked option can't be picked: its item is disabled, and the page model
// refuses it all the same.
- (void)lookChosen:(NSPopUpButton*)sender {
  sodam::DoraniPage& page = _core->doraniPage();
  const int raw = static_cast<int>(sender.selectedItem.tag);
  switch (static_cast<LookRow>(sender.tag)) {
    case earsRow:
      page.choose(sodam::lookFrom<sodam::PillEars>(raw));
      break;
    case trimRow:
      page.choose(sodam::lookFrom<sodam::PillTrim>(raw));
      break;
    case bodyRow:
      page.choose(sodam::lookFrom<sodam::PillBody>(raw));
      break;
    case eyesRow:
      page.choose(sodam::lookFrom<sodam::PillEyeColor>(raw));
      break;
    case faceRow:
      page.choose(sodam::lookFrom<sodam::PillFace>(raw));
      break;
    case patternRow:
      page.choose(sodam::lookFrom<sodam::PillPattern>(raw));
      break;
  }
  // Filled again from the store, so a refused choice springs back.
  _filledFor.reset();
  [self fillLooks];
  _core->refresh();  // the status icon wears the ears
}

- (void)reload {
  const sodam::Dorani& dorani = _core->dorani();
  sodam::DoraniPage& page = _core->doraniPage();
  const sodam::Dorani::Line line = page.shown();
  [_companion showLook:page.look() mood:line.mood];
  [self fillLooks];
  _level.stringValue =
      SJString(sodam::format("레벨 %d · %s", dorani.level(), std::string(dorani.title()).c_str()));
  _progress.doubleValue = dorani.progress();
  if (const auto next = dorani.next()) {
    _next.stringValue = SJString(sodam::format("'%s'까지 %d점", std::string(next->title).c_str(),
                                               next->points - dorani.total()));
  } else {
    _next.stringValue = @"가장 높은 단계예요";
  }
  _points.stringValue = SJString(sodam::format("오늘 %d점 · 모두 %d점 · 함께한 지 %d일째",
                                               dorani.today(), dorani.total(), dorani.days()));
  _line.stringValue = SJString(line.text);
  const sodam::Dorani::Today today = dorani.todayStats();
  _today.stringValue =
      SJString(sodam::format("오늘 확인 %d번 · 바른 자세 %d번 · 바로잡음 %d번 · 쉼 %d번",
                             today.checks, today.good, today.corrected, today.rests));
}

// In front: the lines start turning; gone: they stop.
- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  if (self.window) {
    _core->doraniPage().appear();
  } else {
    _core->doraniPage().disappear();
  }
}

@end
