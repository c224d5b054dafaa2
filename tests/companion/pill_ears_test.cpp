#include "companion/pill_ears.h"

#include <gtest/gtest.h>

#include <utility>

namespace sodam {
namespace {

TEST(PillEars, FollowTheStoredRawOrderAndFallBackToTheCat) {
  for (auto [raw, ears] : {std::pair{0, PillEars::cat},
                           {2, PillEars::bunny},
                           {8, PillEars::horns},
                           {11, PillEars::unicorn},
                           {12, PillEars::none},
                           {13, PillEars::cat},
                           {-1, PillEars::cat}}) {
    EXPECT_EQ(pillEarsFrom(raw), ears) << raw;
  }
}

}  // namespace
}  // namespace sodam
