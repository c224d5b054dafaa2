#import "mac/panel_pages.h"

#import "mac/panel_views.h"

using namespace sodam;

NSView<SJPanelPage>* SJMakePanelPage(PanelPage page, const SJPanelContext& context) {
  switch (page) {
    case PanelPage::home:
      return SJMakeHomePage(context);
    case PanelPage::history:
      return SJMakeReportPage(context);
    case PanelPage::settings:
      return SJMakeSettingsPage(context);
    case PanelPage::stretch:
      return SJMakeStretchPage(context);
    case PanelPage::camera:
      return SJMakeCameraPage(context);
    case PanelPage::focus:
      return SJMakeFocusPage(context);
    case PanelPage::doctor:
      return SJMakeDoctorPage(context);
    case PanelPage::desk:
      return SJMakeDeskPage(context);
    case PanelPage::dorani:
      return SJMakeDoraniPage(context);
    case PanelPage::groups:
      return SJMakeGroupsPage(context);
    case PanelPage::ranking:
      return SJMakeRankingPage(context);
    case PanelPage::calendar:
      return SJMakeCalendarPage(context);
  }
  return SJMakeComingPage(page);
}

// A page whose feature is not here yet: its symbol, title and caption, and
// word that it is coming.
@interface SJComingPage : NSView <SJPanelPage>
@end

@implementation SJComingPage

- (instancetype)initWithPage:(PanelPage)page {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  NSString* title = SJString(std::string(pageTitle(page)));
  NSImageView* symbol =
      panelSymbol(SJString(std::string(pageSymbol(page))), NSColor.tertiaryLabelColor, 48, title);
  NSTextField* heading = panelTitle(title);
  NSTextField* caption = panelCaption(SJString(std::string(pageCaption(page))));
  NSTextField* coming = panelCaption(@"곧 만나요. 이 기능은 준비하고 있어요.");
  for (NSTextField* label in @[ heading, caption, coming ])
    label.alignment = NSTextAlignmentCenter;
  NSStackView* column = [NSStackView stackViewWithViews:@[ symbol, heading, caption, coming ]];
  column.orientation = NSUserInterfaceLayoutOrientationVertical;
  column.alignment = NSLayoutAttributeCenterX;
  column.spacing = 10;
  column.translatesAutoresizingMaskIntoConstraints = NO;
  [self addSubview:column];
  [NSLayoutConstraint activateConstraints:@[
    [column.centerXAnchor constraintEqualToAnchor:self.centerXAnchor],
    [column.centerYAnchor constraintEqualToAnchor:self.centerYAnchor],
    [column.widthAnchor constraintLessThanOrEqualToAnchor:self.widthAnchor constant:-64],
  ]];
  return self;
}

- (void)reload {
}

@end

NSView<SJPanelPage>* SJMakeComingPage(PanelPage page) {
  return [[SJComingPage alloc] initWithPage:page];
}
