#include "posture/guide_model.h"

#include <gtest/gtest.h>

#include "posture/baseline_store.h"
#include "posture/capture_frame_source.h"
#include "posture/monitor_harness.h"
#include "sim/sim_camera.h"

namespace sodam {
namespace {

using Step = GuideModel::Step;
using State = GuideModel::Learn::State;

struct Access : CameraAccess {
  bool granted = false;
  bool authorized() override { return granted; }
  void request(std::function<void(bool)> done) override { done(granted); }
};

// The whole camera road: the sitter through the simulated camera and
// detectors, the pose reader and the capture's pacing, into the live feed.
struct GuideTest : ::testing::Test {
  testing::MonitorHarness h{false};
  InlineQueue queue;
  SimCamera camera{h.scheduler, h.clock, [this] { return h.sitter.render(); }};
  Access access;
  Capture capture{{camera, camera, access, nullptr, h.scheduler, h.clock, queue, queue}};
  LiveFeed feed{capture, h.lid, h.clock};
  std::vector<std::string> opened;
  int closed = 0;
  std::unique_ptr<GuideModel> guide;

  void SetUp() override {
    h.monitor->setEnabled(false);
    guide = std::make_unique<GuideModel>(
        Step::welcome,
        GuideModel::Ports{feed, *h.monitor, h.store, h.scheduler, h.clock,
                          [this](const std::string& url) { opened.push_back(url); }},
        [this] { ++closed; });
  }
  // The user answers the system's camera question; the answer comes back on
  // the main thread.
  void answer(bool granted) {
    access.granted = granted;
    feed.requestAccess([](bool) {});
    h.scheduler.runPosted();
  }
  void learnNow() {
    answer(true);
    guide->go(Step::learn);
    guide->startLearning();
    h.advance(3.0);
    EXPECT_TRUE(guide->learn().is(State::capturing));
    h.advance(3.1);
  }
};

TEST_F(GuideTest, TheCameraRunsOnlyOnTheSetupAndLearnSteps) {
  answer(true);
  guide->syncCamera();
  EXPECT_FALSE(feed.running());
  guide->go(Step::setup);
  EXPECT_TRUE(feed.running());
  EXPECT_TRUE(feed.wantsGlass);
  guide->next();
  EXPECT_EQ(guide->step(), Step::learn);
  EXPECT_TRUE(feed.running());
  guide->next();
  EXPECT_FALSE(feed.running());
  guide->go(Step::welcome);
  guide->back();
  EXPECT_EQ(guide->step(), Step::welcome);
}

TEST_F(GuideTest, ALearningAdoptsTheBaselineAndSwitchesTheChecksOn) {
  learnNow();
  ASSERT_TRUE(guide->learn().is(State::done)) << guide->learn().message;
  ASSERT_TRUE(BaselineStore::read(h.defaults));
  EXPECT_TRUE(BaselineStore::read(h.defaults)->hasShoulders());
  EXPECT_EQ(guide->note(), std::nullopt);
  EXPECT_TRUE(h.monitor->enabled());
  EXPECT_NEAR(*BaselineStore::read(h.defaults)->lid, 110, 0.5);
  EXPECT_DOUBLE_EQ(guide->progress(), 1.0);
  EXPECT_DOUBLE_EQ(guide->progressSeconds(), 3.0);
}

TEST_F(GuideTest, TheCountdownStopsWhenTheStepIsLeftAndAStartWhileCapturingIsIgnored) {
  answer(true);
  guide->go(Step::learn);
  guide->startLearning();
  EXPECT_EQ(guide->learn(), GuideModel::Learn::countdown(3));
  h.advance(1.0);
  EXPECT_EQ(guide->learn(), GuideModel::Learn::countdown(2));
  guide->go(Step::setup);
  h.advance(1.0);
  EXPECT_TRUE(guide->learn().is(State::idle));

  guide->go(Step::learn);
  guide->startLearning();
  h.advance(3.0);
  ASSERT_TRUE(guide->learn().is(State::capturing));
  guide->startLearning();
  EXPECT_TRUE(guide->learn().is(State::capturing));
}

TEST_F(GuideTest, NobodyInFrontFailsWithTheDesignedWords) {
  h.sitter.present = false;
  learnNow();
  EXPECT_EQ(guide->learn(),
            GuideModel::Learn::failed(
                "얼굴이 잘 보이지 않았어요. 밝은 곳에서 화면을 보며 다시 해 주세요."));
  EXPECT_FALSE(BaselineStore::read(h.defaults));
}

TEST_F(GuideTest, NoShouldersStillLearnsWithANote) {
  h.sitter.laptop.lidDeg = 125;  // the shoulders drop out of the picture
  learnNow();
  ASSERT_TRUE(guide->learn().is(State::done)) << guide->learn().message;
  EXPECT_FALSE(BaselineStore::read(h.defaults)->hasShoulders());
  EXPECT_EQ(guide->note(),
            "어깨가 보이지 않아 얼굴로만 살펴봐요. 조금 뒤로 앉아 다시 하면 더 정확해요.");
}

TEST_F(GuideTest, AConcernWaitsForTheUserToAcceptIt) {
  h.sitter.posture.headRollDeg = 12;
  learnNow();
  ASSERT_TRUE(guide->learn().is(State::concern));
  EXPECT_EQ(guide->learn().concerns.front().rfind("고개가 한쪽으로", 0), 0u);
  EXPECT_FALSE(BaselineStore::read(h.defaults));
  guide->acceptAnyway();
  EXPECT_TRUE(guide->learn().is(State::done));
  EXPECT_TRUE(BaselineStore::read(h.defaults));
  EXPECT_EQ(guide->note(),
            "알려 드린 점이 있는 자세로 학습했어요. 나중에 바르게 앉아 다시 학습하면 더 정확해요.");
}

TEST_F(GuideTest, CameraPermissionRefusedOpensTheSettingsGrantedMovesOn) {
  access.granted = false;
  guide->go(Step::privacy);
  guide->allowCamera();
  h.scheduler.runPosted();
  EXPECT_EQ(guide->step(), Step::privacy);
  EXPECT_EQ(opened, std::vector<std::string>{GuideModel::cameraSettingsUrl});

  access.granted = true;
  guide->allowCamera();
  h.scheduler.runPosted();
  EXPECT_EQ(guide->step(), Step::posture);
}

TEST_F(GuideTest, AGuideOpenedAtLearnAsksForTheCameraAndStaysThere) {
  access.granted = false;
  guide->go(Step::learn);
  EXPECT_FALSE(feed.running());
  guide->askCamera();
  h.scheduler.runPosted();
  EXPECT_EQ(opened, std::vector<std::string>{GuideModel::cameraSettingsUrl});
  EXPECT_FALSE(feed.running());

  access.granted = true;  // allowed meanwhile in the system's settings
  guide->askCamera();
  h.scheduler.runPosted();
  EXPECT_EQ(guide->step(), Step::learn);
  EXPECT_TRUE(feed.running());
  EXPECT_EQ(opened.size(), 1u);
}

TEST_F(GuideTest, FinishingRecordsTheGuideAndLeavesTheCameraOff) {
  guide->go(Step::done);
  guide->next();
  EXPECT_TRUE(h.store.guideDone());
  EXPECT_FALSE(feed.running());
  EXPECT_FALSE(feed.wantsGlass);
  EXPECT_EQ(closed, 1);
}

}  // namespace
}  // namespace sodam
