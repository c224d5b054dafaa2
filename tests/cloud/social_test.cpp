#include "cloud/social.h"

#include <gtest/gtest.h>

#include "cloud/social_harness.h"

namespace sodam {
namespace {

struct SocialTest : ::testing::Test {
  SocialWorld world;
  Program me{world, "me", "나"};
  Program friend_{world, "jun", "준"};

  StudyGroup create(Program& program, const std::string& name) {
    std::optional<CloudResult<StudyGroup>> result;
    program.social.create(name, [&](CloudResult<StudyGroup> r) { result = std::move(r); });
    world.settle();
    EXPECT_TRUE(result && result->ok());
    return result && result->ok() ? result->value() : StudyGroup{};
  }
  Social::Joined join(Program& program, const std::string& code) {
    std::optional<Social::Joined> result;
    program.social.join(code, [&](Social::Joined r) { result = std::move(r); });
    world.settle();
    EXPECT_TRUE(result);
    return result.value_or(Social::Joined{});
  }
  std::optional<CloudError> leave(Program& program, const StudyGroup& group) {
    std::optional<std::optional<CloudError>> result;
    program.social.leave(group, [&](std::optional<CloudError> e) { result = e; });
    world.settle();
    EXPECT_TRUE(result);
    return result.value_or(CloudError::bad());
  }
  void refresh(Program& program) {
    program.social.refresh();
    world.settle();
  }
  // A group of me and jun.
  StudyGroup together() {
    me.codes = {12345678};
    const StudyGroup group = create(me, "아침 스터디");
    EXPECT_TRUE(join(friend_, "1234-5678").group);
    refresh(me);
    return group;
  }
};

TEST_F(SocialTest, CreateWritesTheGroupItsCodeAndTheOwnersStatusInOneCommit) {
  me.codes = {42};
  const StudyGroup group = create(me, "   아주 아주 긴 이름의 모임인데 스무 자를 넘어요  ");
  EXPECT_EQ(group.name, "아주 아주 긴 이름의 모임인데 스무 ") << "trimmed, then cut to 20";
  EXPECT_EQ(group.code, "00000042");
  EXPECT_EQ(group.id.size(), 20u);
  EXPECT_EQ(group.owner, "me");
  EXPECT_EQ(world.service.commits(), 1u);
  const auto code = world.service.document("codes/00000042");
  ASSERT_TRUE(code);
  EXPECT_EQ(code->at("gid"), Firestore::Value(group.id));
  const auto status = world.service.document("groups/" + group.id + "/members/me");
  ASSERT_TRUE(status);
  EXPECT_EQ(status->at("code"), Firestore::Value("00000042"));
  EXPECT_EQ(status->at("name"), Firestore::Value("나"));
  EXPECT_EQ(status->at("good"), Firestore::Value(-1.0));
  ASSERT_EQ(me.social.groups().size(), 1u);
  EXPECT_EQ(me.social.members().at(group.id).size(), 1u);
  EXPECT_EQ(create(me, " \t ").name, "우리 모임");
}

TEST_F(SocialTest, ACodeInUseIsDrawnAgainButTheFifthIsTakenAsItIs) {
  world.service.put("codes/00000001", {{"gid", "x"}});
  world.service.put("codes/00000002", {{"gid", "y"}});
  me.codes = {1, 2, 3};
  EXPECT_EQ(create(me, "a").code, "00000003");
  me.codes = {1, 1, 1, 1, 1};
  world.service.clearRequests();
  EXPECT_EQ(create(me, "b").code, "00000001");
  int lookups = 0;
  for (const auto& r : world.service.requests())
    lookups += r.find("/codes/") != std::string::npos;
  EXPECT_EQ(lookups, 4);
}

TEST_F(SocialTest, JoinIgnoresBlanksAndDashesAndRefusesShortCodesWithoutACall) {
  const StudyGroup group = together();
  ASSERT_EQ(friend_.social.groups().size(), 1u);
  EXPECT_EQ(friend_.social.groups()[0].id, group.id);
  EXPECT_EQ(me.social.members().at(group.id).size(), 2u);

  world.service.clearRequests();
  const auto commits = world.service.commits();
  EXPECT_EQ(join(friend_, "1234 5678").group->id, group.id) << "already in";
  EXPECT_EQ(world.service.commits(), commits) << "no write for a group one is in";
  world.service.clearRequests();
  EXPECT_EQ(join(friend_, "123-4567").refused, Social::JoinError::notFound);
  EXPECT_TRUE(world.service.requests().empty());
  EXPECT_EQ(join(friend_, "87654321").refused, Social::JoinError::notFound);
}

TEST_F(SocialTest, AFullGroupRefusesTheJoinAsFull) {
  me.codes = {11112222};
  create(me, "둘만");
  world.service.capacity = 1;
  const Social::Joined joined = join(friend_, "11112222");
  EXPECT_EQ(joined.refused, Social::JoinError::full);
  EXPECT_EQ(joinErrorText(joined), "모임이 가득 찼거나 들어갈 수 없어요");
  EXPECT_TRUE(friend_.social.groups().empty());
  world.service.failWith = 500;
  const Social::Joined failed = join(friend_, "11112222");
  ASSERT_TRUE(failed.error);
  EXPECT_EQ(joinErrorText(failed), "들어가지 못했어요");
}

TEST_F(SocialTest, AMemberLeavesAloneWhileTheOwnerClosesTheGroupForAll) {
  const StudyGroup group = together();
  EXPECT_EQ(leave(friend_, friend_.social.groups()[0]), std::nullopt);
  EXPECT_TRUE(friend_.social.groups().empty()) << "gone before any refresh";
  EXPECT_FALSE(world.service.document("groups/" + group.id + "/members/jun"));
  refresh(me);
  EXPECT_EQ(me.social.members().at(group.id).size(), 1u);

  join(friend_, group.code);
  EXPECT_EQ(leave(me, me.social.groups()[0]), std::nullopt);
  EXPECT_FALSE(world.service.document("groups/" + group.id));
  EXPECT_FALSE(world.service.document("codes/" + group.code));
  EXPECT_FALSE(world.service.document("groups/" + group.id + "/members/jun"));
  refresh(friend_);
  EXPECT_TRUE(friend_.social.groups().empty());
}

TEST_F(SocialTest, OnlyTheOwnerSavesAndSessionsStopAtForty) {
  const StudyGroup group = together();
  std::vector<GroupSession> sessions;
  for (int i = 0; i < 41; ++i)
    sessions.push_back(GroupSession::draft(world.clock.now() + i * 60));
  std::optional<std::optional<CloudError>> result;
  friend_.social.save(friend_.social.groups()[0], "내 이름", sessions,
                      [&](std::optional<CloudError> e) { result = e; });
  world.settle();
  ASSERT_TRUE(result && *result);
  EXPECT_EQ((*result)->text(), "권한이 없어요");
  EXPECT_EQ(friend_.social.groups()[0].name, "아침 스터디");

  me.social.save(me.social.groups()[0], std::nullopt, sessions,
                 [&](std::optional<CloudError> e) { result = e; });
  world.settle();
  EXPECT_EQ(*result, std::nullopt);
  EXPECT_EQ(me.social.groups()[0].sessions.size(), 40u);
  refresh(friend_);
  ASSERT_EQ(friend_.social.groups()[0].sessions.size(), 40u);
  EXPECT_EQ(friend_.social.groups()[0].sessions[39], sessions[39]);
  EXPECT_EQ(friend_.social.groups()[0].name, group.name);
}

TEST_F(SocialTest, AServerThatDiesMidCommitLeavesBothSidesAsTheyWere) {
  const StudyGroup group = together();
  const auto documents = world.service.documentCount();
  world.service.dieOnNextCommit();
  std::optional<CloudResult<StudyGroup>> created;
  me.social.create("두 번째", [&](CloudResult<StudyGroup> r) { created = std::move(r); });
  world.settle();
  ASSERT_TRUE(created);
  ASSERT_FALSE(created->ok());
  EXPECT_EQ(created->error().text(), "서버와 연결하지 못했어요");
  EXPECT_EQ(world.service.documentCount(), documents);
  EXPECT_EQ(me.social.groups().size(), 1u);

  world.service.dieOnNextCommit();
  EXPECT_TRUE(leave(friend_, friend_.social.groups()[0]));
  EXPECT_EQ(friend_.social.groups().size(), 1u);
  EXPECT_TRUE(world.service.document("groups/" + group.id + "/members/jun"));
}

TEST_F(SocialTest, ARefreshThatFailsKeepsWhatStandsAndNamesTheProblem) {
  together();
  world.service.failWith = 503;
  refresh(me);
  EXPECT_EQ(me.social.problem(), "서버와 연결하지 못했어요");
  EXPECT_EQ(me.social.groups().size(), 1u);
  EXPECT_FALSE(me.social.refreshing());
  world.service.failWith.reset();
  world.service.garbleWith = "<html>";
  refresh(me);
  EXPECT_TRUE(me.social.problem());
  world.service.garbleWith.reset();
  refresh(me);
  EXPECT_EQ(me.social.problem(), std::nullopt);

  me.source.locked = true;
  me.power.setScreenLocked(true);
  world.service.clearRequests();
  refresh(me);
  EXPECT_TRUE(world.service.requests().empty()) << "nobody looks at a locked screen";
}

TEST_F(SocialTest, TheRefreshTimerRunsFasterWhilePagesLook) {
  EXPECT_EQ(me.social.refreshInterval(), std::nullopt);
  me.social.signedIn();
  world.settle();
  EXPECT_TRUE(me.social.loaded());
  EXPECT_EQ(me.social.refreshInterval(), 60);
  me.social.watch(true);
  me.social.watch(true);
  EXPECT_EQ(me.social.watchers(), 2);
  EXPECT_EQ(me.social.refreshInterval(), 15);
  me.social.watch(false);
  me.social.watch(false);
  me.social.watch(false);
  EXPECT_EQ(me.social.watchers(), 0);
  EXPECT_EQ(me.social.refreshInterval(), 60);

  world.settle();
  world.service.clearRequests();
  world.scheduler.advance(60);
  world.settle();
  EXPECT_FALSE(world.service.requests().empty()) << "the timer refreshed";
  me.social.reset();
  EXPECT_EQ(me.social.refreshInterval(), std::nullopt);
  EXPECT_FALSE(me.social.loaded());
}

struct PublishTest : SocialTest {
  MyStatus status;
  void SetUp() override {
    together();
    status.state = MateState::focus;
    status.good = 0.5;
    world.service.clearRequests();
  }
  std::size_t commitsAfter(double seconds, bool share = true) {
    world.scheduler.advance(seconds);
    const auto before = world.service.commits();
    me.social.publish(status, share);
    world.settle();
    return world.service.commits() - before;
  }
};

TEST_F(PublishTest, AVisibleChangeGoesOutAtOnceAndAnUnchangedStatusEveryThreeMinutes) {
  EXPECT_EQ(commitsAfter(0), 1u);
  status.good = 0.9;
  EXPECT_EQ(commitsAfter(10), 0u) << "numbers alone wait";
  status.state = MateState::phone;
  EXPECT_EQ(commitsAfter(10), 1u);
  EXPECT_EQ(commitsAfter(179), 0u);
  EXPECT_EQ(commitsAfter(1), 1u);
  me.social.republish();
  EXPECT_EQ(commitsAfter(1), 1u);

  refresh(friend_);
  const Member mine = friend_.social.members().begin()->second.front().id == "me"
                          ? friend_.social.members().begin()->second.front()
                          : friend_.social.members().begin()->second.back();
  EXPECT_EQ(mine.state, MateState::phone);
  EXPECT_EQ(mine.todayGood(world.clock.now(), world.calendar), 0.9);
}

TEST_F(PublishTest, HidingSendsOfflineOnceAndKeepsThePublishedNumbers) {
  EXPECT_EQ(commitsAfter(0), 1u);
  EXPECT_EQ(commitsAfter(10, false), 1u);
  for (int i = 0; i < 30; ++i)
    EXPECT_EQ(commitsAfter(10, false), 0u);
  EXPECT_EQ(me.social.sentState(), MateState::offline);
  refresh(friend_);
  for (const auto& m : friend_.social.members().begin()->second) {
    if (m.id != "me") continue;
    EXPECT_EQ(m.state, MateState::offline);
    EXPECT_EQ(m.good, 0.5);
  }
}

TEST_F(PublishTest, AFailedPublishIsTriedAgainOnTheNextTick) {
  world.service.failWith = 500;
  commitsAfter(0);
  EXPECT_FALSE(me.social.lastPublished());
  EXPECT_FALSE(me.social.publishing());
  world.service.failWith.reset();
  EXPECT_EQ(commitsAfter(10), 1u);
  ASSERT_TRUE(me.social.lastPublished());
}

}  // namespace
}  // namespace sodam
