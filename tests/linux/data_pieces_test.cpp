#include "linux/data_pieces.h"

#include <gtest/gtest.h>

#include <random>

namespace sodam {
namespace {

std::vector<std::uint8_t> noise(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::uint8_t> bytes(size);
  for (auto& byte : bytes)
    byte = static_cast<std::uint8_t>(random());
  return bytes;
}

TEST(DataPieces, PiecesStayWithinTheirBoundsAndCoverTheValue) {
  const std::vector<std::vector<std::uint8_t>> values{{},
                                                      noise(1, 1),
                                                      noise(pieces::smallest, 2),
                                                      noise(1'000'000, 3),
                                                      std::vector<std::uint8_t>(500'000, 0)};
  for (const auto& value : values) {
    const auto ends = pieces::cuts(value);
    std::size_t start = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
      const std::size_t size = ends[i] - start;
      EXPECT_LE(size, pieces::largest) << value.size();
      if (i + 1 < ends.size()) {
        EXPECT_GE(size, pieces::smallest) << value.size();
      }
      start = ends[i];
    }
    EXPECT_EQ(start, value.size());
    EXPECT_EQ(ends.empty(), value.empty());
  }
  const auto many = pieces::cuts(noise(1'000'000, 3));
  EXPECT_GT(many.size(), 40u) << "cuts fall well before the largest piece";
}

TEST(DataPieces, DigestsTellApartPiecesThatDifferInOneByteOrInOrder) {
  const auto value = noise(10'000, 6);
  auto changed = value;
  changed[9'999] ^= 1;
  auto swapped = value;
  std::swap(swapped[0], swapped[8]);
  auto longer = value;
  longer.push_back(0);
  const auto digest = pieces::digest(value);
  EXPECT_EQ(digest, pieces::digest(value));
  for (const auto& other : {changed, swapped, longer})
    EXPECT_NE(digest, pieces::digest(other));
}

}  // namespace
}  // namespace sodam
