#import "mac/watch_setup_sheet.h"

#import "mac/panel_views.h"

using namespace sodam;

namespace {
constexpr NSSize sheetSize{440, 320};
}  // namespace

@implementation SJWatchSetupSheet {
  AppDelegate* _core;
  ChangeSignal::Token _token;
  NSStackView* _checks;
  NSTextField* _hint;
  NSProgressIndicator* _progress;
  NSButton* _start;
}

- (instancetype)initWithCore:(AppDelegate&)core {
  if (!(self = [super initWithContentRect:NSMakeRect(0, 0, sheetSize.width, sheetSize.height)
                                styleMask:NSWindowStyleMaskTitled
                                  backing:NSBackingStoreBuffered
                                    defer:YES]))
    return nil;
  _core = &core;
  self.releasedWhenClosed = NO;
  _checks = panelColumn(@[], 6);
  _hint = panelCaption(@"");
  _progress = [[NSProgressIndicator alloc] init];
  _progress.indeterminate = NO;
  _progress.minValue = 0;
  _progress.maxValue = 1;
  _start = panelButton(@"시작", ^{
    core.startWatching();
  });
  _start.keyEquivalent = @"\r";
  NSButton* cancel = panelButton(@"취소", ^{
    core.panelModel().setWatchSetupOpen(false);
  });
  cancel.keyEquivalent = @"\033";
  NSStackView* column = panelColumn(
      @[
        panelTitle(@"나의 집중코치 준비"),
        panelCaption(
            @"노트북을 조금 뒤로 두고 얼굴과 어깨, 손과 책상이 보이게 맞춰 주세요. 시작하면 "
            @"바른 자세로 10초 동안 앉아 있어 주세요"),
        _checks, _hint, _progress, panelRow(@[ cancel, _start ], 8)
      ],
      12);
  column.edgeInsets = NSEdgeInsetsMake(24, 24, 24, 24);
  panelFill(self.contentView, column);
  __weak SJWatchSetupSheet* weakSelf = self;
  _token = core.watcher().onChange.subscribe([weakSelf] { [weakSelf reload]; });
  [self reload];
  return self;
}

- (void)dealloc {
  _core->watcher().onChange.unsubscribe(_token);
}

- (void)reload {
  const FocusPage::Watcher watcher = _core->focusPage().watcher;
  for (NSView* view in _checks.arrangedSubviews.copy)
    [view removeFromSuperview];
  for (const auto& check : watcher.checks) {
    NSString* title = SJString(check.title);
    [_checks
        addArrangedSubview:panelRow(
                               @[
                                 panelSymbol(check.ok ? @"checkmark.circle.fill" : @"circle",
                                             check.ok ? NSColor.systemGreenColor
                                                      : NSColor.tertiaryLabelColor,
                                             16, title),
                                 panelLabel(title, [NSFont systemFontOfSize:NSFont.systemFontSize],
                                            NSColor.labelColor)
                               ],
                               8)];
  }
  const bool calibrating = watcher.phase == WatchEngine::Phase::calibrating;
  _hint.stringValue =
      calibrating ? @"바른 자세로 앉아 주세요" : SJString(watcher.hint.value_or(""));
  _progress.hidden = !calibrating;
  _progress.doubleValue = watcher.progress;
  _start.enabled = watcher.canStart;
}

@end
