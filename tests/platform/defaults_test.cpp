#include "platform/defaults.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <limits>

namespace sodam {
namespace {

TEST(DefaultsTest, TypedReadsTellAbsentFromWrongType) {
  MemoryDefaults defaults;
  EXPECT_TRUE(defaults.boolean("k").absent());
  defaults.setString("k", "yes");
  auto asBool = defaults.boolean("k");
  EXPECT_FALSE(asBool.value);
  EXPECT_TRUE(asBool.wrongType);
  EXPECT_TRUE(defaults.date("k").wrongType);

  // Numbers cross between integer and double only where nothing is lost.
  defaults.setDouble("n", 3.0);
  EXPECT_EQ(defaults.integer("n").value, 3);
  defaults.setDouble("n", 3.5);
  EXPECT_TRUE(defaults.integer("n").wrongType);
  defaults.setDouble("n", 1e300);
  EXPECT_TRUE(defaults.integer("n").wrongType);
  defaults.setInteger("n", 7);
  EXPECT_EQ(defaults.real("n").value, 7.0);

  defaults.remove("n");
  EXPECT_TRUE(defaults.integer("n").absent());
}

TEST(DefaultsTest, JsonDataThatCannotBeEncodedClearsTheKey) {
  MemoryDefaults defaults;
  defaults.setJsonData("r", nlohmann::json{{"a", 1.5}});
  EXPECT_EQ(defaults.jsonData("r"), (nlohmann::json{{"a", 1.5}}));
  defaults.setJsonData("r", nlohmann::json{{"a", std::numeric_limits<double>::infinity()}});
  EXPECT_FALSE(defaults.contains("r"));

  defaults.setData("r", Bytes{'[', '1'});
  EXPECT_FALSE(defaults.jsonData("r"));
}

}  // namespace
}  // namespace sodam
