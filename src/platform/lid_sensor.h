#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "support/scheduler.h"
#include "support/serial_queue.h"
#include "support/weak_call.h"

namespace sodam {

// The lid-angle HID device as the platform opened it. Called only on the
// sensor's serial queue.
class LidDevice {
 public:
  virtual ~LidDevice() = default;
  // Reads a feature report into the buffer; the byte count, or nothing when
  // the read failed.
  virtual std::optional<std::size_t> featureReport(std::uint8_t reportId,
                                                   std::span<std::uint8_t> buffer) = 0;
};

// The hinge angle in degrees. `angle` reads synchronously and may block;
// `read` reads on the sensor's queue and answers on the main thread.
class LidSensor {
 public:
  // device may be null: a machine without the sensor has no lid angle.
  LidSensor(std::unique_ptr<LidDevice> device, SerialQueue& queue, Scheduler& main);
  // Waits for a read already running on the queue, which still uses the device.
  ~LidSensor();
  LidSensor(const LidSensor&) = delete;
  LidSensor& operator=(const LidSensor&) = delete;

  std::optional<double> angle();
  void read(std::function<void(std::optional<double>)> done);

  // Bytes 1 and 2, little-endian, are whole degrees; above 360 is no angle.
  static std::optional<double> decode(std::span<const std::uint8_t> report);

 private:
  std::unique_ptr<LidDevice> device_;
  SerialQueue& queue_;
  Scheduler& main_;
  LifeToken<LidSensor> self_ = lifeToken(this);
};

}  // namespace sodam
