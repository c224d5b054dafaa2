#include "support/json.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

using nlohmann::json;

TEST(Json, RequiredFieldsReadOnlyTheirOwnType) {
  const auto record = json::parse(R"({"d": 2.5, "i": 3, "f": 3.0, "big": 3000000000,
      "b": true, "s": "hi", "n": null, "at": 700000000.25})");
  EXPECT_EQ(jsonRequired<double>(record, "i"), 3.0);
  EXPECT_EQ(jsonRequired<int>(record, "f"), 3);  // whole, though written with a fraction
  EXPECT_EQ(jsonRequired<int>(record, "d"), std::nullopt);
  EXPECT_EQ(jsonRequired<int>(record, "big"), std::nullopt);  // beyond int
  EXPECT_EQ(jsonRequired<std::int64_t>(record, "big"), 3000000000);
  EXPECT_EQ(jsonRequired<bool>(record, "i"), std::nullopt);
  EXPECT_EQ(jsonRequired<std::string>(record, "s"), "hi");
  EXPECT_EQ(jsonRequired<double>(record, "s"), std::nullopt);
  EXPECT_EQ(jsonRequired<double>(record, "n"), std::nullopt);
  EXPECT_EQ(jsonRequired<double>(record, "missing"), std::nullopt);
  EXPECT_EQ(jsonRequired<Date>(record, "at"), Date{700000000.25});
  EXPECT_EQ(jsonRequired<double>(json::array({1}), "d"), std::nullopt);
}

TEST(Json, OptionalFieldsAreAbsentWhenMissingOrNullAndFailOnAnotherType) {
  const auto record = json::parse(R"({"x": 1.5, "n": null, "s": "text"})");
  std::optional<double> out;
  EXPECT_TRUE(jsonOptional(record, "x", out) && out == 1.5);
  EXPECT_TRUE(jsonOptional(record, "missing", out) && !out);
  out = 9;
  EXPECT_TRUE(jsonOptional(record, "n", out) && !out);
  EXPECT_FALSE(jsonOptional(record, "s", out));
}

TEST(Json, WritingLeavesAbsentValuesOutAndDatesAsSeconds) {
  json record = json::object();
  jsonPut(record, "at", Date{12.5});
  jsonPut(record, "count", 2);
  jsonPut(record, "gone", std::optional<double>());
  EXPECT_EQ(record.dump(), R"({"at":12.5,"count":2})");
  EXPECT_EQ(parseJson(record.dump()), record);
  EXPECT_EQ(parseJson("{\"a\": "), std::nullopt);
}

}  // namespace
}  // namespace sodam
