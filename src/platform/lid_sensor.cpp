#include "platform/lid_sensor.h"

#include <algorithm>
#include <array>

namespace sodam {

namespace {

constexpr std::uint8_t angleReportId = 1;
constexpr std::size_t reportBytes = 8;
constexpr double largestAngle = 360;

}  // namespace

LidSensor::LidSensor(std::unique_ptr<LidDevice> device, SerialQueue& queue, Scheduler& main)
    : device_(std::move(device)), queue_(queue), main_(main) {}

LidSensor::~LidSensor() {
  *self_ = nullptr;
  queue_.sync([] {});
}

std::optional<double> LidSensor::angle() {
  if (!device_) return std::nullopt;
  std::array<std::uint8_t, reportBytes> buffer{};
  auto count = device_->featureReport(angleReportId, buffer);
  if (!count) return std::nullopt;
  return decode(std::span<const std::uint8_t>(buffer.data(), std::min(*count, buffer.size())));
}

void LidSensor::read(std::function<void(std::optional<double>)> done) {
  // The answer crosses to the main thread as a value; a sensor gone by then
  // answers nobody. The destructor waits for the queue, so the read itself
  // always finds the device.
  auto answer = weakCall(self_, [done = std::move(done)](
                                    LidSensor&, std::optional<double> degrees) { done(degrees); });
  queue_.async([this, answer = std::move(answer)] {
    main_.post([answer, degrees = angle()] { answer(degrees); });
  });
}

std::optional<double> LidSensor::decode(std::span<const std::uint8_t> report) {
  if (report.size() < 3) return std::nullopt;
  unsigned degrees = report[1] | (unsigned{report[2]} << 8);
  if (degrees > largestAngle) return std::nullopt;
  return static_cast<double>(degrees);
}

}  // namespace sodam
