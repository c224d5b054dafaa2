#include "linux/data_pieces.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace sodam::pieces {

namespace {

constexpr std::uint64_t golden = 0x9E3779B97F4A7C15ULL;

// The finaliser of splitmix64: every input bit moves every output bit.
constexpr std::uint64_t mix(std::uint64_t z) {
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

// One random-looking number per byte value, the same in every build.
constexpr std::array<std::uint64_t, 256> gear = [] {
  std::array<std::uint64_t, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = mix(golden * (i + 1));
  return table;
}();

// A cut after a byte whose rolling hash has its top 13 bits clear: one byte
// in 8192. The hash shifts left once a byte, so its top bits depend on the
// last 64 bytes alone, and the same bytes give the same cut wherever they lie.
constexpr int cutBits = 13;

}  // namespace

std::vector<std::size_t> cuts(std::span<const std::uint8_t> bytes) {
  std::vector<std::size_t> ends;
  std::size_t start = 0;
  while (start < bytes.size()) {
    const std::size_t limit = std::min(bytes.size(), start + largest);
    std::size_t end = limit;
    std::uint64_t hash = 0;
    // The hash runs from 64 bytes before the earliest cut, so that it is the
    // hash of the same 64 bytes wherever the piece began.
    const std::size_t earliest = start + smallest;
    for (std::size_t i = earliest > 64 ? earliest - 64 : 0; i < limit; ++i) {
      hash = (hash << 1) + gear[bytes[i]];
      if (i + 1 >= earliest && (hash >> (64 - cutBits)) == 0) {
        end = i + 1;
        break;
      }
    }
    ends.push_back(end);
    start = end;
  }
  return ends;
}

std::uint64_t digest(std::span<const std::uint8_t> bytes) {
  std::uint64_t hash = mix(golden ^ bytes.size());
  std::size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + i, 8);
    hash = (hash ^ mix(word + i)) * golden;
    hash ^= hash >> 29;
  }
  std::uint64_t tail = 0;
  if (i < bytes.size()) std::memcpy(&tail, bytes.data() + i, bytes.size() - i);
  return mix(hash ^ mix(tail + i + 1));
}

}  // namespace sodam::pieces
