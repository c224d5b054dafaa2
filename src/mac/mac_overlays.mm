#include "mac/mac_overlays.h"

#import <AppKit/AppKit.h>
#include <CoreGraphics/CoreGraphics.h>
#import <QuartzCore/QuartzCore.h>
#include <dlfcn.h>

#include <cmath>
#include <map>

#include "alerts/blur_alert.h"
#include "mac/cf_holder.h"
#import "mac/overlay_window.h"

namespace sodam {

namespace {

// The red frame: a wide faint glow under a narrow solid line.
constexpr CGFloat frameInset = 5;
constexpr CGFloat frameCornerRadius = 14;
constexpr CGFloat glowAlpha = 0.22;
constexpr CGFloat glowLineWidth = 28;
constexpr CGFloat solidAlpha = 1;
constexpr CGFloat solidLineWidth = 10;
constexpr double blinkLowestOpacity = 0.08;
constexpr double blinkSeconds = 0.5;

constexpr CGFloat probeSide = 40;
constexpr std::int32_t probeRadius = 20;

static_assert(NSVisualEffectMaterialHUDWindow == 13);

// The window server's background blur is private: it is looked up in the
// running process, once, instead of being linked.
using MainConnectionCall = int (*)();
using SetBlurRadiusCall = std::int32_t (*)(int connection, int windowNumber, int radius);

struct WindowServerBlur {
  MainConnectionCall mainConnection = nullptr;
  SetBlurRadiusCall setBlurRadius = nullptr;

  bool available() const { return mainConnection && setBlurRadius; }
};

WindowServerBlur resolveWindowServerBlur() {
  void* process = dlopen(nullptr, RTLD_NOW);
  if (!process) return {};
  auto connection = reinterpret_cast<MainConnectionCall>(dlsym(process, "CGSMainConnectionID"));
  auto blur =
      reinterpret_cast<SetBlurRadiusCall>(dlsym(process, "CGSSetWindowBackgroundBlurRadius"));
  if (!connection || !blur) return {};
  return {connection, blur};
}

const WindowServerBlur& windowServerBlur() {
  static const WindowServerBlur resolved = resolveWindowServerBlur();
  return resolved;
}

// The call's status; a failure status when the call is missing.
std::int32_t blurBehind(OverlayPresenter::Window window, std::int32_t radius) {
  const auto& blur = windowServerBlur();
  if (!blur.available()) return kCGErrorFailure;
  return blur.setBlurRadius(blur.mainConnection(), static_cast<int>(window), radius);
}

NSColor* black(double alpha) {
  return [NSColor.blackColor colorWithAlphaComponent:alpha];
}

CAShapeLayer* frameStroke(CGPathRef path, CGRect bounds, CGFloat scale, CGFloat alpha,
                          CGFloat lineWidth) {
  CAShapeLayer* stroke = [CAShapeLayer layer];
  stroke.frame = bounds;
  stroke.contentsScale = scale;
  stroke.path = path;
  stroke.fillColor = nullptr;
  stroke.strokeColor = [NSColor.systemRedColor colorWithAlphaComponent:alpha].CGColor;
  stroke.lineWidth = lineWidth;
  return stroke;
}

CABasicAnimation* blinkAnimation() {
  CABasicAnimation* blink = [CABasicAnimation animationWithKeyPath:@"opacity"];
  blink.fromValue = @1.0;
  blink.toValue = @(blinkLowestOpacity);
  blink.duration = blinkSeconds;
  blink.autoreverses = YES;
  blink.repeatCount = HUGE_VALF;
  blink.timingFunction =
      [CAMediaTimingFunction functionWithName:kCAMediaTimingFunctionEaseInEaseOut];
  return blink;
}

// The view hosts its layer rather than being backed by it, so AppKit leaves
// the layer's opacity and sublayers to the animation.
NSView* borderView(NSScreen* screen) {
  const NSRect bounds = {NSZeroPoint, screen.frame.size};
  const CGFloat scale = screen.backingScaleFactor;
  auto path =
      adopt(CGPathCreateWithRoundedRect(NSRectToCGRect(NSInsetRect(bounds, frameInset, frameInset)),
                                        frameCornerRadius, frameCornerRadius, nullptr));

  CALayer* holder = [CALayer layer];
  holder.frame = NSRectToCGRect(bounds);
  holder.contentsScale = scale;
  [holder addSublayer:frameStroke(path.get(), holder.bounds, scale, glowAlpha, glowLineWidth)];
  [holder addSublayer:frameStroke(path.get(), holder.bounds, scale, solidAlpha, solidLineWidth)];
  [holder addAnimation:blinkAnimation() forKey:@"blink"];

  NSView* view = [[NSView alloc] initWithFrame:bounds];
  view.layer = holder;
  view.wantsLayer = YES;
  return view;
}

NSVisualEffectView* behindWindowEffect(NSSize size) {
  NSVisualEffectView* effect =
      [[NSVisualEffectView alloc] initWithFrame:NSMakeRect(0, 0, size.width, size.height)];
  effect.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
  effect.material = NSVisualEffectMaterialHUDWindow;
  effect.blendingMode = NSVisualEffectBlendingModeBehindWindow;
  effect.state = NSVisualEffectStateActive;
  return effect;
}

void showEffectView(NSWindow* window, double alpha) {
  window.contentView = behindWindowEffect(window.frame.size);
  window.alphaValue = alpha;
}

SJOverlayWindow* blurWindow(NSScreen* screen, bool effectView, double alpha) {
  SJOverlayWindow* window = [SJOverlayWindow overlayForScreen:screen];
  // One above the floating level: the pill and the red frame stay above it.
  window.level = CGWindowLevelForKey(kCGFloatingWindowLevelKey) + 1;
  window.backgroundColor = black(BlurAlert::faintAlpha);
  window.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
  if (effectView) showEffectView(window, alpha);
  return window;
}

}  // namespace

struct MacOverlays::Windows {
  std::map<Window, NSWindow*> byNumber;

  // Shows the window over every other application's and holds it.
  Window keep(NSWindow* window) {
    [window orderFrontRegardless];
    const Window number = window.windowNumber;
    byNumber[number] = window;
    return number;
  }

  NSWindow* find(Window number) const {
    const auto found = byNumber.find(number);
    return found == byNumber.end() ? nil : found->second;
  }
};

MacOverlays::MacOverlays() : windows_(std::make_unique<Windows>()) {}

MacOverlays::~MacOverlays() {
  for (const auto& [number, window] : windows_->byNumber)
    [window orderOut:nil];
}

std::vector<OverlayPresenter::Window> MacOverlays::makeBorderWindows() {
  std::vector<Window> made;
  for (NSScreen* screen in NSScreen.screens) {
    SJOverlayWindow* window = [SJOverlayWindow overlayForScreen:screen];
    window.contentView = borderView(screen);
    made.push_back(windows_->keep(window));
  }
  return made;
}

std::vector<OverlayPresenter::Window> MacOverlays::makeBlurWindows(bool effectView, double alpha) {
  std::vector<Window> made;
  for (NSScreen* screen in NSScreen.screens)
    made.push_back(windows_->keep(blurWindow(screen, effectView, alpha)));
  return made;
}

void MacOverlays::orderOut(Window window) {
  const auto found = windows_->byNumber.find(window);
  if (found == windows_->byNumber.end()) return;
  [found->second orderOut:nil];
  windows_->byNumber.erase(found);
}

bool MacOverlays::blurCallAvailable() {
  return windowServerBlur().available();
}

void MacOverlays::setBackgroundAlpha(Window window, double blackAlpha) {
  windows_->find(window).backgroundColor = black(blackAlpha);
}

std::int32_t MacOverlays::setBlurRadius(Window window, std::int32_t radius) {
  return blurBehind(window, radius);
}

void MacOverlays::useEffectView(Window window, double alpha) {
  if (NSWindow* found = windows_->find(window)) showEffectView(found, alpha);
}

void MacOverlays::setAlpha(Window window, double alpha) {
  windows_->find(window).alphaValue = alpha;
}

std::optional<std::int32_t> MacOverlays::selfTest() {
  NSScreen* screen = NSScreen.mainScreen;
  if (!windowServerBlur().available() || !screen) return std::nullopt;
  const NSRect corner = {screen.frame.origin, NSMakeSize(probeSide, probeSide)};
  SJOverlayWindow* probe = [SJOverlayWindow overlayWithFrame:corner];
  probe.backgroundColor = black(BlurAlert::faintAlpha);
  [probe orderFrontRegardless];
  const std::int32_t status = blurBehind(probe.windowNumber, probeRadius);
  [probe orderOut:nil];
  return status;
}

}  // namespace sodam
