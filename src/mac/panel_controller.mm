#import "mac/panel_controller.h"

#include <optional>
#include <string_view>
#include <vector>

#import "mac/panel_pages.h"
#import "mac/panel_views.h"
#import "mac/watch_setup_sheet.h"

using namespace sodam;

namespace {

constexpr NSSize windowSize{940, 660};
constexpr NSSize windowMinimum{760, 520};
constexpr CGFloat sidebarWidth = 210;
constexpr CGFloat rowHeight = 28;
// Page changes and record changes that come in a burst are drawn once.
constexpr NSTimeInterval reloadDelaySeconds = 0.15;
NSString* const autosaveName = @"SodamJariPanel";

// A line of the sidebar: a section's heading or a page.
struct SidebarRow {
  std::optional<std::string_view> heading;
  std::optional<PanelPage> page;
};

std::vector<SidebarRow> sidebarRows() {
  std::vector<SidebarRow> rows;
  for (const auto& section : panelSections()) {
    if (section.title || section.footer) rows.push_back({section.title.value_or(""), std::nullopt});
    for (PanelPage page : section.pages)
      rows.push_back({std::nullopt, page});
  }
  return rows;
}

}  // namespace

@interface SJPanelController () <NSTableViewDataSource, NSTableViewDelegate>
@end

@implementation SJPanelController {
  AppDelegate* _core;
  SJPanelContext _context;
  std::vector<SidebarRow> _rows;
  std::vector<std::pair<ChangeSignal*, ChangeSignal::Token>> _subscriptions;
  NSWindow* _window;
  NSTableView* _sidebar;
  NSView* _pageHost;
  NSView<SJPanelPage>* _page;
  std::optional<PanelPage> _shownPage;
  SJWatchSetupSheet* _setupSheet;
}

- (instancetype)initWithCore:(AppDelegate&)core shield:(CaptureShield&)shield {
  if (!(self = [super init])) return nil;
  _core = &core;
  _context = SJPanelContext{&core, &shield};
  _rows = sidebarRows();
  _window = [self makeWindow];
  [self follow:core.panelModel().onChange];
  [self follow:core.log().onChange];
  [self follow:core.work().onChange];
  [self follow:core.monitor().onChange];
  [self follow:core.watch().onChange];
  [self modelChanged];
  return self;
}

- (void)dealloc {
  for (auto [signal, token] : _subscriptions)
    signal->unsubscribe(token);
}

- (void)follow:(ChangeSignal&)signal {
  __weak SJPanelController* weakSelf = self;
  _subscriptions.emplace_back(&signal, signal.subscribe([weakSelf] { [weakSelf modelChanged]; }));
}

#pragma mark Window

- (NSWindow*)makeWindow {
  NSWindow* window = [[NSWindow alloc]
      initWithContentRect:NSMakeRect(0, 0, windowSize.width, windowSize.height)
                styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                          NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable |
                          NSWindowStyleMaskFullSizeContentView
                  backing:NSBackingStoreBuffered
                    defer:YES];
  window.title = @"소담자리";
  window.titlebarAppearsTransparent = YES;
  window.releasedWhenClosed = NO;
  window.restorable = NO;
  window.minSize = windowMinimum;
  window.delegate = self;
  window.contentViewController = [self makeSplit];
  // Set after the content, which sizes the window; a saved frame wins.
  if (![window setFrameUsingName:autosaveName]) [window center];
  window.frameAutosaveName = autosaveName;
  return window;
}

- (NSSplitViewController*)makeSplit {
  NSSplitViewController* split = [[NSSplitViewController alloc] init];
  NSViewController* sidebar = [[NSViewController alloc] init];
  sidebar.view = [self makeSidebar];
  NSSplitViewItem* sidebarItem = [NSSplitViewItem sidebarWithViewController:sidebar];
  sidebarItem.minimumThickness = sidebarWidth;
  sidebarItem.maximumThickness = sidebarWidth + 60;
  sidebarItem.canCollapse = NO;
  NSViewController* content = [[NSViewController alloc] init];
  _pageHost = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, 600, 400)];
  content.view = _pageHost;
  [split addSplitViewItem:sidebarItem];
  [split addSplitViewItem:[NSSplitViewItem splitViewItemWithViewController:content]];
  return split;
}

- (NSView*)makeSidebar {
  _sidebar = [[NSTableView alloc] init];
  NSTableColumn* column = [[NSTableColumn alloc] initWithIdentifier:@"page"];
  [_sidebar addTableColumn:column];
  _sidebar.headerView = nil;
  _sidebar.style = NSTableViewStyleSourceList;
  _sidebar.rowHeight = rowHeight;
  _sidebar.dataSource = self;
  _sidebar.delegate = self;
  _sidebar.accessibilityLabel = @"페이지";
  NSScrollView* scroller = [[NSScrollView alloc] init];
  scroller.documentView = _sidebar;
  scroller.drawsBackground = NO;
  scroller.hasVerticalScroller = YES;
  return scroller;
}

- (void)present {
  [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
  if (@available(macOS 14.0, *)) {
    [NSApp activate];
  } else {
    [NSApp activateIgnoringOtherApps:YES];
  }
  // In front even when the system declines the activation.
  [_window orderFrontRegardless];
  [_window makeKeyWindow];
  _core->panelModel().setVisible(true);
}

- (void)windowWillClose:(NSNotification*)notification {
  _core->panelModel().setVisible(false);
  [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

#pragma mark Model

// The page changed, or what it shows; drawn once per burst.
- (void)modelChanged {
  [self followWatchSetup];
  const PanelPage page = _core->panelModel().page();
  if (_shownPage != page) {
    [self showPage:page];
    return;
  }
  [NSObject cancelPreviousPerformRequestsWithTarget:self selector:@selector(reloadPage) object:nil];
  [self performSelector:@selector(reloadPage) withObject:nil afterDelay:reloadDelaySeconds];
}

- (void)reloadPage {
  [_page reload];
}

// The focus coach's set-up comes up over whichever page is in front.
- (void)followWatchSetup {
  const bool open = _core->panelModel().watchSetupOpen();
  if (open && !_setupSheet) {
    _setupSheet = [[SJWatchSetupSheet alloc] initWithCore:*_core];
    [_window beginSheet:_setupSheet completionHandler:nil];
  } else if (!open && _setupSheet) {
    [_window endSheet:_setupSheet];
    _setupSheet = nil;
  }
}

- (void)showPage:(PanelPage)page {
  _shownPage = page;
  [_page removeFromSuperview];
  _page = SJMakePanelPage(page, _context);
  panelFill(_pageHost, _page);
  const PanelPage row = sidebarPage(page);
  for (std::size_t i = 0; i < _rows.size(); ++i) {
    if (_rows[i].page != row) continue;
    [_sidebar selectRowIndexes:[NSIndexSet indexSetWithIndex:i] byExtendingSelection:NO];
  }
}

#pragma mark Sidebar

- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView {
  return static_cast<NSInteger>(_rows.size());
}

- (BOOL)tableView:(NSTableView*)tableView isGroupRow:(NSInteger)row {
  return _rows[static_cast<std::size_t>(row)].heading.has_value();
}

- (BOOL)tableView:(NSTableView*)tableView shouldSelectRow:(NSInteger)row {
  return _rows[static_cast<std::size_t>(row)].page.has_value();
}

- (NSView*)tableView:(NSTableView*)tableView
    viewForTableColumn:(NSTableColumn*)tableColumn
                   row:(NSInteger)row {
  const SidebarRow& entry = _rows[static_cast<std::size_t>(row)];
  if (entry.heading) {
    return panelLabel(SJString(std::string(*entry.heading)),
                      [NSFont systemFontOfSize:NSFont.smallSystemFontSize
                                        weight:NSFontWeightSemibold],
                      NSColor.secondaryLabelColor);
  }
  NSString* title = SJString(std::string(pageTitle(*entry.page)));
  NSTableCellView* cell = [[NSTableCellView alloc] init];
  NSImageView* icon = panelSymbol(SJString(std::string(pageSymbol(*entry.page))),
                                  NSColor.controlAccentColor, 14, title);
  NSTextField* label =
      panelLabel(title, [NSFont systemFontOfSize:NSFont.systemFontSize], NSColor.labelColor);
  label.maximumNumberOfLines = 1;
  cell.imageView = icon;
  cell.textField = label;
  NSStackView* line = panelRow(@[ icon, label ], 8);
  line.toolTip = SJString(std::string(pageCaption(*entry.page)));
  panelFill(cell, line);
  return cell;
}

- (void)tableViewSelectionDidChange:(NSNotification*)notification {
  const NSInteger row = _sidebar.selectedRow;
  if (row < 0) return;
  const auto& page = _rows[static_cast<std::size_t>(row)].page;
  // The family's other pages keep the row of the family selected.
  if (page && sidebarPage(_core->panelModel().page()) != *page) _core->panelModel().go(*page);
}

@end
