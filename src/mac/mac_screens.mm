#include "mac/mac_screens.h"

#import <AppKit/AppKit.h>
#include <CoreGraphics/CoreGraphics.h>

namespace sodam {

namespace {

Rect rectFrom(NSRect rect) {
  return Rect{{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}

// The notch's height; screens without one, and systems before the notch
// existed, report none.
double safeAreaTop(NSScreen* screen) {
  if (@available(macOS 12.0, *)) return screen.safeAreaInsets.top;
  return 0;
}

bool isBuiltIn(NSScreen* screen) {
  id number = screen.deviceDescription[@"NSScreenNumber"];
  if (![number isKindOfClass:NSNumber.class]) return false;
  return CGDisplayIsBuiltin(static_cast<CGDirectDisplayID>([number unsignedIntValue]));
}

}  // namespace

std::vector<ScreenInfo> MacScreens::screens() const {
  NSScreen* main = NSScreen.mainScreen;
  std::vector<ScreenInfo> result;
  for (NSScreen* screen in NSScreen.screens) {
    result.push_back(ScreenInfo{
        .frame = rectFrom(screen.frame),
        .visibleFrame = rectFrom(screen.visibleFrame),
        .safeAreaTop = safeAreaTop(screen),
        .builtIn = isBuiltIn(screen),
        .main = [screen isEqual:main],
    });
  }
  return result;
}

}  // namespace sodam
