#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "cloud/firestore.h"

namespace sodam {
namespace {

using json = nlohmann::json;
using Value = Firestore::Value;

// 2026-01-02T03:04:05Z
constexpr Date newYear = Date::fromUnix(1767323045);

TEST(FirestoreCoding, everyTypeHasItsRestShape) {
  EXPECT_EQ(Firestore::encode(true), json::parse(R"({"booleanValue":true})"));
  EXPECT_EQ(Firestore::encode(std::numeric_limits<std::int64_t>::min()),
            json::parse(R"({"integerValue":"-9223372036854775808"})"));
  EXPECT_EQ(Firestore::encode(0.25), json::parse(R"({"doubleValue":0.25})"));
  EXPECT_EQ(Firestore::encode("모임"), json::parse(R"({"stringValue":"모임"})"));
  EXPECT_EQ(Firestore::encode(newYear),
            json::parse(R"({"timestampValue":"2026-01-02T03:04:05Z"})"));
  EXPECT_EQ(Firestore::encode(Value()), json::parse(R"({"nullValue":null})"));
  EXPECT_EQ(Firestore::encode(Firestore::Array{1, "a"}),
            json::parse(R"({"arrayValue":{"values":[{"integerValue":"1"},{"stringValue":"a"}]}})"));
  EXPECT_EQ(Firestore::encode(Firestore::Fields{{"k", false}}),
            json::parse(R"({"mapValue":{"fields":{"k":{"booleanValue":false}}}})"));
}

TEST(FirestoreCoding, valuesSurviveTheRoundTripNestedAndBig) {
  const Firestore::Fields look{{"ears", "round"}, {"size", 1.5}};
  const Value nested(Firestore::Fields{
      {"members", Firestore::Array{"u1", "u2"}},
      {"sessions", Firestore::Array{Firestore::Fields{{"start", newYear}, {"minutes", 60}}}},
      {"look", look},
      {"big", std::numeric_limits<std::int64_t>::max()},
      {"small", std::numeric_limits<std::int64_t>::min()},
      {"tiny", -1e-300},
      {"empty", Firestore::Array{}},
      {"none", Firestore::Fields{}},
      {"on", true}});
  EXPECT_EQ(Firestore::decode(Firestore::encode(nested)), nested);
}

TEST(FirestoreCoding, integersParseLeniently) {
  auto integer = [](json text) { return Firestore::decode({{"integerValue", text}})->integer(); };
  EXPECT_EQ(integer("12x"), 0);
  EXPECT_EQ(integer("-42"), -42);
  EXPECT_EQ(integer("9223372036854775808"), 0);  // one past the largest
  EXPECT_EQ(integer(""), 0);
  EXPECT_EQ(Firestore::decode({{"doubleValue", 3}})->real(), 3.0);
}

TEST(FirestoreCoding, timestampsReadWithOrWithoutFraction) {
  auto date = [](const char* text) {
    auto value = Firestore::decode({{"timestampValue", text}});
    return value ? value->date() : std::nullopt;
  };
  EXPECT_EQ(date("2026-01-02T03:04:05Z"), newYear);
  EXPECT_NEAR(date("2026-01-02T03:04:05.123456Z")->sinceReference,
              newYear.sinceReference + 0.123456, 1e-6);
  EXPECT_EQ(date("2026-01-02T12:04:05+09:00"), newYear);
  EXPECT_EQ(date("2026-02-30T03:04:05Z"), std::nullopt);
  EXPECT_EQ(date("2026-01-02 03:04:05Z"), std::nullopt);
  EXPECT_EQ(date("2026-01-02T03:04:05."), std::nullopt);
  EXPECT_EQ(isoTimestamp(Date::fromUnix(-1)), "1969-12-31T23:59:59Z");
}

TEST(FirestoreCoding, whatCannotBeReadIsLeftOut) {
  EXPECT_EQ(Firestore::decode(json::array()), std::nullopt);
  EXPECT_EQ(Firestore::decode({{"nullValue", nullptr}}), std::nullopt);
  EXPECT_EQ(Firestore::decode({{"doubleValue", "1.5"}}), std::nullopt);
  // A key of the wrong type falls through to the keys behind it.
  EXPECT_EQ(Firestore::decode({{"doubleValue", "x"}, {"booleanValue", true}}), Value(true));
  EXPECT_EQ(Firestore::decode({{"timestampValue", "soon"}, {"stringValue", "s"}}), Value("s"));
  EXPECT_EQ(Firestore::decode({{"mapValue", json::object()}}), Value(Firestore::Fields{}));
  EXPECT_EQ(Firestore::decode({{"arrayValue", json::object()}}), Value(Firestore::Array{}));
  const json array = json::parse(
      R"({"arrayValue":{"values":[{"nullValue":null},{"integerValue":"7"},{"what":1}]}})");
  EXPECT_EQ(Firestore::decode(array), Value(Firestore::Array{7}));
}

TEST(FirestoreCoding, documentsTakeThePathBehindTheDocumentsRoot) {
  const auto doc = Firestore::decodeDocument(json::parse(
      R"({"name":"projects/p/databases/(default)/documents/groups/g1/members/u1",
          "fields":{"name":{"stringValue":"도란"},"odd":{"geoPointValue":{}}}})"));
  ASSERT_TRUE(doc);
  EXPECT_EQ(doc->path, "groups/g1/members/u1");
  EXPECT_EQ(doc->id(), "u1");
  EXPECT_EQ(doc->fields, (Firestore::Fields{{"name", "도란"}}));
  EXPECT_FALSE(Firestore::decodeDocument(json::parse(R"({"fields":{}})")));
  EXPECT_EQ((Firestore::Doc{"groups", {}}.id()), "groups");
}

TEST(FirestoreCoding, eachWriteKindHasItsCommitShape) {
  const std::string root = "projects/sodamjari/databases/(default)/documents";
  using Write = Firestore::Write;
  EXPECT_EQ(Firestore::encodeWrite(Write::set("a/b", {{"n", 1}}), root), json::parse(R"(
      {"update":{"name":"projects/sodamjari/databases/(default)/documents/a/b",
                 "fields":{"n":{"integerValue":"1"}}}})"));
  EXPECT_EQ(Firestore::encodeWrite(Write::update("a/b", {{"n", 1}}, {"n", "m"}), root),
            json::parse(R"(
      {"update":{"name":"projects/sodamjari/databases/(default)/documents/a/b",
                 "fields":{"n":{"integerValue":"1"}}},
       "updateMask":{"fieldPaths":["n","m"]},"currentDocument":{"exists":true}})"));
  EXPECT_EQ(Firestore::encodeWrite(Write::erase("a/b"), root),
            json::parse(R"({"delete":"projects/sodamjari/databases/(default)/documents/a/b"})"));
  EXPECT_EQ(Firestore::encodeWrite(Write::arrayUnion("a/b", "members", {"u"}), root),
            json::parse(R"(
      {"transform":{"document":"projects/sodamjari/databases/(default)/documents/a/b",
       "fieldTransforms":[{"fieldPath":"members",
                           "appendMissingElements":{"values":[{"stringValue":"u"}]}}]}})"));
  EXPECT_EQ(Firestore::encodeWrite(Write::arrayRemove("a/b", "members", {"u"}),
                                   root)["transform"]["fieldTransforms"][0]["removeAllFromArray"],
            json::parse(R"({"values":[{"stringValue":"u"}]})"));
}

}  // namespace
}  // namespace sodam
