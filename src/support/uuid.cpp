#include "support/uuid.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <random>

#include "support/text.h"

namespace sodam {

std::string newUuid() {
  static std::mutex mutex;
  static std::mt19937_64 generator{std::random_device{}()};
  std::array<std::uint8_t, 16> bytes{};
  {
    std::lock_guard lock(mutex);
    for (auto& byte : bytes)
      byte = static_cast<std::uint8_t>(generator());
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the standard variant
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += format("%02X", bytes[i]);
  }
  return text;
}

}  // namespace sodam
