#import "mac/panel_pages.h"

#include "app/report_chart.h"
#include "support/korean_format.h"
#include "support/text.h"

using namespace sodam;

// Today hour by hour, or the last seven days day by day, as the user picks.
@interface SJReportPage : NSView <SJPanelPage>
@end

@implementation SJReportPage {
  SJPanelContext _context;
  ReportPage::Span _span;
  NSView* _shown;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  _span = ReportPage::Span::today;
  [self reload];
  return self;
}

- (void)reload {
  const ReportPage report = _context.core->reportPage();
  NSSegmentedControl* spans =
      [NSSegmentedControl segmentedControlWithLabels:@[ @"오늘", @"최근 7일" ]
                                        trackingMode:NSSegmentSwitchTrackingSelectOne
                                              target:self
                                              action:@selector(pickSpan:)];
  spans.selectedSegment = _span == ReportPage::Span::today ? 0 : 1;
  spans.accessibilityLabel = @"기간";
  NSMutableArray<NSView*>* parts = [NSMutableArray arrayWithObject:spans];
  if (report.empty()) {
    [parts addObject:panelCard(@[ panelCaption(@"아직 기록이 없어요") ])];
  } else if (_span == ReportPage::Span::today) {
    [self addToday:report to:parts];
  } else {
    [self addWeek:report to:parts];
  }
  if (!report.insights.empty()) {
    NSMutableArray<NSView*>* lines = [NSMutableArray arrayWithObject:[self heading:@"한마디"]];
    for (const auto& insight : report.insights)
      [lines addObject:panelLabel(SJString("· " + insight),
                                  [NSFont systemFontOfSize:NSFont.systemFontSize],
                                  NSColor.labelColor)];
    [parts addObject:panelCard(lines)];
  }
  NSStackView* column = panelColumn(parts, 14);
  for (NSView* part in parts)
    if (part != spans) [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  [self show:SJPageFrame(@"리포트", @"오늘·이번 주 요약과 기록", column)];
}

- (NSTextField*)heading:(NSString*)text {
  return panelLabel(text,
                    [NSFont systemFontOfSize:NSFont.systemFontSize + 1 weight:NSFontWeightSemibold],
                    NSColor.labelColor);
}

- (NSView*)chartCard:(NSString*)title bars:(std::vector<ChartBar>)bars horizontal:(BOOL)horizontal {
  SJBarChartView* chart = [[SJBarChartView alloc] initWithBars:std::move(bars)
                                                    horizontal:horizontal
                                                         title:title];
  NSView* card = panelCard(@[ [self heading:title], chart ]);
  [chart.widthAnchor constraintEqualToAnchor:card.widthAnchor constant:-36].active = YES;
  return card;
}

- (void)addToday:(const ReportPage&)report to:(NSMutableArray<NSView*>*)parts {
  const ReportDay& today = report.today;
  [parts addObject:panelCard(@[
           [self heading:SJString("바른 자세 " + percentText(today.goodShare()))],
           panelCaption(SJString(format("확인 %d번 · 알림 %d번 · 바로잡음 %d번", today.checks,
                                        today.alerts, report.corrections))),
           panelCaption(SJString("앉은 시간 " + hm(today.seatedMinutes) +
                                 format(" · 쉬는 시간 %d번 · 가장 길게 ", today.breaks) +
                                 hm(today.longestMinutes))),
         ])];
  [parts addObject:[self chartCard:@"시간대별 바른 자세" bars:hourBars(report) horizontal:NO]];
  if (!report.todaysIssues.empty()) {
    [parts addObject:[self chartCard:@"오늘 보인 자세"
                                bars:issueBars(report.todaysIssues)
                          horizontal:YES]];
  }
}

- (void)addWeek:(const ReportPage&)report to:(NSMutableArray<NSView*>*)parts {
  const Calendar& calendar = _context.core->calendar();
  const int seatedDays = report.weekSeatedDays();
  [parts
      addObject:panelCard(@[
        [self heading:SJString("바른 자세 " + percentText(report.weekGoodShare()))],
        panelCaption(SJString(format("확인 %d번", report.weekChecks()))),
        panelCaption(SJString(
            "앉은 시간 " + hm(report.weekSeatedMinutes()) +
            (seatedDays > 0 ? " · 하루 평균 " + hm(report.weekSeatedMinutes() / seatedDays) : ""))),
      ])];
  [parts addObject:[self chartCard:@"날마다 바른 자세"
                              bars:weekShareBars(report, calendar)
                        horizontal:NO]];
  [parts addObject:[self chartCard:@"날마다 앉은 시간"
                              bars:weekSeatedBars(report, calendar)
                        horizontal:NO]];
  if (!report.weekIssues.empty()) {
    [parts addObject:[self chartCard:@"최근 7일 보인 자세"
                                bars:issueBars(report.weekIssues)
                          horizontal:YES]];
  }
}

- (void)pickSpan:(NSSegmentedControl*)sender {
  _span = sender.selectedSegment == 0 ? ReportPage::Span::today : ReportPage::Span::week;
  [self reload];
}

- (void)show:(NSView*)view {
  [_shown removeFromSuperview];
  _shown = view;
  panelFill(self, view);
}

@end

NSView<SJPanelPage>* SJMakeReportPage(const SJPanelContext& context) {
  return [[SJReportPage alloc] initWithContext:context];
}
