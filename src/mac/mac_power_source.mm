#include "mac/mac_power_source.h"

#import <AppKit/AppKit.h>
#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/ps/IOPSKeys.h>
#include <IOKit/ps/IOPowerSources.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include "mac/cf_holder.h"
#include "mac/cf_values.h"

namespace sodam {

namespace {

// On-screen windows only, without desktop elements.
constexpr CGWindowListOption visibleWindows =
    kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements;
static_assert(visibleWindows == 17);

CFHolder<CFTypeRef> powerSourcesInfo() {
  return adopt(IOPSCopyPowerSourcesInfo());
}

std::int64_t assertionCount(CFDictionaryRef status, CFStringRef type) {
  return cf::integer(status, type).value_or(0);
}

PowerSource::Window windowFrom(CFDictionaryRef info) {
  CFDictionaryRef bounds = cf::dictionary(info, kCGWindowBounds);
  return PowerSource::Window{
      .ownerPid = cf::integer(info, kCGWindowOwnerPID),
      .layer = cf::integer(info, kCGWindowLayer),
      .width = cf::real(bounds, CFSTR("Width")),
      .height = cf::real(bounds, CFSTR("Height")),
  };
}

}  // namespace

bool MacPowerSource::providingBattery() const {
  auto info = powerSourcesInfo();
  if (!info) return false;
  CFStringRef type = IOPSGetProvidingPowerSourceType(info.get());
  return type && CFEqual(type, CFSTR(kIOPSBatteryPowerValue));
}

std::vector<PowerSource::Capacity> MacPowerSource::capacities() const {
  auto info = powerSourcesInfo();
  if (!info) return {};
  auto list = adopt(IOPSCopyPowerSourcesList(info.get()));
  if (!list) return {};
  std::vector<Capacity> result;
  for (CFIndex i = 0, n = CFArrayGetCount(list.get()); i < n; ++i) {
    CFDictionaryRef description =
        IOPSGetPowerSourceDescription(info.get(), CFArrayGetValueAtIndex(list.get(), i));
    result.push_back({cf::integer(description, CFSTR(kIOPSCurrentCapacityKey)),
                      cf::integer(description, CFSTR(kIOPSMaxCapacityKey))});
  }
  return result;
}

bool MacPowerSource::lowPowerMode() const {
  return NSProcessInfo.processInfo.lowPowerModeEnabled;
}

double MacPowerSource::idleSeconds() const {
  return CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateCombinedSessionState,
                                                kCGAnyInputEventType);
}

std::optional<PowerSource::DisplayAssertions> MacPowerSource::displayAssertions() const {
  CFDictionaryRef raw = nullptr;
  if (IOPMCopyAssertionsStatus(&raw) != kIOReturnSuccess) {
    if (raw) CFRelease(raw);
    return std::nullopt;
  }
  auto status = adopt(raw);
  return DisplayAssertions{
      .preventUserIdleDisplaySleep =
          assertionCount(status.get(), kIOPMAssertionTypePreventUserIdleDisplaySleep),
      .noDisplaySleep = assertionCount(status.get(), kIOPMAssertionTypeNoDisplaySleep),
  };
}

std::optional<std::int64_t> MacPowerSource::frontmostPid() const {
  NSRunningApplication* front = NSWorkspace.sharedWorkspace.frontmostApplication;
  if (!front) return std::nullopt;
  return front.processIdentifier;
}

std::optional<std::vector<PowerSource::Window>> MacPowerSource::windows() const {
  auto list = adopt(CGWindowListCopyWindowInfo(visibleWindows, kCGNullWindowID));
  if (!list) return std::nullopt;
  std::vector<Window> result;
  for (CFIndex i = 0, n = CFArrayGetCount(list.get()); i < n; ++i) {
    CFTypeRef entry = CFArrayGetValueAtIndex(list.get(), i);
    if (!entry || CFGetTypeID(entry) != CFDictionaryGetTypeID()) continue;
    result.push_back(windowFrom(static_cast<CFDictionaryRef>(entry)));
  }
  return result;
}

std::vector<Size> MacPowerSource::screenSizes() const {
  std::vector<Size> sizes;
  for (NSScreen* screen in NSScreen.screens) {
    NSRect frame = screen.frame;
    sizes.push_back({frame.size.width, frame.size.height});
  }
  return sizes;
}

std::optional<bool> MacPowerSource::sessionScreenLocked() const {
  auto session = adopt(CGSessionCopyCurrentDictionary());
  if (!session) return std::nullopt;
  return cf::boolean(session.get(), CFSTR("CGSSessionScreenIsLocked"));
}

}  // namespace sodam
