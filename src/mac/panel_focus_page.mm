#import "mac/panel_pages.h"

#include <optional>
#include <vector>

#include "app/focus_page.h"
#import "mac/mate_figure_view.h"
#import "mac/pill_views.h"

using namespace sodam;

namespace {

constexpr NSTimeInterval reloadDelaySeconds = 0.15;
constexpr int goalMostMinutes = 600;

NSArray<NSString*>* colorNames() {
  return @[ @"초록", @"빨강", @"주황", @"파랑", @"코랄", @"회색" ];
}

NSFont* boldFont() {
  return [NSFont systemFontOfSize:NSFont.systemFontSize weight:NSFontWeightSemibold];
}

NSTextField* heading(NSString* text) {
  return panelLabel(text, boldFont(), NSColor.labelColor);
}

NSButton* checkbox(NSString* title, bool on) {
  NSButton* box = [NSButton checkboxWithTitle:title target:nil action:nil];
  box.state = on ? NSControlStateValueOn : NSControlStateValueOff;
  return box;
}

NSTextField* field(const std::string& text) {
  NSTextField* edit = [NSTextField textFieldWithString:SJString(text)];
  [edit.widthAnchor constraintGreaterThanOrEqualToConstant:220].active = YES;
  return edit;
}

std::string textOf(NSTextField* edit) {
  const char* utf8 = edit.stringValue.UTF8String;
  return utf8 ? std::string(utf8) : std::string();
}

NSView* labelled(NSString* label, NSView* control) {
  NSTextField* name = panelCaption(label);
  [name.widthAnchor constraintEqualToConstant:90].active = YES;
  return panelRow(@[ name, control ], 8);
}

}  // namespace

// The focus page: the presets to pick and edit, the running session with
// the study-room figure, the watcher's state and switch, and today's
// sessions. It follows the focus center and the watcher itself, since they
// change while the rest of the panel stands still.
@interface SJFocusPage : NSView <SJPanelPage>
@end

@implementation SJFocusPage {
  SJPanelContext _context;
  std::vector<std::pair<ChangeSignal*, ChangeSignal::Token>> _subscriptions;
  NSView* _shown;
  // The preset being edited, with its editor's controls, kept across reloads.
  std::optional<FocusPreset> _draft;
  NSView* _editor;
  NSTextField* _name;
  NSTextField* _symbol;
  NSPopUpButton* _color;
  NSPopUpButton* _mode;
  NSButton* _posture;
  NSMutableArray<NSButton*>* _habits;
  NSButton* _stretch;
  NSButton* _share;
  NSTextField* _goal;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  [self follow:context.core->focus().onUpdate];
  [self follow:context.core->watcher().onChange];
  [self reload];
  return self;
}

- (void)dealloc {
  [NSObject cancelPreviousPerformRequestsWithTarget:self];
  for (auto [signal, token] : _subscriptions)
    signal->unsubscribe(token);
}

- (void)follow:(ChangeSignal&)signal {
  __weak SJFocusPage* weakSelf = self;
  _subscriptions.emplace_back(&signal, signal.subscribe([weakSelf] { [weakSelf changed]; }));
}

// The watcher changes a few times a second at most; drawn once per burst.
- (void)changed {
  [NSObject cancelPreviousPerformRequestsWithTarget:self selector:@selector(reload) object:nil];
  [self performSelector:@selector(reload) withObject:nil afterDelay:reloadDelaySeconds];
}

- (void)reload {
  const FocusPage page = _context.core->focusPage();
  NSMutableArray<NSView*>* cards = [NSMutableArray arrayWithObject:[self presetsCard:page]];
  if (_draft && _editor) [cards addObject:_editor];
  [cards addObject:[self nowCard:page]];
  [cards addObject:[self todayCard:page]];
  NSStackView* column = panelColumn(cards, 14);
  for (NSView* card in cards)
    [card.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  [_shown removeFromSuperview];
  _shown = SJPageFrame(@"집중", @"모드와 집중 시간", column);
  panelFill(self, _shown);
}

#pragma mark Presets

- (NSView*)presetsCard:(const FocusPage&)page {
  NSMutableArray<NSView*>* rows = [NSMutableArray arrayWithObject:heading(@"모드")];
  const auto& presets = _context.core->focus().presets();
  for (std::size_t i = 0; i < page.presets.size() && i < presets.size(); ++i) {
    const FocusPage::Preset& preset = page.presets[i];
    const FocusPreset stored = presets[i];
    NSString* name = SJString(preset.name);
    NSStackView* text = panelColumn(
        @[
          panelLabel(name, boldFont(), NSColor.labelColor), panelCaption(SJString(preset.detail))
        ],
        2);
    NSMutableArray<NSView*>* row = [NSMutableArray
        arrayWithObjects:panelSymbol(SJString(preset.symbol), themeNSColor(preset.color), 20, name),
                         text, nil];
    AppDelegate* core = _context.core;
    const std::string id = preset.id;
    if (preset.active) {
      [row addObject:panelCaption(@"사용 중")];
    } else {
      [row addObject:panelButton(@"고르기", ^{
             core->pickMode(id);
           })];
    }
    __weak SJFocusPage* weakSelf = self;
    [row addObject:panelButton(@"편집", ^{
           [weakSelf edit:stored];
         })];
    [rows addObject:panelRow(row, 10)];
  }
  __weak SJFocusPage* weakSelf = self;
  const std::size_t count = presets.size();
  [rows addObject:panelButton(@"새 모드 추가", ^{
          [weakSelf edit:presetDraft(count)];
        })];
  return panelCard(rows);
}

- (void)edit:(const FocusPreset&)preset {
  _draft = preset;
  _editor = [self editorOf:preset];
  [self reload];
}

// Every field of a preset; the habits limited to those a preset may choose.
- (NSView*)editorOf:(const FocusPreset&)preset {
  _name = field(preset.name);
  _symbol = field(preset.symbol);
  _color = [[NSPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
  [_color addItemsWithTitles:colorNames()];
  [_color
      selectItemAtIndex:static_cast<NSInteger>((preset.tint % static_cast<int>(colorNames().count) +
                                                static_cast<int>(colorNames().count)) %
                                               static_cast<int>(colorNames().count))];
  _mode = [[NSPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
  for (UseMode mode : {UseMode(UseMode::laptop), UseMode(UseMode::watch)})
    [_mode addItemWithTitle:SJString(std::string(mode.shortTitle()))];
  [_mode selectItemAtIndex:preset.mode == UseMode::watch ? 1 : 0];
  _posture = checkbox(@"자세 살피기", preset.posture);
  _habits = [NSMutableArray array];
  for (WatchHabit habit : WatchHabit::pickable())
    [_habits addObject:checkbox(SJString(std::string(habit.title())), preset.watches(habit))];
  _stretch = checkbox(@"스트레칭 권하기", preset.stretch);
  _share = checkbox(@"모임에 상태 알리기", preset.share);
  _goal = field(std::to_string(preset.goal));
  NSNumberFormatter* minutes = [[NSNumberFormatter alloc] init];
  minutes.allowsFloats = NO;
  minutes.minimum = @0;
  minutes.maximum = @(goalMostMinutes);
  _goal.formatter = minutes;

  __weak SJFocusPage* weakSelf = self;
  NSStackView* habits = panelColumn(_habits, 4);
  NSStackView* buttons = panelRow(
      @[
        panelButton(@"저장",
                    ^{
                      [weakSelf saveDraft];
                    }),
        panelButton(@"취소",
                    ^{
                      [weakSelf cancelDraft];
                    })
      ],
      8);
  return panelCard(@[
    heading(@"모드 편집"), labelled(@"이름", _name), labelled(@"기호", _symbol),
    labelled(@"색", _color), labelled(@"방식", _mode), _posture, labelled(@"살필 습관", habits),
    _stretch, _share, labelled(@"목표(분)", _goal), buttons
  ]);
}

- (void)saveDraft {
  if (!_draft) return;
  FocusPreset preset = *_draft;
  preset.name = textOf(_name);
  if (preset.name.empty()) preset.name = _draft->name;
  preset.symbol = textOf(_symbol);
  if (preset.symbol.empty()) preset.symbol = _draft->symbol;
  preset.tint = static_cast<int>(_color.indexOfSelectedItem);
  preset.mode = _mode.indexOfSelectedItem == 1 ? UseMode::watch : UseMode::laptop;
  preset.posture = _posture.state == NSControlStateValueOn;
  preset.habits.clear();
  const auto& pickable = WatchHabit::pickable();
  for (std::size_t i = 0; i < pickable.size() && i < _habits.count; ++i) {
    if (_habits[i].state == NSControlStateValueOn) preset.habits.push_back(pickable[i]);
  }
  preset.stretch = _stretch.state == NSControlStateValueOn;
  preset.share = _share.state == NSControlStateValueOn;
  preset.goal = std::max(0, std::min(goalMostMinutes, static_cast<int>(_goal.integerValue)));
  _draft.reset();
  _editor = nil;
  _context.core->focus().save(preset);
  [self reload];
}

- (void)cancelDraft {
  _draft.reset();
  _editor = nil;
  [self reload];
}

#pragma mark Now and today

- (NSView*)nowCard:(const FocusPage&)page {
  NSMutableArray<NSView*>* rows = [NSMutableArray arrayWithObject:heading(@"지금")];
  AppDelegate* core = _context.core;
  if (page.watchMode) {
    const bool on = page.watcher.phase != WatchEngine::Phase::off;
    NSString* line = SJString("나의 집중코치 · " + page.watcher.status +
                              (page.watcher.note ? " · " + *page.watcher.note : ""));
    [rows
        addObject:panelRow(
                      @[
                        panelCaption(line), panelButton(on ? @"집중코치 끝내기" : @"집중코치 시작…",
                                                        ^{
                                                          core->perform(MenuAction::toggleWatch);
                                                        })
                      ],
                      10)];
  }
  if (!page.session) {
    [rows addObject:panelCaption(@"앉으면 집중 시간을 저절로 재요. 자리를 비우면 멈추고, 3분 "
                                 @"안에 돌아오면 이어서 재요")];
    return panelCard(rows);
  }
  const FocusPage::Session& session = *page.session;
  NSMutableArray<NSView*>* facts = [NSMutableArray array];
  [facts addObject:panelLabel(SJString("집중 " + session.focused),
                              [NSFont systemFontOfSize:24 weight:NSFontWeightBold],
                              NSColor.labelColor)];
  [facts addObject:panelCaption(
                       SJString(session.started + " · " + std::string(session.state.title())))];
  if (session.goalShare) {
    NSProgressIndicator* bar = [[NSProgressIndicator alloc] init];
    bar.indeterminate = NO;
    bar.minValue = 0;
    bar.maxValue = 1;
    bar.doubleValue = *session.goalShare;
    [bar.widthAnchor constraintEqualToConstant:220].active = YES;
    [facts addObject:bar];
    [facts addObject:panelCaption(SJString(*session.goal))];
  }
  for (const auto& count : session.habits)
    [facts
        addObject:panelCaption(SJString(count.title + " " + std::to_string(count.count) + "번"))];
  SJMateFigureView* figure = [[SJMateFigureView alloc] initWithState:session.state];
  [rows addObject:panelRow(@[ figure, panelColumn(facts, 6) ], 18)];
  return panelCard(rows);
}

- (NSView*)todayCard:(const FocusPage&)page {
  NSMutableArray<NSView*>* rows = [NSMutableArray
      arrayWithObjects:heading(@"오늘"), panelCaption(SJString(page.todayTotal)), nil];
  for (const auto& record : page.records) {
    std::string line = record.time + " · " + record.preset + " · " + record.focused;
    if (!record.habits.empty()) line += " · " + record.habits;
    [rows addObject:panelLabel(SJString(line), [NSFont systemFontOfSize:NSFont.systemFontSize],
                               NSColor.labelColor)];
  }
  std::string habits;
  for (const auto& count : page.todayHabits)
    habits +=
        (habits.empty() ? "" : " · ") + count.title + " " + std::to_string(count.count) + "번";
  [rows
      addObject:panelCaption(SJString("습관: " + (habits.empty() ? std::string("없음") : habits)))];
  return panelCard(rows);
}

@end

NSView<SJPanelPage>* SJMakeFocusPage(const SJPanelContext& context) {
  return [[SJFocusPage alloc] initWithContext:context];
}
