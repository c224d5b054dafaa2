#include "posture/live_feed.h"

#include <gtest/gtest.h>

#include "posture/capture_fakes.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct Hinge : LidDevice {
  int& reads;
  explicit Hinge(int& reads) : reads(reads) {}
  std::optional<std::size_t> featureReport(std::uint8_t, std::span<std::uint8_t> buffer) override {
    ++reads;
    buffer[1] = 112;
    buffer[2] = 0;
    return 3;
  }
};

struct Seen {
  bool shoulders = true;
  bool pitch = true;
  bool far = false;
};

Measurement person(Seen s) {
  Measurement m;
  m.size = {1280, 720};
  const double eyes = s.far ? 60 : 100;  // the far line is 0.055 * 1280 = 70.4
  m.eyeL = {640 - eyes / 2, 400};
  m.eyeR = {640 + eyes / 2, 400};
  if (s.shoulders) {
    m.shoulderL = Point{500, 200};
    m.shoulderR = Point{780, 200};
  }
  if (s.pitch) m.pitch = 3;
  return m;
}

struct LiveFeedTest : ::testing::Test {
  ManualClock clock;
  ManualScheduler main{clock};
  InlineQueue queue;
  fakes::Camera camera;
  fakes::FaceDetector detector;
  fakes::Access access;
  Capture capture{{camera, detector, access, nullptr, main, clock, queue, queue}};
  int lidReads = 0;
  LidSensor lid{std::make_unique<Hinge>(lidReads), queue, main};
  std::optional<LiveFeed> feed;

  void SetUp() override {
    access.answer = true;
    feed.emplace(capture, lid, clock);
    feed->start(0.1, false);
  }
  // Frames as the capture hands them over, 0.1 seconds apart.
  void see(std::optional<Measurement> m, int times = 1) {
    for (int i = 0; i < times; ++i) {
      clock.advance(0.1);
      capture.onMeasurement(m);
      main.runPosted();
    }
  }
};

TEST_F(LiveFeedTest, ReadinessWaitsForThreeFramesThenWeighsTheLastSix) {
  see(person({}), 2);
  EXPECT_EQ(feed->readiness(), 0) << "two frames say nothing yet";
  see(person({}));
  EXPECT_DOUBLE_EQ(feed->readiness(), 1);
  see(std::nullopt, 3);
  EXPECT_DOUBLE_EQ(feed->readiness(), 0.5) << "half of the last six without a face";
  see(person({.shoulders = false, .pitch = false, .far = true}), 6);
  EXPECT_DOUBLE_EQ(feed->readiness(), 0.45 * 0.75) << "too far: a quarter off";
}

TEST_F(LiveFeedTest, HintNamesTheFirstThingToFix) {
  struct Case {
    std::optional<Measurement> frame;
    std::optional<std::string> hint;
  };
  const Case cases[] = {
      {std::nullopt, "얼굴이 화면 가운데 오게 앉아 주세요"},
      {person({.shoulders = false, .far = true}), "조금 더 가까이 앉아 주세요"},
      {person({.shoulders = false, .pitch = false}), "점선에 어깨를 맞춰 조금 뒤로 앉아 주세요"},
      {person({.pitch = false}), "고개를 들어 화면을 바라봐 주세요"},
      {person({}), std::nullopt},
  };
  for (const auto& c : cases) {
    feed.emplace(capture, lid, clock);
    feed->start(0.1, false);
    see(c.frame, 6);
    EXPECT_EQ(feed->hint(), c.hint);
    EXPECT_EQ(feed->needsShoulders(), c.hint == std::string("점선에 어깨를 맞춰 조금 뒤로 앉아 주세요"));
  }
}

TEST_F(LiveFeedTest, AHintStandsForAtLeastItsHoldTimeBeforeItChanges) {
  see(person({.far = true}));
  EXPECT_EQ(feed->hint(), "조금 더 가까이 앉아 주세요") << "appears at once";
  const Date shown = clock.now();
  see(person({.far = true}), 5);
  see(person({.shoulders = false}), 6);
  EXPECT_EQ(feed->hint(), "조금 더 가까이 앉아 주세요") << "replaced within the hold";
  clock.set(shown + 1.05);
  see(person({.shoulders = false}));  // 1.15 s after it was shown
  EXPECT_EQ(feed->hint(), "조금 더 가까이 앉아 주세요");
  see(person({.shoulders = false}));  // 1.25 s after it was shown
  EXPECT_EQ(feed->hint(), "점선에 어깨를 맞춰 조금 뒤로 앉아 주세요");

  see(person({}), 6);  // clearing waits as well
  EXPECT_EQ(feed->hint(), "점선에 어깨를 맞춰 조금 뒤로 앉아 주세요");
  clock.advance(1.2);
  see(person({}));
  EXPECT_EQ(feed->hint(), std::nullopt);
  see(std::nullopt, 2);
  EXPECT_EQ(feed->hint(), "얼굴이 화면 가운데 오게 앉아 주세요") << "a hint appearing from none is not held";
}

TEST_F(LiveFeedTest, TheGlassClearsAsTheUserGetsIntoPlace) {
  feed.emplace(capture, lid, clock);
  feed->wantsGlass = true;
  feed->start(0.1, false);
  EXPECT_EQ(capture.glassRadius(), 10);
  see(person({}), 3);
  see(std::nullopt, 3);
  EXPECT_DOUBLE_EQ(*capture.glassRadius(), 0.5 * 9 + 1.5);
  see(person({}), 6);
  EXPECT_EQ(capture.glassRadius(), std::nullopt);
}

TEST_F(LiveFeedTest, StopLeavesTheCaptureAtRest) {
  capture.setLight(true);
  capture.setCheckPhone(true);
  feed->start(0.5, true);
  EXPECT_TRUE(capture.trackArms());
  EXPECT_EQ(capture.frameInterval(), 0.5);
  see(person({}), 3);
  feed->stop();
  EXPECT_FALSE(capture.running());
  EXPECT_FALSE(capture.trackArms());
  EXPECT_FALSE(capture.light());
  EXPECT_FALSE(capture.checkPhone());
  EXPECT_FALSE(capture.glassRadius());
  EXPECT_FALSE(capture.onMeasurement);
  EXPECT_EQ(feed->readiness(), 0);
  EXPECT_TRUE(feed->recent().empty());
  EXPECT_FALSE(feed->measurement());

  access.answer = false;
  clock.advance(10);  // past the capture's memory of the last answer
  LiveFeed refused(capture, lid, clock);
  refused.start(0.1, false);
  EXPECT_FALSE(refused.running());
  EXPECT_FALSE(capture.running());
}

TEST_F(LiveFeedTest, TheLidIsReadAtMostEveryThreeTenthsOfASecond) {
  for (double gap : {0.0, 0.1, 0.1, 0.11, 0.05, 0.35}) {
    clock.advance(gap);
    capture.onMeasurement(person({}));
    main.runPosted();
  }
  EXPECT_EQ(lidReads, 3);
  EXPECT_EQ(feed->lid(), 112);
}

}  // namespace
}  // namespace sodam
