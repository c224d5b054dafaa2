#import "mac/guide_controller.h"

#import <QuartzCore/QuartzCore.h>

#include <algorithm>

#import "mac/glass_image.h"
#import "mac/guide_preview.h"
#import "mac/guide_views.h"
#import "mac/mac_window_sharing.h"
#include "mac/pill_geometry.h"

namespace {

using Step = sodam::GuideModel::Step;

constexpr NSSize windowSize{520, 560};
constexpr CGFloat pageSlideDistance = 40;
constexpr CFTimeInterval pageFadeOutSeconds = 0.15;
constexpr NSTimeInterval progressFrameSeconds = 1.0 / 30;

// The step's spring, in the terms Core Animation takes.
CASpringAnimation* stepSpring(NSString* keyPath) {
  const sodam::SpringParameters parameters = sodam::springParameters(
      sodam::GuideModel::stepSpringResponse, sodam::GuideModel::stepSpringDamping);
  CASpringAnimation* spring = [CASpringAnimation animationWithKeyPath:keyPath];
  spring.mass = parameters.mass;
  spring.stiffness = parameters.stiffness;
  spring.damping = parameters.damping;
  spring.duration = spring.settlingDuration;
  return spring;
}

CABasicAnimation* fade(double from, double to, CFTimeInterval seconds) {
  CABasicAnimation* fade = [CABasicAnimation animationWithKeyPath:@"opacity"];
  fade.fromValue = @(from);
  fade.toValue = @(to);
  fade.duration = seconds;
  return fade;
}

BOOL reduceMotion() {
  return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

}  // namespace

@interface SJGuideController () <SJGuideActions>
@end

@implementation SJGuideController {
  // Cleared by close: the model and feed may be gone after it.
  sodam::GuideModel* _model;
  sodam::LiveFeed* _feed;
  sodam::CaptureShield* _shield;
  sodam::ChangeSignal::Token _subscription;
  sodam::ChangeSignal::Token _feedSubscription;
  NSWindow* _window;
  SJGuidePage* _page;
  // Over the preview while the camera is not allowed: a guide opened
  // straight at a camera step has passed no permission step.
  NSButton* _askButton;
  Step _shownStep;
  BOOL _shielded;
  // The capture's bar runs from where it stands to the model's value over
  // the model's time, drawn by a timer at display pace.
  NSTimer* _progressTimer;
  double _progressShown;
  double _progressFrom;
  double _progressTarget;
  double _progressSeconds;
  CFTimeInterval _progressStartedAt;
}

- (instancetype)initWithModel:(sodam::GuideModel&)model
                         feed:(sodam::LiveFeed&)feed
                       shield:(sodam::CaptureShield&)shield {
  if (!(self = [super init])) return nil;
  _model = &model;
  _feed = &feed;
  _shield = &shield;
  _progressShown = _progressTarget = model.progress();
  _window = [self makeWindow];

  __weak SJGuideController* weakSelf = self;
  _subscription = model.onChange.subscribe([weakSelf] { [weakSelf modelChanged]; });
  _feedSubscription = feed.onChange.subscribe(
      [weakSelf](sodam::LiveFeed::Property property) { [weakSelf feedChanged:property]; });

  [self showStep:model.step() animated:NO];
  [self modelChanged];
  return self;
}

// Not deferred: the capture shield finds the window among the application's
// windows, possibly before it is first shown.
- (NSWindow*)makeWindow {
  NSWindow* window =
      [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, windowSize.width, windowSize.height)
                                  styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable
                                    backing:NSBackingStoreBuffered
                                      defer:NO];
  window.title = @"소담자리";
  window.releasedWhenClosed = NO;
  // The sandbox refuses the saved state's files, and a guide is always opened
  // afresh by the application.
  window.restorable = NO;
  window.contentView.wantsLayer = YES;
  window.delegate = self;
  return window;
}

// From macOS 14 activation is a request the system may turn down, for
// instance while the user types elsewhere; the window comes to the front all
// the same, and takes the keys once the application is active.
- (void)present {
  if (@available(macOS 14.0, *)) {
    [NSApp activate];
  } else {
    [NSApp activateIgnoringOtherApps:YES];
  }
  [_window center];
  [_window orderFrontRegardless];
  [_window makeKeyWindow];
}

- (void)close {
  if (!_model) return;
  [self stopProgress];
  _model->onChange.unsubscribe(_subscription);
  _feed->onChange.unsubscribe(_feedSubscription);
  [self shieldWindow:NO];
  _model = nullptr;
  _feed = nullptr;
  _shield = nullptr;
  _window.delegate = nil;
  [_window orderOut:nil];
}

// The close button asks the guide to end; the application closes the window.
- (BOOL)windowShouldClose:(NSWindow*)sender {
  if (_model) _model->close();
  return NO;
}

#pragma mark Model and feed

- (void)modelChanged {
  if (!_model) return;
  if (_model->step() != _shownStep) [self showStep:_model->step() animated:YES];
  [_page showLearn:_model->learn() note:_model->note()];
  [self followProgress];
  [_page showProgress:_progressShown];
}

- (void)feedChanged:(sodam::LiveFeed::Property)property {
  SJGlassPreview* preview = _page.preview;
  if (!_feed || !preview) return;
  switch (property) {
    case sodam::LiveFeed::Property::glass:
      [self showGlassIn:preview];
      break;
    case sodam::LiveFeed::Property::readiness:
      [preview showReadiness:_feed->readiness() animated:YES];
      break;
    case sodam::LiveFeed::Property::hint:
      [self showHintIn:preview];
      break;
    case sodam::LiveFeed::Property::authorized:
      [self showCameraAskIn:preview];
      break;
    default:
      break;
  }
}

- (void)showGlassIn:(SJGlassPreview*)preview {
  const auto& glass = _feed->glass();
  [preview showGlass:glass ? sodam::glassCGImage(*glass) : nullptr];
}

- (void)showHintIn:(SJGlassPreview*)preview {
  const auto& hint = _feed->hint();
  [preview showHint:hint ? SJString(*hint) : nil lineUpShoulders:_feed->needsShoulders()];
}

#pragma mark Pages

- (void)showStep:(Step)step animated:(BOOL)animated {
  const BOOL forward = static_cast<int>(step) > static_cast<int>(_shownStep);
  SJGuidePage* old = _page;
  _shownStep = step;
  _page = SJMakeGuidePage(step, self);
  NSView* host = _window.contentView;
  _page.frame = host.bounds;
  _page.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
  // The window leaves screen sharing before the camera's picture enters it.
  [self shieldWindow:_page.preview != nil];
  [host addSubview:_page];
  [self fillPreview];

  const BOOL moving = animated && !reduceMotion();
  if (moving) [self slideIn:_page forward:forward];
  [self retire:old animated:moving];
}

- (void)fillPreview {
  SJGlassPreview* preview = _page.preview;
  if (!preview) return;
  [self showGlassIn:preview];
  [preview showReadiness:_feed->readiness() animated:NO];
  [self showHintIn:preview];
  [self showCameraAskIn:preview];
}

- (void)showCameraAskIn:(SJGlassPreview*)preview {
  [_askButton removeFromSuperview];
  _askButton = nil;
  if (_feed->authorized()) return;
  _askButton = [NSButton buttonWithTitle:@"카메라 허용하기"
                                  target:self
                                  action:@selector(askCamera:)];
  _askButton.translatesAutoresizingMaskIntoConstraints = NO;
  [preview addSubview:_askButton];
  [NSLayoutConstraint activateConstraints:@[
    [_askButton.centerXAnchor constraintEqualToAnchor:preview.centerXAnchor],
    [_askButton.centerYAnchor constraintEqualToAnchor:preview.centerYAnchor],
  ]];
}

- (void)slideIn:(SJGuidePage*)page forward:(BOOL)forward {
  CASpringAnimation* slide = stepSpring(@"position.x");
  slide.additive = YES;
  slide.fromValue = @(forward ? pageSlideDistance : -pageSlideDistance);
  slide.toValue = @0;
  [page.layer addAnimation:slide forKey:@"stepSlide"];
  [page.layer addAnimation:fade(0, 1, sodam::GuideModel::stepSpringResponse) forKey:@"stepFade"];
}

// The leaving page takes no more clicks, and goes once it has faded and the
// click that sent it away is done with its button.
- (void)retire:(SJGuidePage*)page animated:(BOOL)animated {
  if (!page) return;
  page.retired = YES;
  if (!animated) {
    page.hidden = YES;
    dispatch_async(dispatch_get_main_queue(), ^{
      [page removeFromSuperview];
    });
    return;
  }
  CABasicAnimation* out = fade(1, 0, pageFadeOutSeconds);
  out.fillMode = kCAFillModeForwards;
  out.removedOnCompletion = NO;
  [CATransaction begin];
  [CATransaction setCompletionBlock:^{
    [page removeFromSuperview];
  }];
  [page.layer addAnimation:out forKey:@"stepFade"];
  [CATransaction commit];
}

- (void)shieldWindow:(BOOL)shielded {
  if (!_shield || shielded == _shielded) return;
  _shielded = shielded;
  if (shielded) {
    _shield->attach(sodam::windowId(_window));
  } else {
    _shield->detach(sodam::windowId(_window));
  }
}

#pragma mark Progress

- (void)followProgress {
  const double target = _model->progress();
  if (target == _progressTarget) return;
  _progressFrom = _progressShown;
  _progressTarget = target;
  _progressSeconds = _model->progressSeconds();
  _progressStartedAt = CACurrentMediaTime();
  if (_progressSeconds <= 0) {
    [self stopProgress];
    _progressShown = target;
    return;
  }
  if (_progressTimer) return;
  __weak SJGuideController* weakSelf = self;
  _progressTimer = [NSTimer timerWithTimeInterval:progressFrameSeconds
                                          repeats:YES
                                            block:^(NSTimer* timer) {
                                              SJGuideController* strongSelf = weakSelf;
                                              if (strongSelf) {
                                                [strongSelf stepProgress];
                                              } else {
                                                [timer invalidate];
                                              }
                                            }];
  [NSRunLoop.mainRunLoop addTimer:_progressTimer forMode:NSRunLoopCommonModes];
}

- (void)stepProgress {
  const double share =
      std::min(1.0, (CACurrentMediaTime() - _progressStartedAt) / _progressSeconds);
  _progressShown = _progressFrom + (_progressTarget - _progressFrom) * share;
  [_page showProgress:_progressShown];
  if (share >= 1) [self stopProgress];
}

- (void)stopProgress {
  [_progressTimer invalidate];
  _progressTimer = nil;
}

#pragma mark Actions

- (void)goNext:(id)sender {
  if (_model) _model->next();
}

- (void)goBack:(id)sender {
  if (_model) _model->back();
}

- (void)allowCamera:(id)sender {
  if (_model) _model->allowCamera();
}

- (void)askCamera:(id)sender {
  if (_model) _model->askCamera();
}

- (void)startLearning:(id)sender {
  if (_model) _model->startLearning();
}

- (void)acceptAnyway:(id)sender {
  if (_model) _model->acceptAnyway();
}

- (void)finish:(id)sender {
  if (_model) _model->finish();
}

@end
