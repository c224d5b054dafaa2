#include "linux/linux_power_source.h"

#include <gtest/gtest.h>

#include <fstream>

namespace sodam {
namespace {

namespace fs = std::filesystem;

class LinuxPowerSourceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "sodam-power-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    root = pattern;
  }
  void TearDown() override { fs::remove_all(root); }

  void supply(const std::string& name, std::vector<std::pair<std::string, std::string>> files) {
    fs::create_directories(root / name);
    for (const auto& [file, text] : files)
      std::ofstream(root / name / file) << text << "\n";
  }

  fs::path root;
};

TEST_F(LinuxPowerSourceTest, LaptopOnMainsAndOnBattery) {
  supply("AC", {{"type", "Mains"}, {"online", "1"}});
  supply("BAT0", {{"type", "Battery"}, {"status", "Charging"}, {"capacity", "80"}});
  LinuxPowerSource source(root);
  EXPECT_FALSE(source.providingBattery());
  ASSERT_EQ(source.capacities().size(), 1u);
  EXPECT_EQ(source.capacities()[0].current, 80);
  EXPECT_EQ(source.capacities()[0].max, 100);

  supply("AC", {{"online", "0"}});
  supply("BAT0", {{"status", "Not charging"}});
  EXPECT_TRUE(source.providingBattery()) << "mains listed and offline";
  EXPECT_EQ(Power(source).label(), "배터리 80%");
}

TEST_F(LinuxPowerSourceTest, BatteryWithoutPercentUsesEnergyOrCharge) {
  supply("BAT1", {{"type", "Battery"},
                  {"status", "Discharging"},
                  {"energy_now", "9600000"},
                  {"energy_full", "48000000"}});
  supply("BAT2", {{"type", "Battery"}, {"charge_now", "oops"}, {"charge_full", "3000"}});
  LinuxPowerSource source(root);
  EXPECT_TRUE(source.providingBattery());
  auto capacities = source.capacities();
  ASSERT_EQ(capacities.size(), 2u);
  EXPECT_EQ(Power(source).batteryLevel(), 20);
  EXPECT_FALSE(capacities[1].current);
  EXPECT_TRUE(Power(source).saving());
}

TEST_F(LinuxPowerSourceTest, MachineWithoutSuppliesIsOnMains) {
  LinuxPowerSource source(root / "missing");
  EXPECT_FALSE(source.providingBattery());
  EXPECT_TRUE(source.capacities().empty());
  EXPECT_EQ(Power(source).label(), "전원 연결");
}

}  // namespace
}  // namespace sodam
