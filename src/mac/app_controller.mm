#include "mac/app_controller.h"

#include <memory>
#include <optional>
#include <string>

#include "app/app_delegate.h"
#include "companion/pill_look.h"
#include "mac/guide_controller.h"
#include "mac/mac_ports.h"
#include "mac/mac_window_sharing.h"
#include "mac/menu_bridge.h"
#include "mac/panel_controller.h"
#include "mac/status_icon.h"
#include "platform/capture_shield.h"

@interface SJAppController ()
- (void)drawStatus:(const sodam::StatusItem::Refresh&)refresh;
- (void)presentGuide:(sodam::GuideModel&)model;
- (void)closeGuide;
- (void)openPanel;
@end

namespace sodam {

namespace {

// The window side of the core, answered by the controller. Held weakly: the
// controller owns this object, never the other way round.
class MacShell final : public AppShell {
 public:
  explicit MacShell(SJAppController* controller) : controller_(controller) {}

  void drawStatus(const StatusItem::Refresh& refresh) override { [controller_ drawStatus:refresh]; }
  // The panel's model already shows the page; the window follows it.
  void openPanel(PanelPage) override { [controller_ openPanel]; }
  void presentGuide(GuideModel& model) override { [controller_ presentGuide:model]; }
  void closeGuide() override { [controller_ closeGuide]; }
  void openUrl(const std::string& url) override {
    NSURL* link = [NSURL URLWithString:@(url.c_str())];
    if (link) [NSWorkspace.sharedWorkspace openURL:link];
  }
  void activate() override { [NSApp activateIgnoringOtherApps:YES]; }
  void terminate() override { [NSApp terminate:nil]; }

 private:
  __weak SJAppController* controller_;
};

// Everything the controller owns, in the order it must be made: the ports
// first, the core over them, then what reads the core's settings.
struct MacApp {
  MacApp(SJAppController* controller, Lockdown& lock, LogLink* link, Scheduler& scheduler)
      : shell(controller),
        core(lock, ports.platform(shell, scheduler, link)),
        shield(sharing, core.store()) {}

  MacPorts ports;
  MacShell shell;
  AppDelegate core;
  MacWindowSharing sharing;
  CaptureShield shield;
};

// A launch by a login item is marked on the launch's own Apple event.
bool launchedAsLoginItem() {
  NSAppleEventDescriptor* event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
  if (event.eventID != kAEOpenApplication) return false;
  NSAppleEventDescriptor* property = [event paramDescriptorForKeyword:keyAEPropData];
  return property.enumCodeValue == keyAELaunchedAsLogInItem;
}

NSColor* _Nullable tintColor(StatusTint tint) {
  switch (tint) {
    case StatusTint::none:
      return nil;
    case StatusTint::red:
      return NSColor.systemRedColor;
    case StatusTint::orange:
      return NSColor.systemOrangeColor;
    case StatusTint::accent:
      return NSColor.controlAccentColor;
  }
  return nil;
}

}  // namespace

}  // namespace sodam

using namespace sodam;

@implementation SJAppController {
  std::unique_ptr<MacApp> _app;
  NSStatusItem* _statusItem;
  NSMenu* _quickMenu;
  NSMenu* _postureMenu;
  SJGuideController* _guide;
  // Made when the panel first opens, then kept.
  SJPanelController* _panel;
  NSMutableArray<id>* _observers;
}

- (instancetype)initWithLock:(Lockdown&)lock link:(LogLink*)link scheduler:(Scheduler&)scheduler {
  if ((self = [super init])) {
    _quickMenu = makeLiveMenu(@"", self);
    _postureMenu = makeLiveMenu(@"자세", self);
    _observers = [NSMutableArray array];
    _app = std::make_unique<MacApp>(self, lock, link, scheduler);
    [self connectPillPresenter];
  }
  return self;
}

// The pill's drawing reads the companion's gaze from the core while the user
// lets its eyes follow, and its click panel reports to the core's pill center.
- (void)connectPillPresenter {
  AppDelegate& core = _app->core;
  Clock& clock = _app->ports.clock;
  _app->ports.pills.onCatcherClick = [&core] { core.pills().click(); };
  _app->ports.pills.gaze = [&core, &clock]() -> std::optional<sodam::Point> {
    if (!core.store().followFace()) return std::nullopt;
    return core.buddySight().current(clock.now());
  };
}

#pragma mark Launch

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  const bool loginLaunch = launchedAsLoginItem();
  NSApp.mainMenu = makeMainMenu(mainMenuBar(), _postureMenu, self);
  [self makeStatusItem];
  [self observeSystem];
  _app->core.finishLaunching(loginLaunch);
}

- (void)makeStatusItem {
  _statusItem = [NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength];
  _statusItem.menu = _quickMenu;
  // The core counts this first face as drawn when the launch finishes.
  _statusItem.button.image =
      statusIconImage(StatusIcon::Eyes::open, _app->core.store().pillEars(lookCount<PillEars>()));
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)visible {
  _app->core.reopen();
  return NO;
}

#pragma mark System notifications

- (void)observeSystem {
  NSNotificationCenter* distributed = NSDistributedNotificationCenter.defaultCenter;
  NSNotificationCenter* workspace = NSWorkspace.sharedWorkspace.notificationCenter;
  [self observe:distributed name:@"com.apple.screenIsLocked" call:&AppDelegate::screenLocked];
  [self observe:distributed name:@"com.apple.screenIsUnlocked" call:&AppDelegate::screenUnlocked];
  [self observe:workspace
           name:NSWorkspaceScreensDidSleepNotification
           call:&AppDelegate::screensSlept];
  [self observe:workspace
           name:NSWorkspaceScreensDidWakeNotification
           call:&AppDelegate::screensWoke];
  [self observe:workspace name:NSWorkspaceWillSleepNotification call:&AppDelegate::willSleep];
  [self observe:workspace name:NSWorkspaceDidWakeNotification call:&AppDelegate::didWake];
  [self observe:NSNotificationCenter.defaultCenter
           name:NSApplicationDidResignActiveNotification
           call:&AppDelegate::deactivated];
}

- (void)observe:(NSNotificationCenter*)center
           name:(NSNotificationName)name
           call:(void (AppDelegate::*)())call {
  __weak SJAppController* weakSelf = self;
  id token = [center addObserverForName:name
                                 object:nil
                                  queue:NSOperationQueue.mainQueue
                             usingBlock:^(NSNotification*) {
                               SJAppController* strongSelf = weakSelf;
                               if (strongSelf) (strongSelf->_app->core.*call)();
                             }];
  [_observers addObject:token];
}

#pragma mark Status item and menus

- (void)drawStatus:(const StatusItem::Refresh&)refresh {
  NSStatusBarButton* button = _statusItem.button;
  // Without a button there is nothing to draw on; the rest goes on.
  if (!button) return;
  const StatusLook& look = refresh.look;
  if (refresh.redrawImage) button.image = statusIconImage(look.eyes, look.ears);
  button.contentTintColor = tintColor(look.tint);
  button.appearsDisabled = look.appearsDisabled;
  button.toolTip = @(look.tooltip.c_str());
}

- (void)menuNeedsUpdate:(NSMenu*)menu {
  if (menu == _quickMenu) fillMenu(menu, _app->core.quickMenu(), self);
  if (menu == _postureMenu) fillMenu(menu, _app->core.postureMenu(), self);
}

- (void)performMenuCommand:(NSMenuItem*)sender {
  SJMenuCommand* command = commandOf(sender);
  if (command) _app->core.perform(command.action, command.tag, command.payload);
}

#pragma mark Panel

- (void)openPanel {
  if (!_panel) _panel = [[SJPanelController alloc] initWithCore:_app->core shield:_app->shield];
  [_panel present];
}

#pragma mark Guide

- (void)presentGuide:(GuideModel&)model {
  _guide = [[SJGuideController alloc] initWithModel:model
                                               feed:_app->core.feed()
                                             shield:_app->shield];
  [_guide present];
}

- (void)closeGuide {
  [_guide close];
  _guide = nil;
}

@end
