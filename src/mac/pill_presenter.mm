#include "mac/pill_presenter.h"

#import <AppKit/AppKit.h>
#include <CoreFoundation/CoreFoundation.h>

#include "mac/overlay_window.h"
#include "mac/pill_geometry.h"
#include "mac/pill_views.h"

namespace sodam {

namespace {

// The drawing panel sits at the status bar's level, the catcher just above.
constexpr NSWindowLevel drawingLevel = 25;
constexpr NSWindowLevel catcherLevel = 26;

// Nearly transparent. An 8-bit backing store rounds this alpha to nothing, and
// the window server passes clicks through a window's clear parts, so the
// catcher says outright that it takes the mouse.
constexpr CGFloat catcherAlpha = 0.001;

NSRect nsRect(Rect rect) {
  return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

// A panel that never activates the application: an accessory must not
// take the focus from what the user is doing.
NSPanel* makePanel(NSWindowLevel level) {
  NSPanel* panel = [[NSPanel alloc]
      initWithContentRect:NSZeroRect
                styleMask:NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel
                  backing:NSBackingStoreBuffered
                    defer:YES];
  panel.level = level;
  panel.opaque = NO;
  panel.hasShadow = NO;
  panel.releasedWhenClosed = NO;
  // Nothing of a pill is brought back at the next launch.
  panel.restorable = NO;
  panel.collectionBehavior = SJOnEverySpace;
  // The application is never active, so a panel hiding on deactivation
  // would never show.
  panel.hidesOnDeactivate = NO;
  panel.animationBehavior = NSWindowAnimationBehaviorNone;
  return panel;
}

}  // namespace

struct MacPillPresenter::Panels {
  NSPanel* drawing = nil;
  SJPillStageView* stage = nil;
  NSPanel* catcher = nil;
  NSTimer* ticker = nil;
};

MacPillPresenter::MacPillPresenter()
    : panels_(std::make_unique<Panels>()), self_(lifeToken(this)) {}

MacPillPresenter::~MacPillPresenter() {
  *self_ = nullptr;
  stopTicker();
  [panels_->catcher orderOut:nil];
  [panels_->drawing orderOut:nil];
}

Size MacPillPresenter::contentSize(const Pill& pill) {
  return pillContentSize(pill);
}

Size MacPillPresenter::bubbleSize(const Pill& pill) {
  return sayBubbleSize(pill);
}

MacPillPresenter::Panels& MacPillPresenter::drawingPanel() {
  if (!panels_->drawing) {
    NSPanel* panel = makePanel(drawingLevel);
    panel.backgroundColor = NSColor.clearColor;
    panel.ignoresMouseEvents = YES;
    panels_->stage = [[SJPillStageView alloc] initWithFrame:NSZeroRect];
    panel.contentView = panels_->stage;
    panels_->drawing = panel;
  }
  return *panels_;
}

MacPillPresenter::Panels& MacPillPresenter::catcherPanel() {
  if (!panels_->catcher) {
    NSPanel* panel = makePanel(catcherLevel);
    panel.backgroundColor = [NSColor.blackColor colorWithAlphaComponent:catcherAlpha];
    panel.ignoresMouseEvents = NO;
    SJClickView* clicks = [[SJClickView alloc] initWithFrame:NSZeroRect];
    auto click = weakCall(self_, [](MacPillPresenter& presenter) {
      if (presenter.onCatcherClick) presenter.onCatcherClick();
    });
    clicks.action = ^{
      click();
    };
    panel.contentView = clicks;
    panels_->catcher = panel;
  }
  return *panels_;
}

void MacPillPresenter::showPanel(Rect frame) {
  NSPanel* panel = drawingPanel().drawing;
  [panel setFrame:nsRect(frame) display:NO];
  [panel orderFrontRegardless];
}

void MacPillPresenter::hidePanel() {
  stopTicker();
  [panels_->drawing orderOut:nil];
}

void MacPillPresenter::update(const PillModel& model, PillAnimation animation) {
  [drawingPanel().stage showModel:model animation:animation];
  followMovingArt(model);
}

void MacPillPresenter::showCatcher(Rect frame) {
  NSPanel* panel = catcherPanel().catcher;
  [panel setFrame:nsRect(frame) display:NO];
  [panel orderFrontRegardless];
}

void MacPillPresenter::hideCatcher() {
  [panels_->catcher orderOut:nil];
}

void MacPillPresenter::followMovingArt(const PillModel& model) {
  if (!model.pill || !hasMovingArt(*model.pill)) {
    stopTicker();
    return;
  }
  if (!panels_->ticker) {
    auto step = weakCall(self_, [](MacPillPresenter& presenter) { presenter.tick(); });
    NSTimer* ticker = [NSTimer timerWithTimeInterval:movingArtInterval
                                             repeats:YES
                                               block:^(NSTimer*) {
                                                 step();
                                               }];
    ticker.tolerance = movingArtInterval / 4;
    // Common modes keep the ring moving while a menu is open.
    [NSRunLoop.mainRunLoop addTimer:ticker forMode:NSRunLoopCommonModes];
    panels_->ticker = ticker;
  }
  // A new art shows its present state at once, not a frame later.
  tick();
}

void MacPillPresenter::stopTicker() {
  [panels_->ticker invalidate];
  panels_->ticker = nil;
}

void MacPillPresenter::tick() {
  const std::optional<Point> look = gaze ? gaze() : std::nullopt;
  [panels_->stage advanceTo:Date{CFAbsoluteTimeGetCurrent()} gaze:look];
}

}  // namespace sodam
