#pragma once

// Created and destroyed on the main thread; reports are read only on the lid
// sensor's serial queue. It has no callbacks.

#include <IOKit/hid/IOHIDManager.h>

#include <memory>

#include "mac/cf_holder.h"
#include "platform/lid_sensor.h"

namespace sodam {

// The label of the serial queue every lid report is read on.
inline constexpr const char* lidQueueLabel = "kr.lumenfold.sodamjari.lid";

// The hinge-angle sensor as a HID device, found once by its vendor, product
// and sensor usage. There is no later re-scan: a machine whose sensor does not
// open at start has no lid angle for the life of the process.
class MacLidDevice final : public LidDevice {
 public:
  // The first matching device that opens; nothing when none does.
  static std::unique_ptr<MacLidDevice> open();
  ~MacLidDevice() override;
  MacLidDevice(const MacLidDevice&) = delete;
  MacLidDevice& operator=(const MacLidDevice&) = delete;

  std::optional<std::size_t> featureReport(std::uint8_t reportId,
                                           std::span<std::uint8_t> buffer) override;

 private:
  MacLidDevice(CFHolder<IOHIDManagerRef> manager, CFHolder<IOHIDDeviceRef> device);

  CFHolder<IOHIDManagerRef> manager_;
  CFHolder<IOHIDDeviceRef> device_;
};

}  // namespace sodam
