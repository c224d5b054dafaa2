// The health coach's page: the habits of the last seven days with the
// check-up row, today's opinion, the user's average posture on the two
// figures, a card for each habit with its numbers, and the consult, which
// takes the page while it is open.
#import "mac/panel_pages.h"

#include "app/doctor_page.h"
#import "mac/consult_view.h"
#import "mac/pill_views.h"
#import "mac/stretch_figure_view.h"

using namespace sodam;

namespace {

constexpr CGFloat compactConsultWidth = 560;

NSTextField* text(const std::string& line, CGFloat size, NSFontWeight weight,
                  NSColor* color = NSColor.labelColor) {
  return panelLabel(SJString(line), [NSFont systemFontOfSize:size weight:weight], color);
}

std::string joined(const std::vector<std::string>& lines) {
  std::string out;
  for (const auto& line : lines)
    out += (out.empty() ? "" : "\n") + line;
  return out;
}

// A heading over its lines; nothing for an empty block.
void addBlock(NSMutableArray<NSView*>* rows, const char* title,
              const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  [rows addObject:text(title, 12, NSFontWeightSemibold, NSColor.secondaryLabelColor)];
  [rows addObject:text(joined(lines), 13, NSFontWeightRegular)];
}

// The highlights of the habits that show on this figure.
std::vector<Focus> focusOn(const HabitReport& report, Stage stage) {
  std::vector<Focus> focus;
  for (const auto& habit : report.habits)
    if (habit.stage == stage) focus.insert(focus.end(), habit.focus.begin(), habit.focus.end());
  return focus;
}

NSView* figure(const Pose& pose, Stage stage, const std::vector<Focus>& focus, NSString* caption) {
  SJStretchFigureView* view = [[SJStretchFigureView alloc] initWithFrame:NSZeroRect];
  view.tint = themeNSColor(Theme::blue);
  view.accessibilityLabel = caption;
  [view showPose:pose stage:stage focus:focus];
  NSStackView* column = panelColumn(@[ view, panelCaption(caption) ], 4);
  column.alignment = NSLayoutAttributeCenterX;
  return column;
}

}  // namespace

@interface SJDoctorPage : NSView <SJPanelPage>
@end

@implementation SJDoctorPage {
  SJPanelContext _context;
  NSView* _content;
  SJConsultView* _consult;
  NSLayoutConstraint* _consultWidth;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  [self reload];
  return self;
}

// The consult keeps its view, and with it the question being typed, while
// it stays open; the habits are read again.
- (void)reload {
  PanelModel& model = _context.model();
  if (model.consultOpen()) {
    if (!_consult) [self showConsult];
    _consultWidth.active = !model.consultExpanded();
    [_consult refreshSize];
    return;
  }
  _consult = nil;
  [self show:[self habits:_context.core->doctorPage()]];
}

- (void)show:(NSView*)view {
  [_content removeFromSuperview];
  _content = view;
  panelFill(self, view);
}

- (void)showConsult {
  _consult = [[SJConsultView alloc] initWithModel:_context.model()];
  NSView* holder = [[NSView alloc] init];
  _consult.translatesAutoresizingMaskIntoConstraints = NO;
  [holder addSubview:_consult];
  NSLayoutConstraint* fill = [_consult.widthAnchor constraintEqualToAnchor:holder.widthAnchor];
  fill.priority = NSLayoutPriorityDefaultHigh;
  _consultWidth = [_consult.widthAnchor constraintEqualToConstant:compactConsultWidth];
  [NSLayoutConstraint activateConstraints:@[
    fill,
    [_consult.widthAnchor constraintLessThanOrEqualToAnchor:holder.widthAnchor],
    [_consult.centerXAnchor constraintEqualToAnchor:holder.centerXAnchor],
    [_consult.topAnchor constraintEqualToAnchor:holder.topAnchor],
    [_consult.bottomAnchor constraintEqualToAnchor:holder.bottomAnchor],
  ]];
  [self show:holder];
}

- (NSView*)habits:(const DoctorPage&)page {
  NSMutableArray<NSView*>* parts = [NSMutableArray array];
  if (auto notice = page.notice()) {
    [parts addObject:panelCard(@[
             text(notice->first, 15, NSFontWeightSemibold),
             text(notice->second, 13, NSFontWeightRegular, NSColor.secondaryLabelColor)
           ])];
  }
  [parts addObject:[self checkup:page]];
  [parts addObject:[self opinion:page]];
  [parts addObject:[self figures:page.report]];
  if (!page.cards.empty()) {
    [parts addObject:text("찾은 습관", 17, NSFontWeightBold)];
    for (const auto& card : page.cards)
      [parts addObject:[self card:card]];
  }
  [parts addObject:[self launcher]];
  NSStackView* column = panelColumn(parts, 14);
  for (NSView* part in parts)
    [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  return SJPageFrame(SJString(std::string(pageTitle(PanelPage::doctor))), SJString(page.basis()),
                     column);
}

- (NSView*)checkup:(const DoctorPage&)page {
  NSMutableArray<NSView*>* cells = [NSMutableArray array];
  for (const auto& cell : page.checkupCells()) {
    NSMutableArray<NSView*>* lines = [NSMutableArray arrayWithArray:@[
      text(cell.label, 11, NSFontWeightRegular, NSColor.secondaryLabelColor),
      text(cell.value, 16, NSFontWeightBold)
    ]];
    if (!cell.detail.empty()) {
      [lines addObject:text(cell.detail, 11, NSFontWeightRegular, NSColor.secondaryLabelColor)];
    }
    [cells addObject:panelCard(lines)];
  }
  NSStackView* row = panelRow(cells, 10);
  row.distribution = NSStackViewDistributionFillEqually;
  row.alignment = NSLayoutAttributeTop;
  return row;
}

- (NSView*)opinion:(const DoctorPage&)page {
  const auto [title, line] = page.opinion();
  NSMutableArray<NSView*>* rows = [NSMutableArray arrayWithArray:@[
    text("오늘의 소견", 12, NSFontWeightSemibold, NSColor.secondaryLabelColor),
    text(title, 17, NSFontWeightBold)
  ]];
  if (!line.empty()) [rows addObject:text(line, 13, NSFontWeightRegular)];
  const std::vector<std::string> routine = page.routine();
  if (!routine.empty()) {
    PanelModel* model = &_context.model();
    [rows addObject:panelButton(@"맞춤 스트레칭 시작", ^{
            model->startStretches(routine);
          })];
  }
  return panelCard(rows);
}

- (NSView*)figures:(const HabitReport&)report {
  NSStackView* pair = panelRow(
      @[
        figure(report.front, Stage::front, focusOn(report, Stage::front), @"정면"),
        figure(report.side, Stage::side, focusOn(report, Stage::side), @"옆에서")
      ],
      24);
  return panelCard(@[
    text("내 평소 자세", 15, NSFontWeightSemibold), pair,
    text("최근 7일 평균 자세를 과장 없이 그대로 옮겼어요. 붉게 빛나는 곳이 짧아져 뭉치기 쉬운 "
         "곳이에요.",
         12, NSFontWeightRegular, NSColor.secondaryLabelColor)
  ]);
}

- (NSView*)card:(const DoctorPage::Card&)card {
  const Habit& habit = card.habit;
  NSTextField* level = text(std::string(Habit::levelTitle(habit.level)), 12, NSFontWeightSemibold,
                            themeNSColor(DoctorPage::levelTint(habit.level)));
  NSMutableArray<NSView*>* rows = [NSMutableArray arrayWithArray:@[
    panelRow(@[ text(habit.title, 16, NSFontWeightBold), level ], 8),
    text(habit.measure, 12, NSFontWeightRegular, NSColor.secondaryLabelColor)
  ]];
  addBlock(rows, "짧아져 뭉치는 곳", habit.tight);
  addBlock(rows, "늘어나 지치는 곳", habit.strained);
  addBlock(rows, "왜 그럴까요", {habit.why});
  addBlock(rows, "이렇게 풀어요", {habit.release});
  addBlock(rows, "처방", card.prescription);
  addBlock(rows, "자리에서 바꿀 것", card.fixes);
  SJBarChartView* chart =
      [[SJBarChartView alloc] initWithBars:DoctorPage::dailyBars(card, _context.core->calendar())
                                horizontal:NO
                                     title:@"날짜별 평균"];
  [rows addObject:chart];
  const HabitStats& stats = card.stats;
  std::string numbers = "이번 주 평균 " + DoctorPage::amount(stats.thisWeek, stats.unit) +
                        " · 지난주 " + DoctorPage::amount(stats.lastWeek, stats.unit);
  if (stats.peakHour) numbers += " · 가장 심해지는 때 " + DoctorPage::hourText(*stats.peakHour);
  [rows addObject:text(numbers, 12, NSFontWeightRegular, NSColor.secondaryLabelColor)];
  NSView* box = panelCard(rows);
  [chart.widthAnchor constraintEqualToAnchor:box.widthAnchor constant:-36].active = YES;
  return box;
}

- (NSView*)launcher {
  PanelModel* model = &_context.model();
  return panelCard(@[
    text("상담하기", 15, NSFontWeightSemibold),
    text("아픈 곳을 알려 주시면 내 자세 기록과 이어서 원인과 푸는 법, 병원에 가야 할 때를 알려 "
         "드려요",
         13, NSFontWeightRegular, NSColor.secondaryLabelColor),
    panelButton(@"상담하기",
                ^{
                  model->openConsult();
                })
  ]);
}

@end

NSView<SJPanelPage>* SJMakeDoctorPage(const SJPanelContext& context) {
  return [[SJDoctorPage alloc] initWithContext:context];
}
