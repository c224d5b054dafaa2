#import "mac/panel_pages.h"

#include <optional>
#include <string>
#include <utility>

#include "app/dorani_page.h"
#import "mac/companion_view.h"
#include "support/text.h"

using namespace sodam;

namespace {

// The rows of the look editor, by the popup's tag.
enum LookRow : NSInteger { earsRow, trimRow, bodyRow, eyesRow, faceRow, patternRow };

NSString* choiceTitle(const DoraniPage::Choice& choice) {
  std::string title(choice.title);
  if (!choice.open) title += format(" · 레벨 %d", choice.level);
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
void fillPopUp(NSPopUpButton* popUp, const DoraniPage& page) {
  [popUp removeAllItems];
  for (const auto& choice : page.choices<Option>()) {
    [popUp addItemWithTitle:choiceTitle(choice)];
    NSMenuItem* item = popUp.lastItem;
    item.tag = choice.raw;
    item.enabled = choice.open;
    if (choice.chosen) [popUp selectItem:item];
  }
}

NSTextField* label(CGFloat size, NSFontWeight weight, NSColor* color) {
  return panelLabel(@"", [NSFont systemFontOfSize:size weight:weight], color);
}

}  // namespace

// The companion's page: the character, its level, title and the way to the
// next step, today's points, the line it says now (a tap pokes it), and the
// look editor with the locked options shown with their level. In front, its
// lines turn and its eyes follow the user.
@interface SJDoraniPage : NSView <SJPanelPage>
@end

@implementation SJDoraniPage {
  SJPanelContext _context;
  std::vector<std::pair<ChangeSignal*, ChangeSignal::Token>> _subscriptions;
  id _activation;
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

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  panelFill(self,
            SJPageFrame(SJString(std::string(pageTitle(PanelPage::dorani))),
                        SJString(std::string(pageCaption(PanelPage::dorani))), [self content]));
  __weak SJDoraniPage* weakSelf = self;
  for (ChangeSignal* signal :
       {&context.core->doraniPage().onChange, &context.core->dorani().onChange})
    _subscriptions.emplace_back(signal, signal->subscribe([weakSelf] { [weakSelf reload]; }));
  // Back from another application, the eyes follow again.
  _activation = [NSNotificationCenter.defaultCenter
      addObserverForName:NSApplicationDidBecomeActiveNotification
                  object:nil
                   queue:NSOperationQueue.mainQueue
              usingBlock:^(NSNotification*) {
                [weakSelf follow];
              }];
  [self reload];
  return self;
}

- (void)dealloc {
  for (auto [signal, token] : _subscriptions)
    signal->unsubscribe(token);
  [NSNotificationCenter.defaultCenter removeObserver:_activation];
}

- (NSView*)content {
  AppDelegate* core = _context.core;
  _companion = [[SJCompanionView alloc] initWithFrame:NSZeroRect];
  _companion.onPoke = ^{
    core->doraniPage().poke();
  };
  _companion.gaze = [core] { return core->buddySight().current(Date{CFAbsoluteTimeGetCurrent()}); };
  _companion.accessibilityLabel = @"도란이";
  _level = label(20, NSFontWeightBold, NSColor.labelColor);
  _progress = [[NSProgressIndicator alloc] initWithFrame:NSZeroRect];
  _progress.indeterminate = NO;
  _progress.minValue = 0;
  _progress.maxValue = 1;
  _next = label(NSFont.smallSystemFontSize, NSFontWeightRegular, NSColor.secondaryLabelColor);
  _points = label(NSFont.systemFontSize, NSFontWeightMedium, NSColor.labelColor);
  NSStackView* info = panelColumn(@[ _level, _progress, _next, _points ], 6);
  NSStackView* header = panelRow(@[ _companion, info ], 16);
  _line = label(15, NSFontWeightSemibold, NSColor.labelColor);
  _today = panelCaption(@"");
  NSView* look = panelCard(@[
    panelLabel(@"꾸미기",
               [NSFont systemFontOfSize:NSFont.systemFontSize weight:NSFontWeightSemibold],
               NSColor.labelColor),
    [self lookEditor]
  ]);
  [_progress.widthAnchor constraintEqualToConstant:240].active = YES;
  return panelColumn(@[ header, panelCard(@[ _line, _today ]), look ], 16);
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
  const DoraniPage& page = _context.core->doraniPage();
  const std::pair<int, PillLook> state{_context.core->dorani().level(), page.look()};
  if (_filledFor == state) return;
  _filledFor = state;
  fillPopUp<PillEars>(_looks[earsRow], page);
  fillPopUp<PillTrim>(_looks[trimRow], page);
  fillPopUp<PillBody>(_looks[bodyRow], page);
  fillPopUp<PillEyeColor>(_looks[eyesRow], page);
  fillPopUp<PillFace>(_looks[faceRow], page);
  fillPopUp<PillPattern>(_looks[patternRow], page);
}

// A locked option can't be picked: its item is disabled, and the page model
// refuses it all the same.
- (void)lookChosen:(NSPopUpButton*)sender {
  DoraniPage& page = _context.core->doraniPage();
  const int raw = static_cast<int>(sender.selectedItem.tag);
  switch (static_cast<LookRow>(sender.tag)) {
    case earsRow:
      page.choose(lookFrom<PillEars>(raw));
      break;
    case trimRow:
      page.choose(lookFrom<PillTrim>(raw));
      break;
    case bodyRow:
      page.choose(lookFrom<PillBody>(raw));
      break;
    case eyesRow:
      page.choose(lookFrom<PillEyeColor>(raw));
      break;
    case faceRow:
      page.choose(lookFrom<PillFace>(raw));
      break;
    case patternRow:
      page.choose(lookFrom<PillPattern>(raw));
      break;
  }
  // Filled again from the store, so a refused choice springs back.
  _filledFor.reset();
  [self fillLooks];
  _context.core->refresh();  // the status icon wears the ears
}

- (void)reload {
  const Dorani& dorani = _context.core->dorani();
  const DoraniPage& page = _context.core->doraniPage();
  const Dorani::Line line = page.shown();
  [_companion showLook:page.look() mood:line.mood];
  [self fillLooks];
  _level.stringValue =
      SJString(format("레벨 %d · %s", dorani.level(), std::string(dorani.title()).c_str()));
  _progress.doubleValue = dorani.progress();
  if (const auto next = dorani.next()) {
    _next.stringValue = SJString(
        format("'%s'까지 %d점", std::string(next->title).c_str(), next->points - dorani.total()));
  } else {
    _next.stringValue = @"가장 높은 단계예요";
  }
  _points.stringValue = SJString(format("오늘 %d점 · 모두 %d점 · 함께한 지 %d일째", dorani.today(),
                                        dorani.total(), dorani.days()));
  _line.stringValue = SJString(line.text);
  const Dorani::Today today = dorani.todayStats();
  _today.stringValue = SJString(format("오늘 확인 %d번 · 바른 자세 %d번 · 바로잡음 %d번 · 쉼 %d번",
                                       today.checks, today.good, today.corrected, today.rests));
}

- (void)follow {
  if (self.window) _context.model().follow(true);
}

// In front: the lines start turning from the first and the eyes follow;
// leaving the page ends the following in the panel's model.
- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  if (self.window) {
    _context.core->doraniPage().appear();
    [self follow];
  } else {
    _context.core->doraniPage().disappear();
  }
}

@end

NSView<SJPanelPage>* SJMakeDoraniPage(const SJPanelContext& context) {
  return [[SJDoraniPage alloc] initWithContext:context];
}
