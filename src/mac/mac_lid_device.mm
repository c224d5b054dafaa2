#include "mac/mac_lid_device.h"

#include <IOKit/hid/IOHIDDevice.h>
#include <IOKit/hid/IOHIDKeys.h>

#include <vector>

namespace sodam {

namespace {

// The hinge sensor: its vendor and product ids, the sensor usage page and the
// sensor's usage on that page.
constexpr std::int32_t sensorVendorId = 0x05AC;
constexpr std::int32_t sensorProductId = 0x8104;
constexpr std::int32_t sensorUsagePage = 0x20;
constexpr std::int32_t sensorUsage = 0x8A;

CFHolder<CFNumberRef> number(std::int32_t value) {
  return adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &value));
}

CFHolder<CFDictionaryRef> sensorMatching() {
  auto vendor = number(sensorVendorId);
  auto product = number(sensorProductId);
  auto page = number(sensorUsagePage);
  auto usage = number(sensorUsage);
  const void* keys[] = {CFSTR(kIOHIDVendorIDKey), CFSTR(kIOHIDProductIDKey),
                        CFSTR(kIOHIDPrimaryUsagePageKey), CFSTR(kIOHIDPrimaryUsageKey)};
  const void* values[] = {vendor.get(), product.get(), page.get(), usage.get()};
  return adopt(CFDictionaryCreate(kCFAllocatorDefault, keys, values, 4,
                                  &kCFTypeDictionaryKeyCallBacks,
                                  &kCFTypeDictionaryValueCallBacks));
}

std::vector<IOHIDDeviceRef> devicesOf(IOHIDManagerRef manager) {
  auto set = adopt(IOHIDManagerCopyDevices(manager));
  if (!set) return {};
  std::vector<const void*> raw(static_cast<std::size_t>(CFSetGetCount(set.get())));
  CFSetGetValues(set.get(), raw.data());
  std::vector<IOHIDDeviceRef> devices;
  for (const void* device : raw) {
    devices.push_back(static_cast<IOHIDDeviceRef>(const_cast<void*>(device)));
  }
  return devices;
}

// The set's references end with the set, so the kept device is retained.
CFHolder<IOHIDDeviceRef> firstThatOpens(IOHIDManagerRef manager) {
  for (IOHIDDeviceRef device : devicesOf(manager)) {
    if (IOHIDDeviceOpen(device, kIOHIDOptionsTypeNone) == kIOReturnSuccess) {
      return retain(device);
    }
  }
  return {};
}

}  // namespace

std::unique_ptr<MacLidDevice> MacLidDevice::open() {
  auto manager = adopt(IOHIDManagerCreate(kCFAllocatorDefault, kIOHIDOptionsTypeNone));
  if (!manager) return nullptr;
  auto matching = sensorMatching();
  IOHIDManagerSetDeviceMatching(manager.get(), matching.get());
  // The manager's open fails when any one match refuses; the devices are
  // still listed and each gets its own chance below.
  IOHIDManagerOpen(manager.get(), kIOHIDOptionsTypeNone);
  auto device = firstThatOpens(manager.get());
  if (!device) {
    IOHIDManagerClose(manager.get(), kIOHIDOptionsTypeNone);
    return nullptr;
  }
  return std::unique_ptr<MacLidDevice>(new MacLidDevice(std::move(manager), std::move(device)));
}

MacLidDevice::MacLidDevice(CFHolder<IOHIDManagerRef> manager, CFHolder<IOHIDDeviceRef> device)
    : manager_(std::move(manager)), device_(std::move(device)) {}

MacLidDevice::~MacLidDevice() {
  IOHIDDeviceClose(device_.get(), kIOHIDOptionsTypeNone);
  IOHIDManagerClose(manager_.get(), kIOHIDOptionsTypeNone);
}

std::optional<std::size_t> MacLidDevice::featureReport(std::uint8_t reportId,
                                                       std::span<std::uint8_t> buffer) {
  auto length = static_cast<CFIndex>(buffer.size());
  IOReturn result = IOHIDDeviceGetReport(device_.get(), kIOHIDReportTypeFeature, reportId,
                                         buffer.data(), &length);
  if (result != kIOReturnSuccess || length < 0) return std::nullopt;
  return static_cast<std::size_t>(length);
}

}  // namespace sodam
