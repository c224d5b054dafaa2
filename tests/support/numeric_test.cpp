#include "support/numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/text.h"

namespace sodam {
namespace {

TEST(Numeric, MedianOfOddEvenAndEmptyLists) {
  EXPECT_EQ(median({3, 1, 2}), 2.0);
  EXPECT_EQ(median({4, 1, 3, 2}), 2.5);
  EXPECT_EQ(median({5}), 5.0);
  EXPECT_EQ(median({}), std::nullopt);
}

TEST(Numeric, QuantileTakesTheRoundedIndexWithoutInterpolation) {
  struct Case {
    std::vector<double> values;
    double q;
    double expected;
  };
  const Case cases[] = {
      {{4, 3, 2, 1}, 0.3, 2},  // index round(0.9) = 1
      {{1, 2, 3, 4}, 0.5, 3},  // index round(1.5) = 2: halves away from zero
      {{1, 2, 3}, 0.0, 1},    {{1, 2, 3}, 1.0, 3},
      {{1, 2, 3}, -1.0, 1},  // clamped to the first element
      {{1, 2, 3}, 7.0, 3},   // clamped to the last
  };
  for (const auto& c : cases)
    EXPECT_EQ(quantile(c.values, c.q), c.expected) << c.q;
  EXPECT_EQ(quantile({}, 0.3), std::nullopt);
}

TEST(Numeric, NaNIsLeftOutOfMedianAndQuantile) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(median({nan, 1, 3}), 2.0);
  EXPECT_EQ(median({nan, nan}), std::nullopt);
  EXPECT_EQ(quantile({nan, 5}, 0.3), 5.0);
}

TEST(Numeric, ClampRaisesFirstThenLowers) {
  EXPECT_EQ(clamp(-3, -1, 1), -1);
  EXPECT_EQ(clamp(3, -1, 1), 1);
  EXPECT_EQ(clamp(0.5, -1, 1), 0.5);
  // A low above the high: the value is raised to low, then lowered to high.
  EXPECT_EQ(clamp(0, 5, 2), 2);
}

TEST(Numeric, AnglesAndDistance) {
  EXPECT_DOUBLE_EQ(deg(M_PI / 2), 90);
  EXPECT_DOUBLE_EQ(rad(180), M_PI);
  EXPECT_DOUBLE_EQ(distance({0, 0}, {3, 4}), 5);
}

TEST(Numeric, RoundingTakesHalvesAwayFromZero) {
  EXPECT_EQ(roundedInt(2.5), 3);
  EXPECT_EQ(roundedInt(-2.5), -3);
  EXPECT_EQ(roundedInt(37.9), 38);
  EXPECT_EQ(roundedInt(0.49), 0);
}

TEST(Text, FormatAndFill) {
  EXPECT_EQ(format("%+.1f|%.1f", 2.25, 0.04), "+2.2|0.0");
  EXPECT_EQ(format("%s", ""), "");
  EXPECT_EQ(fill("고개를 {n}도 숙이고 있어요", {{"n", "15"}}), "고개를 15도 숙이고 있어요");
  EXPECT_EQ(fill("{side} 어깨가 {n}도 처졌어요", {{"n", "6"}, {"side", "오른쪽"}}),
            "오른쪽 어깨가 6도 처졌어요");
  EXPECT_EQ(fill("{unknown} {n}", {{"n", "1"}}), "{unknown} 1");
  EXPECT_EQ(fill("no braces {", {}), "no braces {");
}

}  // namespace
}  // namespace sodam
