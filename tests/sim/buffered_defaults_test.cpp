#include "sim/buffered_defaults.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

TEST(BufferedDefaults, HoldsChangesUntilAFlushWritesTheLastOfEachKeyOnce) {
  MemoryDefaults store;
  store.setInteger("kept", 1);
  store.setInteger("dropped", 2);
  const int before = store.writes();
  {
    BufferedDefaults buffered(store);
    EXPECT_EQ(buffered.integer("kept").value, 1);  // reads fall through
    for (int i = 0; i < 50; ++i)
      buffered.setInteger("ticks", i);
    buffered.remove("dropped");
    buffered.setString("kept", "changed");
    EXPECT_EQ(buffered.integer("ticks").value, 49);
    EXPECT_FALSE(buffered.object("dropped"));
    EXPECT_EQ(buffered.string("kept").value, "changed");
    EXPECT_EQ(store.writes(), before);  // nothing reached the store yet
    EXPECT_TRUE(buffered.pending());

    buffered.flush();
    EXPECT_EQ(store.writes(), before + 3);
    EXPECT_EQ(store.integer("ticks").value, 49);
    EXPECT_FALSE(store.contains("dropped"));
    EXPECT_FALSE(buffered.pending());
    buffered.setInteger("late", 7);  // written when the buffer goes
  }
  EXPECT_EQ(store.integer("late").value, 7);
}

}  // namespace
}  // namespace sodam
