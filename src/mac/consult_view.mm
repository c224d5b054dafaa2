#import "mac/consult_view.h"

#include <cmath>
#include <numbers>

#include "app/doctor_page.h"
#include "coach/stretch_library.h"
#import "mac/guide_views.h"
#import "mac/panel_views.h"
#import "mac/pill_views.h"

using namespace sodam;

namespace {

using Step = DoctorChat::Step;
using Change = DoctorChat::Change;

constexpr CGFloat tileWidth = 150;
constexpr CGFloat slide = 40;

NSTextField* text(const std::string& line, CGFloat size, NSFontWeight weight,
                  NSColor* color = NSColor.labelColor) {
  return panelLabel(SJString(line), [NSFont systemFontOfSize:size weight:weight], color);
}

// A spring of the designed response and damping fraction, for a layer.
CASpringAnimation* spring(NSString* keyPath, DoctorChat::Spring shape, id from, id to) {
  CASpringAnimation* animation = [CASpringAnimation animationWithKeyPath:keyPath];
  const double omega = 2 * std::numbers::pi / shape.response;
  animation.mass = 1;
  animation.stiffness = omega * omega;
  animation.damping = 2 * shape.dampingFraction * omega;
  animation.fromValue = from;
  animation.toValue = to;
  animation.duration = animation.settlingDuration;
  return animation;
}

// The view comes in from the side, or from below, on its spring.
void springIn(NSView* view, DoctorChat::Spring shape, CGFloat dx, CGFloat dy) {
  view.wantsLayer = YES;
  if (NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion) return;
  [view.layer addAnimation:spring(@"transform.translation.x", shape, @(dx), @0) forKey:@"slideX"];
  [view.layer addAnimation:spring(@"transform.translation.y", shape, @(dy), @0) forKey:@"slideY"];
  [view.layer addAnimation:spring(@"opacity", shape, @0, @1) forKey:@"fade"];
}

NSView* group(const char* title, const std::vector<std::string>& lines) {
  NSMutableArray<NSView*>* rows =
      [NSMutableArray arrayWithObject:text(title, 14, NSFontWeightSemibold)];
  for (const auto& line : lines)
    [rows addObject:text("· " + line, 13, NSFontWeightRegular)];
  return panelCard(rows);
}

}  // namespace

@interface SJConsultView () <NSTextFieldDelegate>
@end

@implementation SJConsultView {
  PanelModel* _model;
  Signal<Change>::Token _token;
  NSTextField* _trail;
  NSButton* _back;
  NSButton* _size;
  NSView* _stepHost;
  NSView* _shown;
  Step _shownStep;
  NSStackView* _messages;
  NSTextField* _question;
  NSTextField* _thinking;
}

- (instancetype)initWithModel:(PanelModel&)model {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _model = &model;
  _shownStep = model.chat().step();
  __weak SJConsultView* weakSelf = self;
  _token =
      model.chat().onChange.subscribe([weakSelf](Change change) { [weakSelf changed:change]; });
  [self build];
  return self;
}

- (void)dealloc {
  _model->chat().onChange.unsubscribe(_token);
}

- (DoctorChat&)chat {
  return _model->chat();
}

- (void)build {
  __weak SJConsultView* weakSelf = self;
  _trail = text("", 12, NSFontWeightRegular, NSColor.secondaryLabelColor);
  _back = panelButton(@"이전", ^{
    [weakSelf goBack];
  });
  _size = panelButton(@"", ^{
    [weakSelf toggleSize];
  });
  NSButton* close = panelButton(@"닫기", ^{
    [weakSelf closeConsult];
  });
  NSStackView* heading = panelColumn(
      @[
        text("상담하기", 20, NSFontWeightBold),
        text("내 자세 기록과 이어서 살펴봐요", 13, NSFontWeightRegular,
             NSColor.secondaryLabelColor),
        _trail
      ],
      2);
  NSView* spacer = [[NSView alloc] init];
  [spacer setContentHuggingPriority:1 forOrientation:NSLayoutConstraintOrientationHorizontal];
  NSStackView* top = panelRow(@[ heading, spacer, _back, _size, close ], 8);
  top.alignment = NSLayoutAttributeTop;
  _stepHost = [[NSView alloc] init];
  NSStackView* column = panelColumn(@[ top, _stepHost ], 16);
  [top.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  [_stepHost.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  column.edgeInsets = NSEdgeInsetsMake(24, 28, 24, 28);
  panelFill(self, panelScroller(column));
  [self showStep:NO];
}

- (void)changed:(Change)change {
  switch (change) {
    case Change::step:
      [self showStep:YES];
      break;
    case Change::messages:
      [self showMessages:YES];
      break;
    case Change::thinking:
      [self showThinking];
      break;
    case Change::draft:
      if (_question && ![_question.stringValue isEqualToString:SJString([self chat].draft())]) {
        _question.stringValue = SJString([self chat].draft());
      }
      break;
  }
}

// The buttons' actions; their blocks hold the view weakly and message it,
// so that a view already gone does nothing.
- (void)goBack {
  [self chat].back();
}
- (void)restart {
  [self chat].restart();
}
- (void)chooseArea:(Consult::Area)area {
  [self chat].choose(area);
}
- (void)chooseSide:(Consult::Side)side {
  [self chat].choose(side);
}
- (void)chooseFeeling:(Consult::Feeling)feeling {
  [self chat].choose(feeling);
}
- (void)chooseWhen:(Consult::When)when {
  [self chat].choose(when);
}

- (void)refreshSize {
  _size.title = _model->consultExpanded() ? @"작게 보기" : @"크게 보기";
}

- (void)toggleSize {
  _model->expandConsult(!_model->consultExpanded());
}

- (void)closeConsult {
  _model->closeConsult();
}

// The header's trail and buttons, and the step's page on its spring: forward
// from the right, back from the left.
- (void)showStep:(BOOL)animated {
  DoctorChat& chat = [self chat];
  std::string trail;
  for (const auto& value : chat.trail())
    trail += (trail.empty() ? "" : " · ") + value;
  _trail.stringValue = SJString(trail);
  _trail.hidden = trail.empty();
  const auto steps = chat.steps();
  _back.hidden = chat.step() == Step::result || chat.step() == steps.front();
  [self refreshSize];
  const bool forward = static_cast<int>(chat.step()) >= static_cast<int>(_shownStep);
  _shownStep = chat.step();
  [_shown removeFromSuperview];
  _shown = chat.step() == Step::result ? [self result] : [self question];
  panelFill(_stepHost, _shown);
  if (animated) springIn(_shown, DoctorChat::stepSpring, forward ? slide : -slide, 0);
}

- (NSView*)question {
  DoctorChat& chat = [self chat];
  const Step step = chat.step();
  NSMutableArray<NSView*>* tiles = [NSMutableArray array];
  __weak SJConsultView* weakSelf = self;
  auto tile = [&](const std::string& title, const std::string& detail, void (^pick)(void)) {
    NSButton* button = panelButton(SJString(title), pick);
    button.bezelStyle = NSBezelStyleRegularSquare;
    [button.widthAnchor constraintEqualToConstant:tileWidth].active = YES;
    if (detail.empty()) {
      [tiles addObject:button];
      return;
    }
    NSTextField* small = text(detail, 11, NSFontWeightRegular, NSColor.secondaryLabelColor);
    [tiles addObject:panelColumn(@[ button, small ], 2)];
  };
  switch (step) {
    case Step::area:
      for (Consult::Area area : Consult::areas())
        tile(std::string(Consult::raw(area)), "", ^{
          [weakSelf chooseArea:area];
        });
      break;
    case Step::side:
      for (Consult::Side side : Consult::sides())
        tile(std::string(Consult::raw(side)), "", ^{
          [weakSelf chooseSide:side];
        });
      break;
    case Step::feeling:
      for (Consult::Feeling feeling : Consult::feelings())
        tile(std::string(Consult::raw(feeling)), std::string(Consult::detail(feeling)), ^{
          [weakSelf chooseFeeling:feeling];
        });
      break;
    case Step::when:
      for (Consult::When when : Consult::whens())
        tile(std::string(Consult::raw(when)), "", ^{
          [weakSelf chooseWhen:when];
        });
      break;
    case Step::result:
      break;
  }
  NSGridView* grid = [NSGridView gridViewWithNumberOfColumns:0 rows:0];
  grid.rowSpacing = 10;
  grid.columnSpacing = 10;
  for (NSUInteger i = 0; i < tiles.count; i += 2) {
    NSArray<NSView*>* row = i + 1 < tiles.count ? @[ tiles[i], tiles[i + 1] ]
                                                : @[ tiles[i], [NSGridCell emptyContentView] ];
    [grid addRowWithViews:row];
  }
  return panelColumn(
      @[
        text(chat.prompt(step), 18, NSFontWeightSemibold),
        text(std::string(DoctorChat::subline(step)), 13, NSFontWeightRegular,
             NSColor.secondaryLabelColor),
        grid
      ],
      10);
}

- (NSView*)result {
  DoctorChat& chat = [self chat];
  const Consult::Answer& answer = *chat.answer();
  NSMutableArray<NSView*>* parts = [NSMutableArray array];
  if (!answer.causes.empty()) [parts addObject:group("가능한 원인", answer.causes)];
  if (!answer.stretches.empty()) [parts addObject:[self stretchCard:answer.stretches]];
  if (!answer.tips.empty()) [parts addObject:group("생활에서", answer.tips)];
  if (!answer.warnings.empty()) [parts addObject:group("이럴 땐 병원에", answer.warnings)];
  if (chat.canTalk()) [parts addObject:[self talk]];
  [parts
      addObject:text("진단이 아니라 자세와 근육에 대한 안내예요. 통증이 2주 넘게 이어지면 진료를 "
                     "받아 보세요.",
                     11, NSFontWeightRegular, NSColor.secondaryLabelColor)];
  __weak SJConsultView* weakSelf = self;
  [parts addObject:panelButton(@"다시 상담하기", ^{
           [weakSelf restart];
         })];
  NSStackView* column = panelColumn(parts, 12);
  for (NSView* part in parts)
    if ([part isKindOfClass:NSBox.class])
      [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  return column;
}

- (NSView*)stretchCard:(const std::vector<std::string>&)ids {
  NSMutableArray<NSView*>* rows =
      [NSMutableArray arrayWithObject:text("지금 해 볼 스트레칭", 14, NSFontWeightSemibold)];
  for (const auto& id : ids) {
    if (const Stretch* stretch = StretchLibrary::find(id)) {
      [rows addObject:panelRow(
                          @[
                            text(stretch->name, 13, NSFontWeightRegular),
                            text(DoctorPage::stretchTime(*stretch), 12, NSFontWeightRegular,
                                 NSColor.secondaryLabelColor)
                          ],
                          8)];
    }
  }
  PanelModel* model = _model;
  const std::vector<std::string> all = ids;
  [rows addObject:panelButton(@"모두 이어서 하기", ^{
          model->startStretches(all);
        })];
  return panelCard(rows);
}

// The chat under the answer: the messages, the field and the word while
// the model thinks.
- (NSView*)talk {
  _messages = panelColumn(@[], 8);
  _question = [NSTextField textFieldWithString:SJString([self chat].draft())];
  _question.placeholderString = @"더 궁금한 걸 물어보세요";
  _question.delegate = self;
  _question.target = self;
  _question.action = @selector(send:);
  _thinking = text(std::string(DoctorChat::thinkingLine), 12, NSFontWeightRegular,
                   NSColor.secondaryLabelColor);
  NSView* card = panelCard(@[ _messages, _thinking, _question ]);
  [_question.widthAnchor constraintEqualToAnchor:card.widthAnchor constant:-36].active = YES;
  [self showMessages:NO];
  [self showThinking];
  return card;
}

- (void)showMessages:(BOOL)animated {
  if (!_messages) return;
  const auto& messages = [self chat].messages();
  while (_messages.arrangedSubviews.count > messages.size())
    [_messages.arrangedSubviews.lastObject removeFromSuperview];
  for (std::size_t i = _messages.arrangedSubviews.count; i < messages.size(); ++i) {
    const auto& message = messages[i];
    const bool mine = message.role == DoctorChat::Message::Role::me;
    NSTextField* bubble = text(message.text, 13, NSFontWeightRegular,
                               mine ? NSColor.labelColor : NSColor.secondaryLabelColor);
    bubble.alignment = mine ? NSTextAlignmentRight : NSTextAlignmentLeft;
    [_messages addArrangedSubview:bubble];
    [bubble.widthAnchor constraintEqualToAnchor:_messages.widthAnchor].active = YES;
    if (animated) springIn(bubble, DoctorChat::messageSpring, 0, -12);
  }
}

- (void)showThinking {
  if (!_thinking) return;
  _thinking.hidden = ![self chat].thinking();
}

- (void)controlTextDidChange:(NSNotification*)note {
  if (note.object == _question) [self chat].setDraft(_question.stringValue.UTF8String);
}

- (void)send:(id)sender {
  [self chat].setDraft(_question.stringValue.UTF8String);
  [self chat].ask();
}

@end
