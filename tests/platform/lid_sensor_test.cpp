#include "platform/lid_sensor.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct FakeLidDevice : LidDevice {
  std::vector<std::uint8_t> report;
  bool fails = false;
  std::optional<std::size_t> featureReport(std::uint8_t reportId,
                                           std::span<std::uint8_t> buffer) override {
    if (fails || reportId != 1) return std::nullopt;
    std::size_t count = std::min(report.size(), buffer.size());
    std::memcpy(buffer.data(), report.data(), count);
    return count;
  }
};

TEST(LidSensorTest, DecodesLittleEndianDegreesUpTo360) {
  struct Case {
    std::vector<std::uint8_t> report;
    std::optional<double> angle;
  };
  const std::vector<Case> cases{
      {{1, 0x68, 1}, 360}, {{1, 0x69, 1}, std::nullopt}, {{1, 105, 0, 9, 9, 9, 9, 9}, 105},
      {{1, 0, 0}, 0},      {{1, 105}, std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LidSensor::decode(c.report), c.angle) << c.report.size() << " bytes";
  }
}

TEST(LidSensorTest, AngleIsAbsentWithoutADeviceOrAGoodRead) {
  ManualClock clock;
  ManualScheduler main(clock);
  InlineQueue queue;
  EXPECT_FALSE(LidSensor(nullptr, queue, main).angle());

  auto device = std::make_unique<FakeLidDevice>();
  FakeLidDevice* fake = device.get();
  LidSensor sensor(std::move(device), queue, main);
  fake->report = {1, 112, 0};
  EXPECT_EQ(sensor.angle(), 112);
  fake->report = {1, 112};
  EXPECT_FALSE(sensor.angle());
  fake->fails = true;
  EXPECT_FALSE(sensor.angle());
}

TEST(LidSensorTest, ReadAnswersOnTheMainThreadAndNotAfterTheSensorIsGone) {
  ManualClock clock;
  ManualScheduler main(clock);
  InlineQueue queue;
  auto device = std::make_unique<FakeLidDevice>();
  device->report = {1, 98, 0};
  auto sensor = std::make_unique<LidSensor>(std::move(device), queue, main);

  std::vector<std::optional<double>> answers;
  sensor->read([&](std::optional<double> angle) { answers.push_back(angle); });
  EXPECT_TRUE(answers.empty()) << "the answer waits for the main loop";
  main.runPosted();
  EXPECT_EQ(answers, (std::vector<std::optional<double>>{98}));

  sensor->read([&](std::optional<double> angle) { answers.push_back(angle); });
  sensor.reset();
  main.runPosted();
  EXPECT_EQ(answers.size(), 1u);
}

}  // namespace
}  // namespace sodam
