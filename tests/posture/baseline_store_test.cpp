#include "posture/baseline_store.h"

#include <gtest/gtest.h>

#include <limits>

#include <nlohmann/json.hpp>

#include "platform/store.h"

namespace sodam {
namespace {

TEST(BaselineStore, BaselineOfAnotherVersionReadsAsNoneButStaysStored) {
  MemoryDefaults defaults;
  Baseline base;
  base.eyeDistance = 55;
  base.learnedAt = Date{700'000'000};
  BaselineStore::write(defaults, base);
  ASSERT_EQ(BaselineStore::read(defaults), base);

  auto old = base.toJson();
  old["version"] = 2;
  defaults.setJsonData(StoreKey::baseline, old);
  EXPECT_FALSE(BaselineStore::read(defaults));
  EXPECT_TRUE(defaults.contains(StoreKey::baseline));

  defaults.setData(StoreKey::baseline, Bytes{'{', 'x'});
  EXPECT_FALSE(BaselineStore::read(defaults));
}

TEST(BaselineStore, AbsentOrUnencodableBaselineClearsTheKey) {
  MemoryDefaults defaults;
  Baseline base;
  base.eyeDistance = 55;
  BaselineStore::write(defaults, base);
  BaselineStore::write(defaults, std::nullopt);
  EXPECT_FALSE(defaults.contains(StoreKey::baseline));

  BaselineStore::write(defaults, base);
  base.faceRatio = std::numeric_limits<double>::quiet_NaN();
  BaselineStore::write(defaults, base);
  EXPECT_FALSE(defaults.contains(StoreKey::baseline));
}

TEST(BaselineStore, FreshDefaultsHoldNoBaseline) {
  MemoryDefaults defaults;
  EXPECT_FALSE(BaselineStore::read(defaults));
}

}  // namespace
}  // namespace sodam
