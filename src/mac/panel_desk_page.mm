// The desk page: the kind switcher, the side view of the stored setup, the
// rules it keeps and breaks with their tips, and a control for every number
// of the setup that the kind has.
#import "mac/panel_pages.h"

#include <cmath>
#include <memory>

#include "app/desk_page.h"
#import "mac/desk_side_view.h"
#import "mac/pill_views.h"
#include "support/text.h"

using namespace sodam;

namespace {

constexpr CGFloat labelWidth = 130;
constexpr CGFloat valueWidth = 70;

NSTextField* text(const std::string& line, CGFloat size, NSFontWeight weight,
                  NSColor* color = NSColor.labelColor) {
  return panelLabel(SJString(line), [NSFont systemFontOfSize:size weight:weight], color);
}

std::string valueText(const DeskField& field, double value) {
  const bool whole = std::abs(value - std::round(value)) < 0.05;
  return (whole ? format("%.0f", value) : format("%.1f", value)) + std::string(field.unit);
}

NSView* checkRow(const DeskCheck& check) {
  NSImageView* mark =
      panelSymbol(check.good() ? @"checkmark.circle.fill" : @"exclamationmark.triangle.fill",
                  check.good() ? themeNSColor(Theme::green) : themeNSColor(Theme::orange), 15,
                  check.good() ? @"잘 맞아요" : @"맞춰 볼 곳");
  NSMutableArray<NSView*>* words = [NSMutableArray
      arrayWithObject:text(std::string(DeskCheck::ruleName(check.rule)) + " · " + check.line, 13,
                           NSFontWeightSemibold)];
  if (!check.tip.empty()) {
    [words addObject:text(check.tip, 12, NSFontWeightRegular, NSColor.secondaryLabelColor)];
  }
  NSStackView* row = panelRow(@[ mark, panelColumn(words, 2) ], 8);
  row.alignment = NSLayoutAttributeTop;
  return row;
}

}  // namespace

// A slider that tells a block where it moved.
@interface SJBlockSlider : NSSlider
@property(nonatomic, copy, nullable) void (^moved)(double value);
@end

@implementation SJBlockSlider
- (void)slid:(id)sender {
  if (self.moved) self.moved(self.doubleValue);
}
@end

@interface SJDeskPage : NSView <SJPanelPage>
@end

@implementation SJDeskPage {
  SJPanelContext _context;
  std::unique_ptr<DeskPage> _desk;
  SJDeskSideView* _view;
  NSPopUpButton* _kinds;
  NSStackView* _checks;
  NSStackView* _controls;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  _desk = std::make_unique<DeskPage>(context.core->deskPage());
  [self build];
  return self;
}

// The setup changes only here; the records and the monitor do not touch it.
- (void)reload {
}

- (void)build {
  _kinds = [[NSPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
  for (DeskKind kind : DeskKind::all())
    [_kinds addItemWithTitle:SJString(std::string(kind.title()))];
  _kinds.target = self;
  _kinds.action = @selector(pickKind:);
  _kinds.accessibilityLabel = @"자리 종류";
  __weak SJDeskPage* weakSelf = self;
  NSButton* reset = panelButton(@"기본값으로", ^{
    [weakSelf resetSetup];
  });
  _view = [[SJDeskSideView alloc] initWithFrame:NSZeroRect];
  _checks = panelColumn(@[], 10);
  _controls = panelColumn(@[], 6);
  NSView* viewCard = panelCard(@[ _view ]);
  [_view.widthAnchor constraintEqualToAnchor:viewCard.widthAnchor constant:-36].active = YES;
  NSArray<NSView*>* parts = @[
    panelRow(@[ _kinds, reset ], 10), viewCard, panelCard(@[ _checks ]), panelCard(@[ _controls ])
  ];
  NSStackView* column = panelColumn(parts, 14);
  for (NSView* part in parts)
    [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  panelFill(self, SJPageFrame(SJString(std::string(pageTitle(PanelPage::desk))),
                              SJString(std::string(pageCaption(PanelPage::desk))), column));
  [self showControls];
  [self changedAnimated:NO];
}

- (void)changedAnimated:(BOOL)animated {
  const DeskSetup& setup = _desk->setup();
  [_kinds selectItemAtIndex:static_cast<NSInteger>(setup.kind)];
  [_view showSetup:setup animated:animated];
  for (NSView* old in _checks.arrangedSubviews.copy)
    [old removeFromSuperview];
  for (const auto& check : _desk->checks())
    [_checks addArrangedSubview:checkRow(check)];
}

// One slider a number, and the shape and the feet where the kind has them.
- (void)showControls {
  for (NSView* old in _controls.arrangedSubviews.copy)
    [old removeFromSuperview];
  for (const DeskField* field : _desk->fields())
    [_controls addArrangedSubview:[self sliderRow:*field]];
  if (_desk->showsShape()) {
    [_controls addArrangedSubview:[self choiceRow:@"화면 모양"
                                           titles:@[ @"16:9", @"21:9", @"세로" ]
                                         selected:static_cast<NSInteger>(_desk->setup().shape)
                                           action:@selector(pickShape:)]];
  }
  if (_desk->showsFeet()) {
    const auto feet = _desk->setup().feet;
    [_controls addArrangedSubview:[self choiceRow:@"발"
                                           titles:@[ @"저절로", @"바닥", @"발받침", @"떠 있음" ]
                                         selected:feet ? static_cast<NSInteger>(*feet) + 1 : 0
                                           action:@selector(pickFeet:)]];
  }
}

- (NSView*)sliderRow:(const DeskField&)field {
  NSTextField* name = text(std::string(field.label), 13, NSFontWeightRegular);
  NSTextField* value = text(valueText(field, field.get(_desk->setup())), 13, NSFontWeightMedium);
  [name.widthAnchor constraintEqualToConstant:labelWidth].active = YES;
  [value.widthAnchor constraintEqualToConstant:valueWidth].active = YES;
  SJBlockSlider* slider = [SJBlockSlider sliderWithValue:field.get(_desk->setup())
                                                minValue:field.low
                                                maxValue:field.high
                                                  target:nil
                                                  action:nil];
  slider.target = slider;
  slider.action = @selector(slid:);
  slider.accessibilityLabel = SJString(std::string(field.label));
  const DeskField* moved = &field;  // the table lives as long as the program
  __weak SJDeskPage* weakSelf = self;
  __weak NSTextField* weakValue = value;
  slider.moved = ^(double to) {
    [weakSelf set:*moved to:to shownIn:weakValue];
  };
  return panelRow(@[ name, slider, value ], 10);
}

- (NSView*)choiceRow:(NSString*)title
              titles:(NSArray<NSString*>*)titles
            selected:(NSInteger)selected
              action:(SEL)action {
  NSTextField* name = text(title.UTF8String, 13, NSFontWeightRegular);
  [name.widthAnchor constraintEqualToConstant:labelWidth].active = YES;
  NSSegmentedControl* choice =
      [NSSegmentedControl segmentedControlWithLabels:titles
                                        trackingMode:NSSegmentSwitchTrackingSelectOne
                                              target:self
                                              action:action];
  choice.selectedSegment = selected;
  choice.accessibilityLabel = title;
  return panelRow(@[ name, choice ], 10);
}

- (void)set:(const DeskField&)field to:(double)value shownIn:(NSTextField*)label {
  _desk->set(field, std::round(value / field.step) * field.step);
  label.stringValue = SJString(valueText(field, field.get(_desk->setup())));
  [self changedAnimated:NO];
}

- (void)pickKind:(NSPopUpButton*)sender {
  const NSInteger index = sender.indexOfSelectedItem;
  if (index < 0 || index >= DeskKind::count) return;
  _desk->switchTo(DeskKind::all()[static_cast<std::size_t>(index)]);
  [self showControls];
  [self changedAnimated:YES];
}

- (void)pickShape:(NSSegmentedControl*)sender {
  _desk->setShape(static_cast<ScreenShape::Value>(sender.selectedSegment));
  [self changedAnimated:NO];
}

- (void)pickFeet:(NSSegmentedControl*)sender {
  const NSInteger picked = sender.selectedSegment;
  _desk->setFeet(picked <= 0 ? std::nullopt : std::optional<Feet>(static_cast<Feet>(picked - 1)));
  [self changedAnimated:NO];
}

- (void)resetSetup {
  _desk->reset();
  [self showControls];
  [self changedAnimated:YES];
}

@end

NSView<SJPanelPage>* SJMakeDeskPage(const SJPanelContext& context) {
  return [[SJDeskPage alloc] initWithContext:context];
}
