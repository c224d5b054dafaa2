#import "mac/panel_pages.h"

#include "app/home_page.h"
#include "app/report_chart.h"
#import "mac/pill_views.h"

using namespace sodam;

namespace {

constexpr NSInteger tileColumns = 3;
constexpr CGFloat pageMargin = 28;

}  // namespace

// One card of the home page: a tile that opens the card's detail when
// clicked, and reads as a button to VoiceOver.
@interface SJHomeTile : NSView
@property(nonatomic, copy) void (^onPress)(void);
@end

@implementation SJHomeTile

- (instancetype)initWithTile:(const HomePage::Tile&)tile {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  NSString* title = SJString(tile.title);
  NSStackView* heading = panelRow(
      @[
        panelSymbol(SJString(tile.symbol), themeNSColor(tile.tint), 15, title),
        panelLabel(title,
                   [NSFont systemFontOfSize:NSFont.systemFontSize weight:NSFontWeightSemibold],
                   NSColor.secondaryLabelColor)
      ],
      6);
  NSTextField* value =
      panelLabel(SJString(tile.value), [NSFont systemFontOfSize:24 weight:NSFontWeightBold],
                 NSColor.labelColor);
  NSTextField* detail = panelCaption(SJString(tile.detail));
  panelFill(self, panelCard(@[ heading, value, detail ]));
  [self setAccessibilityElement:YES];
  self.accessibilityRole = NSAccessibilityButtonRole;
  self.accessibilityLabel =
      [@[ title, value.stringValue, detail.stringValue ] componentsJoinedByString:@", "];
  return self;
}

- (void)mouseUp:(NSEvent*)event {
  if ([self mouse:[self convertPoint:event.locationInWindow fromView:nil] inRect:self.bounds]) {
    [self accessibilityPerformPress];
  }
}

- (BOOL)accessibilityPerformPress {
  if (self.onPress) self.onPress();
  return YES;
}

@end

// Today at a glance: the monitor's state, six tiles, and the detail of the
// tile the user opened.
@interface SJHomePage : NSView <SJPanelPage>
@end

@implementation SJHomePage {
  SJPanelContext _context;
  NSView* _shown;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  [self reload];
  return self;
}

- (void)reload {
  const HomePage home = _context.core->homePage();
  const PanelModel& model = _context.model();
  NSMutableArray<NSView*>* parts = [NSMutableArray array];
  NSMutableArray<NSString*>* state = [NSMutableArray arrayWithObject:SJString(home.status)];
  if (home.nextCheck) [state addObject:SJString(*home.nextCheck)];
  if (home.streak) [state addObject:SJString(*home.streak)];
  [parts addObject:panelCaption([state componentsJoinedByString:@" · "])];
  if (model.homeCardOpen() && model.homeCard()) {
    [parts addObject:[self detailOf:*model.homeCard() in:home]];
  } else {
    [parts addObject:[self tilesOf:home]];
  }
  NSStackView* column = panelColumn(parts, 16);
  for (NSView* part in parts)
    [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  [self show:SJPageFrame(SJString(home.heading), @"오늘을 한눈에", column)];
}

- (void)show:(NSView*)view {
  [_shown removeFromSuperview];
  _shown = view;
  panelFill(self, view);
}

- (NSView*)tilesOf:(const HomePage&)home {
  NSGridView* grid = [NSGridView gridViewWithNumberOfColumns:tileColumns rows:0];
  grid.rowSpacing = 12;
  grid.columnSpacing = 12;
  NSMutableArray<NSView*>* row = [NSMutableArray array];
  for (const auto& tile : home.tiles) {
    SJHomeTile* view = [[SJHomeTile alloc] initWithTile:tile];
    const HomeCard card = tile.card;
    PanelModel* model = &_context.model();
    view.onPress = ^{
      model->openCard(card);
      model->coverCard(true);
    };
    [row addObject:view];
    if (row.count == tileColumns) {
      [grid addRowWithViews:row];
      [row removeAllObjects];
    }
  }
  if (row.count > 0) [grid addRowWithViews:row];
  for (NSInteger column = 0; column < grid.numberOfColumns; ++column)
    [grid columnAtIndex:column].xPlacement = NSGridCellPlacementFill;
  return grid;
}

- (NSView*)detailOf:(HomeCard)card in:(const HomePage&)home {
  const HomePage::Tile& tile = home.tile(card);
  PanelModel* model = &_context.model();
  NSButton* back = [NSButton buttonWithTitle:@"홈으로"
                                       image:[NSImage imageWithSystemSymbolName:@"chevron.left"
                                                       accessibilityDescription:@"홈으로"]
                                      target:self
                                      action:@selector(closeCard:)];
  back.bezelStyle = NSBezelStyleRounded;
  NSMutableArray<NSView*>* views = [NSMutableArray
      arrayWithObjects:panelRow(@[ back ], 8),
                       panelLabel(SJString(tile.title + " · " + tile.value),
                                  [NSFont systemFontOfSize:18 weight:NSFontWeightSemibold],
                                  NSColor.labelColor),
                       panelCaption(SJString(tile.detail)), nil];
  const ReportPage& report = home.report;
  switch (card) {
    case HomeCard::posture:
      [views addObject:[[SJBarChartView alloc] initWithBars:hourBars(report)
                                                 horizontal:NO
                                                      title:@"오늘 시간대별 바른 자세"]];
      [views addObject:panelButton(@"바른 자세 다시 알려 주기", ^{
               model->openGuide(GuideModel::Step::learn);
             })];
      break;
    case HomeCard::alerts:
    case HomeCard::issues:
      [views addObject:[[SJBarChartView alloc]
                           initWithBars:issueBars(card == HomeCard::alerts ? report.todaysIssues
                                                                           : report.weekIssues)
                             horizontal:YES
                                  title:tile.card == HomeCard::alerts ? @"오늘 보인 자세"
                                                                      : @"최근 7일 보인 자세"]];
      break;
    case HomeCard::stretch:
      [views addObject:panelButton(@"1분 호흡", ^{
               model->breathe();
             })];
      break;
    case HomeCard::worklife:
      for (const auto& span : home.spans)
        [views addObject:panelCaption(SJString(span))];
      break;
    case HomeCard::insights:
      for (const auto& insight : report.insights)
        [views addObject:panelLabel(SJString("· " + insight),
                                    [NSFont systemFontOfSize:NSFont.systemFontSize],
                                    NSColor.labelColor)];
      break;
  }
  return panelCard(views);
}

- (void)closeCard:(id)sender {
  _context.model().closeCard();
}

@end

NSView<SJPanelPage>* SJMakeHomePage(const SJPanelContext& context) {
  return [[SJHomePage alloc] initWithContext:context];
}

NSView* SJPageFrame(NSString* title, NSString* caption, NSView* content) {
  NSStackView* column = panelColumn(@[ panelTitle(title), panelCaption(caption), content ], 6);
  [column setCustomSpacing:18 afterView:column.views[1]];
  column.edgeInsets = NSEdgeInsetsMake(pageMargin, pageMargin, pageMargin, pageMargin);
  [content.widthAnchor constraintEqualToAnchor:column.widthAnchor constant:-2 * pageMargin].active =
      YES;
  return panelScroller(column);
}
