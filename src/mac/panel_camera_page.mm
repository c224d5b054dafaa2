#import "mac/panel_pages.h"

#include "app/camera_page.h"

using namespace sodam;

namespace {

// The application's icon: its file's own when the path is known.
NSImageView* appIcon(const CameraPage::Row& row) {
  NSImage* icon =
      row.path.empty() ? nil : [NSWorkspace.sharedWorkspace iconForFile:SJString(row.path)];
  NSImageView* view =
      icon ? [NSImageView imageViewWithImage:icon]
           : panelSymbol(@"video.fill", NSColor.secondaryLabelColor, 20, SJString(row.app));
  [view.widthAnchor constraintEqualToConstant:32].active = YES;
  [view.heightAnchor constraintEqualToConstant:32].active = YES;
  return view;
}

NSView* eventRow(const CameraPage::Row& row) {
  const CGFloat size = NSFont.systemFontSize;
  NSStackView* words = panelColumn(
      @[
        panelLabel(SJString(row.app), [NSFont systemFontOfSize:size weight:NSFontWeightSemibold],
                   NSColor.labelColor),
        panelLabel(SJString(row.summary), [NSFont systemFontOfSize:size - 1],
                   row.warning ? NSColor.systemOrangeColor : NSColor.secondaryLabelColor),
        panelLabel(SJString(row.time), [NSFont systemFontOfSize:size - 2],
                   NSColor.tertiaryLabelColor),
      ],
      2);
  NSStackView* line = panelRow(@[ appIcon(row), words ], 12);
  line.alignment = NSLayoutAttributeTop;
  // Resting the pointer on the row shows where the program lives.
  line.toolTip = row.path.empty() ? nil : SJString(row.path);
  return line;
}

}  // namespace

// Who used the camera: the watch's record, newest first, with the switch
// that silences its pills and the buttons to read the log now and to clear
// the record. Showing it counts as having seen the record.
@interface SJCameraPage : NSView <SJPanelPage>
@end

@implementation SJCameraPage {
  SJPanelContext _context;
  NSView* _shown;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  [self reload];
  return self;
}

- (CameraWatch&)watch {
  return _context.core->watch();
}

- (void)reload {
  const CameraPage page = CameraPage::of(self.watch, _context.core->calendar());
  NSSwitch* notify = [[NSSwitch alloc] init];
  notify.state = page.notify ? NSControlStateValueOn : NSControlStateValueOff;
  notify.accessibilityLabel = SJString(CameraPage::notifyTitle);
  notify.target = self;
  notify.action = @selector(notifyChanged:);
  __weak SJCameraPage* weakSelf = self;
  NSStackView* controls = panelRow(
      @[
        notify,
        panelLabel(SJString(CameraPage::notifyTitle),
                   [NSFont systemFontOfSize:NSFont.systemFontSize], NSColor.labelColor),
        panelButton(SJString(CameraPage::sweepTitle),
                    ^{
                      [weakSelf watch].sweep();
                    }),
        panelButton(SJString(CameraPage::clearTitle),
                    ^{
                      [weakSelf watch].clear();
                    }),
      ],
      10);
  NSMutableArray<NSView*>* parts = [NSMutableArray
      arrayWithObjects:panelCard(@[
                         panelLabel(SJString(page.statusLine),
                                    [NSFont systemFontOfSize:NSFont.systemFontSize + 1
                                                      weight:NSFontWeightSemibold],
                                    NSColor.labelColor),
                         panelCaption(SJString(page.note)), controls
                       ]),
                       nil];
  NSMutableArray<NSView*>* rows = [NSMutableArray array];
  for (const auto& row : page.rows)
    [rows addObject:eventRow(row)];
  if (rows.count == 0) [rows addObject:panelCaption(SJString(CameraPage::emptyText))];
  [parts addObject:panelCard(rows)];
  NSStackView* column = panelColumn(parts, 14);
  for (NSView* part in parts)
    [part.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  [self show:SJPageFrame(SJString(std::string(pageTitle(PanelPage::camera))),
                         SJString(std::string(pageCaption(PanelPage::camera))), column)];
}

- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  if (self.window) self.watch.markSeen();
}

- (void)sweep {
  self.watch.sweep();
}

- (void)clear {
  self.watch.clear();
}

- (void)notifyChanged:(NSSwitch*)sender {
  self.watch.setNotify(sender.state == NSControlStateValueOn);
}

- (void)show:(NSView*)view {
  [_shown removeFromSuperview];
  _shown = view;
  panelFill(self, view);
}

@end

NSView<SJPanelPage>* SJMakeCameraPage(const SJPanelContext& context) {
  return [[SJCameraPage alloc] initWithContext:context];
}
