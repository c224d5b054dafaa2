#include <gtest/gtest.h>

#include "cloud_rig.h"
#include "support/text.h"

namespace sodam {
namespace {

using testing::CloudRig;
using Write = Firestore::Write;
using Fields = Firestore::Fields;

class FirestoreClient : public ::testing::Test {
 protected:
  FirestoreClient() { rig.signInAs("u1"); }

  CloudResult<std::optional<Firestore::Doc>> get(const std::string& path) {
    std::optional<CloudResult<std::optional<Firestore::Doc>>> result;
    rig.firestore->get(path, [&](auto r) { result = std::move(r); });
    return rig.await(result);
  }
  CloudResult<std::vector<Firestore::Doc>> list(const std::string& path) {
    std::optional<CloudResult<std::vector<Firestore::Doc>>> result;
    rig.firestore->list(path, [&](auto r) { result = std::move(r); });
    return rig.await(result);
  }
  std::optional<CloudError> commit(std::vector<Write> writes) {
    std::optional<std::optional<CloudError>> result;
    rig.firestore->commit(std::move(writes), [&](auto r) { result = std::move(r); });
    return rig.await(result);
  }
  // A group of `members`, owned by the first.
  void group(const std::string& gid, Firestore::Array members) {
    const std::string owner = *members.front().string();
    rig.service.put("groups/" + gid, {{"owner", owner}, {"members", members}, {"name", gid}});
  }
  CloudRig rig;
};

TEST_F(FirestoreClient, aMissingDocumentIsNothingAndAMissingCollectionIsEmpty) {
  group("g", {"u1"});
  auto missing = get("groups/nope");
  ASSERT_TRUE(missing.ok());
  EXPECT_EQ(missing.value(), std::nullopt);
  auto empty = list("groups/g/members");
  ASSERT_TRUE(empty.ok());
  EXPECT_TRUE(empty.value().empty());
  EXPECT_EQ(get("groups/g").value()->fields.at("owner"), Firestore::Value("u1"));
}

TEST_F(FirestoreClient, aLongListComesPageByPageWithTheTokensAsGiven) {
  group("g", {"u1"});
  for (int i = 0; i < 250; ++i)
    rig.service.put(format("groups/g/members/m%03d", i), {{"i", i}});
  rig.service.put("groups/g/members/m000/deeper/x", {});
  rig.service.clearRequests();
  const auto docs = list("groups/g/members");
  ASSERT_TRUE(docs.ok());
  ASSERT_EQ(docs.value().size(), 250u);
  EXPECT_EQ(docs.value()[249].id(), "m249");
  // The double's page tokens hold "+", "=" and "/": mangled, they would be refused.
  EXPECT_EQ(rig.service.requests().size(), 1u + 3u);  // the token, then three pages
}

TEST_F(FirestoreClient, findsTheGroupsThatHoldTheUser) {
  group("a", {"u1", "u2"});
  group("b", {"u2"});
  group("c", {"u3", "u1"});
  std::optional<CloudResult<std::vector<Firestore::Doc>>> result;
  rig.firestore->whereContains("groups", "members", "u1", [&](auto r) { result = std::move(r); });
  const auto found = rig.await(result);
  ASSERT_TRUE(found.ok());
  ASSERT_EQ(found.value().size(), 2u);
  EXPECT_EQ(found.value()[0].path, "groups/a");
  EXPECT_EQ(found.value()[1].path, "groups/c");
}

TEST_F(FirestoreClient, aCommitIsAllOrNothing) {
  group("g", {"u1"});
  ASSERT_EQ(commit({Write::set("groups/g/members/u1", {{"state", "good"}}),
                    Write::arrayUnion("groups/g", "members", {"u1", "u9"}),
                    Write::update("groups/g", {{"name", "새 이름"}}, {"name", "code"})}),
            std::nullopt);
  const auto stored = *rig.service.document("groups/g");
  EXPECT_EQ(stored.at("members"), Firestore::Value(Firestore::Array{"u1", "u9"}));
  EXPECT_EQ(stored.at("name"), Firestore::Value("새 이름"));
  EXPECT_FALSE(stored.contains("code"));
  const auto error = commit({Write::erase("groups/g/members/u1"),
                             Write::update("groups/gone/members/u1", {{"name", "x"}}, {"name"})});
  ASSERT_TRUE(error);
  EXPECT_EQ(error->status, 404);
  EXPECT_NE(error->body.find("NOT_FOUND"), std::string::npos);
  EXPECT_EQ(error->text(), "찾지 못했어요");
  EXPECT_TRUE(rig.service.document("groups/g/members/u1"));
}

TEST_F(FirestoreClient, theRulesRefuseOtherPeoplesDocuments) {
  group("theirs", {"u2"});
  rig.service.put("groups/theirs/members/u2", {{"state", "good"}});
  const auto read = get("groups/theirs");
  ASSERT_FALSE(read.ok());
  EXPECT_EQ(read.error().text(), "권한이 없어요");
  EXPECT_EQ(list("groups/theirs/members").error().status, 403);
  EXPECT_EQ(list("codes").error().status, 403);
  const auto write = commit({Write::set("groups/theirs/members/u2", {{"state", "away"}})});
  ASSERT_TRUE(write);
  EXPECT_EQ(write->text(), "권한이 없어요");
  EXPECT_EQ(rig.service.document("groups/theirs/members/u2")->at("state"),
            Firestore::Value("good"));
  EXPECT_TRUE(commit({Write::update("groups/theirs", {{"name", "x"}}, {"name"})}));
  rig.service.capacity = 1;
  EXPECT_EQ(commit({Write::arrayUnion("groups/theirs", "members", {"u1"})})->status, 403);
}

TEST_F(FirestoreClient, failuresOfTheLineOrTheServerLeaveTheStoreAsItWas) {
  group("g", {"u1"});
  rig.service.dieOnNextCommit();
  const auto died = commit({Write::erase("groups/g")});
  ASSERT_TRUE(died);
  EXPECT_EQ(*died, CloudError::http(0, ""));
  EXPECT_EQ(died->text(), "서버와 연결하지 못했어요");
  EXPECT_TRUE(rig.service.document("groups/g"));
  rig.service.failWith = 503;
  EXPECT_EQ(get("groups/g").error().text(), "서버와 연결하지 못했어요");
  rig.service.failWith.reset();
  rig.service.garbleWith = "{not json";
  const auto garbled = list("groups/g/members");
  EXPECT_EQ(garbled.error(), CloudError::http(200, "{not json"));
  rig.service.garbleWith = std::string("\xff\xfe");
  EXPECT_EQ(get("groups/g").error(), CloudError::http(200, ""));
}

TEST_F(FirestoreClient, aSignedOutUserSendsNothing) {
  rig.auth->signOut();
  rig.service.clearRequests();
  EXPECT_EQ(get("groups/g").error(), CloudError::signedOut());
  EXPECT_EQ(commit({Write::erase("groups/g")}), CloudError::signedOut());
  EXPECT_TRUE(rig.service.requests().empty());
}

TEST_F(FirestoreClient, tokensNeverReachAnErrorText) {
  const std::string refresh = *rig.keychain.read(Keychain::refreshAccount);
  rig.service.failWith = 500;
  const auto failed = get("groups/g");
  ASSERT_FALSE(failed.ok());
  for (const std::string& shown : {failed.error().text(), failed.error().body}) {
    EXPECT_EQ(shown.find(refresh), std::string::npos);
    EXPECT_EQ(shown.find("id."), std::string::npos);
  }
}

}  // namespace
}  // namespace sodam
