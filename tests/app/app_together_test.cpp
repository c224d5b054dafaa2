#include <gtest/gtest.h>

#include "app/app_harness.h"

namespace sodam::testing {
namespace {

struct AppTogetherTest : ::testing::Test {
  AppHarness harness{true, "me"};
  StudyGroup group;

  void SetUp() override {
    harness.launch(true);
    harness.settle();
    Social& social = *harness.app->social();
    social.create("아침", [&](CloudResult<StudyGroup> r) { group = r.value(); });
    harness.settle();
    ASSERT_FALSE(group.id.empty());
  }
  std::optional<Firestore::Fields> myDocument() {
    return harness.cloud->service.document("groups/" + group.id + "/members/me");
  }
  // A session starting `minutes` from now, saved to the group.
  void sessionIn(double minutes) {
    GroupSession s = GroupSession::draft(harness.clock.now() + minutes * 60);
    s.title = "수학";
    harness.app->social()->save(group, std::nullopt, std::vector{s},
                                [](std::optional<CloudError>) {});
    harness.settle();
  }
  void tick() {
    harness.advance(10);
    harness.settle();
  }
};

TEST_F(AppTogetherTest, TheTickPublishesTheUsersStateAndHidingSendsOffline) {
  tick();
  auto doc = myDocument();
  ASSERT_TRUE(doc);
  EXPECT_EQ(doc->at("state"), Firestore::Value(std::string(harness.app->currentState().raw())));
  EXPECT_EQ(harness.app->social()->sentState(), harness.app->currentState());

  harness.app->store().setShareStatus(false);
  tick();
  EXPECT_EQ(myDocument()->at("state"), Firestore::Value("offline"));
  const GroupsPage page = harness.app->groupsPage();
  EXPECT_EQ(page.sharing, "친구에게 숨겨 두었어요");
  ASSERT_EQ(page.rooms.size(), 1u);
  EXPECT_EQ(page.rooms[0].leave, "모임 닫기");
}

TEST_F(AppTogetherTest, ASessionIsRemindedFiveMinutesAheadAndAsItStartsOnce) {
  sessionIn(4.5);
  tick();
  EXPECT_EQ(harness.pill(), "「수학」 4분 뒤 시작해요 | 아침 · 눌러서 모임 방 열기");
  harness.app->pills().hide();
  tick();
  EXPECT_EQ(harness.pill(), "") << "once per session and day";
  harness.advance(250);
  harness.settle();
  EXPECT_EQ(harness.pill(), "「수학」 시작했어요 | 아침 · 눌러서 모임 방 열기");
}

TEST_F(AppTogetherTest, AReminderMissedOnALockedScreenDoesNotComeAgain) {
  sessionIn(3);
  harness.app->screenLocked();
  tick();
  harness.app->screenUnlocked();
  tick();
  EXPECT_EQ(harness.pill().find("분 뒤 시작해요"), std::string::npos);
}

TEST_F(AppTogetherTest, TheStatusPoolsTheWeeksChecks) {
  harness.app->log().record(PostureEntry::Kind::good);
  harness.app->log().record(PostureEntry::Kind::alert);
  harness.clock.advance(-86400);
  harness.app->log().record(PostureEntry::Kind::good);
  harness.clock.advance(86400);
  const MyStatus status = harness.app->myStatus();
  EXPECT_EQ(status.checks, 2);
  EXPECT_EQ(status.good, 0.5);
  EXPECT_NEAR(*status.weekGood, 2.0 / 3, 1e-9);
  EXPECT_EQ(status.place, std::nullopt);
}

}  // namespace
}  // namespace sodam::testing
