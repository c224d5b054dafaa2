#include "linux/linux_power_source.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <string>
#include <vector>

namespace sodam {

namespace {

struct Supply {
  std::string type;
  std::string status;
  std::optional<std::int64_t> online;
  std::optional<std::int64_t> capacity;
  std::optional<std::int64_t> now;
  std::optional<std::int64_t> full;
};

std::string firstLine(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::string line;
  std::getline(in, line);
  while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
    line.pop_back();
  return line;
}

std::optional<std::int64_t> number(const std::filesystem::path& file) {
  std::string text = firstLine(file);
  std::int64_t value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

// Energy (µWh) when the battery reports it, else charge (µAh).
std::optional<std::int64_t> firstNumber(const std::filesystem::path& dir, const char* a,
                                        const char* b) {
  if (auto value = number(dir / a)) return value;
  return number(dir / b);
}

std::vector<Supply> supplies(const std::filesystem::path& root) {
  std::vector<std::filesystem::path> dirs;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(root, error)) {
    dirs.push_back(entry.path());
  }
  std::sort(dirs.begin(), dirs.end());
  std::vector<Supply> found;
  for (const auto& dir : dirs) {
    found.push_back({firstLine(dir / "type"), firstLine(dir / "status"), number(dir / "online"),
                     number(dir / "capacity"), firstNumber(dir, "energy_now", "charge_now"),
                     firstNumber(dir, "energy_full", "charge_full")});
  }
  return found;
}

bool isBattery(const Supply& supply) {
  return supply.type == "Battery";
}

bool isExternal(const Supply& supply) {
  return supply.type == "Mains" || supply.type.starts_with("USB");
}

}  // namespace

bool LinuxPowerSource::providingBattery() const {
  auto all = supplies(root_);
  auto any = [&all](auto test) { return std::any_of(all.begin(), all.end(), test); };
  if (any([](const Supply& s) { return isExternal(s) && s.online == 1; })) return false;
  if (any([](const Supply& s) { return isBattery(s) && s.status == "Discharging"; })) return true;
  return any(isBattery) && any(isExternal);
}

std::vector<PowerSource::Capacity> LinuxPowerSource::capacities() const {
  std::vector<Capacity> found;
  for (const auto& supply : supplies(root_)) {
    if (!isBattery(supply)) continue;
    if (supply.capacity) {
      found.push_back({supply.capacity, 100});
    } else {
      found.push_back({supply.now, supply.full});
    }
  }
  return found;
}

}  // namespace sodam
