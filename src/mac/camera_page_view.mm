#include "mac/camera_page_view.h"

#include <string>

#include "app/camera_page.h"

using namespace sodam;

namespace {

NSString* text(const std::string& value) {
  return [NSString stringWithUTF8String:value.c_str()] ?: @"";
}

NSTextField* label(const std::string& value, NSFont* font, NSColor* color) {
  NSTextField* field = [NSTextField wrappingLabelWithString:text(value)];
  field.font = font;
  field.textColor = color;
  field.selectable = NO;
  return field;
}

// The application's icon: the file's own when its path is known.
NSImage* iconFor(const CameraPage::Row& row) {
  if (!row.path.empty()) {
    NSImage* icon = [NSWorkspace.sharedWorkspace iconForFile:text(row.path)];
    if (icon) return icon;
  }
  return [NSImage imageWithSystemSymbolName:@"video.fill" accessibilityDescription:nil];
}

NSView* rowView(const CameraPage::Row& row) {
  NSImageView* icon = [NSImageView imageViewWithImage:iconFor(row)];
  [icon.widthAnchor constraintEqualToConstant:28].active = YES;
  [icon.heightAnchor constraintEqualToConstant:28].active = YES;
  NSColor* summaryColor = row.warning ? NSColor.systemOrangeColor : NSColor.secondaryLabelColor;
  NSStackView* words = [NSStackView stackViewWithViews:@[
    label(row.app, [NSFont boldSystemFontOfSize:13], NSColor.labelColor),
    label(row.summary, [NSFont systemFontOfSize:12], summaryColor),
    label(row.time, [NSFont systemFontOfSize:11], NSColor.tertiaryLabelColor),
  ]];
  words.orientation = NSUserInterfaceLayoutOrientationVertical;
  words.alignment = NSLayoutAttributeLeading;
  words.spacing = 2;
  NSStackView* line = [NSStackView stackViewWithViews:@[ icon, words ]];
  line.alignment = NSLayoutAttributeTop;
  line.spacing = 10;
  line.toolTip = row.path.empty() ? nil : text(row.path);
  return line;
}

}  // namespace

@implementation SJCameraPageView {
  CameraWatch* _watch;
  Calendar _calendar;
  Signal<>::Token _observation;
  NSTextField* _status;
  NSTextField* _note;
  NSSwitch* _notify;
  NSStackView* _rows;
}

- (instancetype)initWithWatch:(CameraWatch&)watch calendar:(const Calendar&)calendar {
  if ((self = [super initWithFrame:NSMakeRect(0, 0, 560, 480)])) {
    _watch = &watch;
    _calendar = calendar;
    [self build];
    __weak SJCameraPageView* weakSelf = self;
    _observation = watch.onChange.subscribe([weakSelf] { [weakSelf refresh]; });
    [self refresh];
  }
  return self;
}

- (void)dealloc {
  _watch->onChange.unsubscribe(_observation);
}

- (void)build {
  _status = label("", [NSFont boldSystemFontOfSize:15], NSColor.labelColor);
  _note = label("", [NSFont systemFontOfSize:11], NSColor.secondaryLabelColor);
  _notify = [[NSSwitch alloc] init];
  _notify.target = self;
  _notify.action = @selector(notifyChanged:);
  NSStackView* controls = [NSStackView stackViewWithViews:@[
    _notify,
    label(CameraPage::notifyTitle, [NSFont systemFontOfSize:12], NSColor.labelColor),
    [NSButton buttonWithTitle:text(CameraPage::sweepTitle) target:self action:@selector(sweep:)],
    [NSButton buttonWithTitle:text(CameraPage::clearTitle) target:self action:@selector(clear:)],
  ]];
  controls.spacing = 8;
  _rows = [[NSStackView alloc] init];
  _rows.orientation = NSUserInterfaceLayoutOrientationVertical;
  _rows.alignment = NSLayoutAttributeLeading;
  _rows.spacing = 12;
  NSScrollView* scroll = [[NSScrollView alloc] init];
  scroll.hasVerticalScroller = YES;
  scroll.drawsBackground = NO;
  scroll.documentView = _rows;
  NSStackView* page = [NSStackView stackViewWithViews:@[ _status, _note, controls, scroll ]];
  page.orientation = NSUserInterfaceLayoutOrientationVertical;
  page.alignment = NSLayoutAttributeLeading;
  page.spacing = 10;
  page.edgeInsets = NSEdgeInsetsMake(20, 20, 20, 20);
  page.translatesAutoresizingMaskIntoConstraints = NO;
  [self addSubview:page];
  [NSLayoutConstraint activateConstraints:@[
    [page.topAnchor constraintEqualToAnchor:self.topAnchor],
    [page.bottomAnchor constraintEqualToAnchor:self.bottomAnchor],
    [page.leadingAnchor constraintEqualToAnchor:self.leadingAnchor],
    [page.trailingAnchor constraintEqualToAnchor:self.trailingAnchor],
    [scroll.widthAnchor constraintEqualToAnchor:page.widthAnchor constant:-40],
    [_rows.widthAnchor constraintEqualToAnchor:scroll.contentView.widthAnchor],
  ]];
}

- (void)refresh {
  const CameraPage page = CameraPage::of(*_watch, _calendar);
  _status.stringValue = text(page.statusLine);
  _note.stringValue = text(page.note);
  _notify.state = page.notify ? NSControlStateValueOn : NSControlStateValueOff;
  for (NSView* old in [_rows.arrangedSubviews copy])
    [old removeFromSuperview];
  if (page.rows.empty()) {
    [_rows addArrangedSubview:label(CameraPage::emptyText, [NSFont systemFontOfSize:12],
                                    NSColor.secondaryLabelColor)];
  }
  for (const auto& row : page.rows)
    [_rows addArrangedSubview:rowView(row)];
}

- (void)viewDidMoveToWindow {
  [super viewDidMoveToWindow];
  // Shown: what it lists counts as seen.
  if (self.window) _watch->markSeen();
}

- (void)notifyChanged:(NSSwitch*)sender {
  _watch->setNotify(sender.state == NSControlStateValueOn);
}

- (void)sweep:(id)sender {
  _watch->sweep();
}

- (void)clear:(id)sender {
  _watch->clear();
}

@end
