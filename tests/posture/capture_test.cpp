#include "posture/capture.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "posture/capture_fakes.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct FakeGlass : GlassRenderer {
  std::vector<double> radii;
  std::optional<GlassImage> render(const CameraFrame&, double radius) override {
    radii.push_back(radius);
    return GlassImage{nullptr, {320, 180}};
  }
};

// Holds its tasks until the test runs them, as a busy frame queue would.
struct HeldQueue : SerialQueue {
  std::deque<std::function<void()>> tasks;
  void async(std::function<void()> task) override { tasks.push_back(std::move(task)); }
  void sync(std::function<void()> task) override {
    runAll();
    task();
  }
  void runAll() {
    while (!tasks.empty()) {
      auto task = std::move(tasks.front());
      tasks.pop_front();
      task();
    }
  }
};

struct CaptureTest : ::testing::Test {
  ManualClock clock;
  ManualScheduler main{clock};
  InlineQueue session;
  InlineQueue frames;
  fakes::Camera camera;
  fakes::FaceDetector detector;
  fakes::Access access;
  FakeGlass glass;
  Capture capture{{camera, detector, access, &glass, main, clock, session, frames}};
  int delivered = 0;
  std::vector<bool> states;

  void SetUp() override {
    capture.onMeasurement = [this](std::optional<Measurement> m) {
      EXPECT_TRUE(m);
      ++delivered;
    };
    capture.onStateChange = [this](bool on) { states.push_back(on); };
  }
  void startRunning() {
    capture.start();
    main.runPosted();
  }
};

TEST_F(CaptureTest, EachFrameObeysTheIntervalSetAtItsArrival) {
  startRunning();
  struct Step {
    double time;
    std::optional<double> interval;  // set just before the frame arrives
    bool image;
    bool taken;
  };
  const Step steps[] = {
      {100.00, 0.1, true, true},     // the first frame is always taken
      {100.05, {}, true, false},     //
      {100.10, {}, true, true},      // exactly one interval later
      {100.20, 0.3, true, false},    // the new interval counts at once
      {100.40, {}, true, true},      //
      {100.45, 0.05, true, true},    // and so does a shorter one
      {100.60, 0.15, false, false},  // no image: skipped, the last frame stays
      {100.61, {}, true, true},      // 0.16 after the last frame taken
      {100.71, 0.1, true, true},     // 0.1 apart, though the subtraction rounds below
      {100.80, {}, true, false},     //
  };
  std::size_t taken = 0;
  for (const auto& s : steps) {
    if (s.interval) capture.setFrameInterval(*s.interval);
    camera.frame(s.time, s.image);
    if (s.taken) ++taken;
    EXPECT_EQ(detector.plans.size(), taken) << "frame at " << s.time;
  }
  main.runPosted();
  EXPECT_EQ(delivered, static_cast<int>(taken));
}

TEST_F(CaptureTest, ResultsReachOnlyARunningCaptureAndTheHandlersOfThatMoment) {
  startRunning();
  camera.frame(1);
  capture.stop();
  main.runPosted();
  EXPECT_EQ(delivered, 0) << "stopped before the hop to the main thread";

  startRunning();
  camera.frame(2);
  int replaced = 0;
  capture.onMeasurement = [&](std::optional<Measurement>) { ++replaced; };
  main.runPosted();
  EXPECT_EQ(replaced, 1);
  EXPECT_EQ(delivered, 0);

  camera.frame(3);
  capture.onMeasurement = nullptr;
  main.runPosted();
  EXPECT_EQ(replaced, 1);
  EXPECT_EQ(states, (std::vector<bool>{true, false, true}));
}

TEST_F(CaptureTest, RevokeIsFinal) {
  startRunning();
  capture.start();
  EXPECT_EQ(camera.starts, 1) << "already running";
  capture.revoke();
  main.runPosted();
  EXPECT_FALSE(capture.running());
  EXPECT_EQ(camera.stops, 1);
  capture.start();
  main.runPosted();
  EXPECT_FALSE(capture.running());
  EXPECT_EQ(camera.starts, 1);
  EXPECT_EQ(states, (std::vector<bool>{true, false}));
}

TEST_F(CaptureTest, SettingsAreReadForEachFrame) {
  startRunning();
  std::vector<std::optional<GlassImage>> images;
  capture.onGlass = [&](std::optional<GlassImage> image) { images.push_back(image); };
  camera.frame(1);
  capture.setTrackArms(true);
  capture.setLight(true);
  capture.setCheckPhone(true);
  capture.setGlassRadius(6.5);
  camera.frame(2);
  main.runPosted();
  ASSERT_EQ(detector.plans.size(), 2u);
  EXPECT_FALSE(detector.plans[0].bodyAndHands);
  EXPECT_TRUE(detector.plans[1].bodyAndHands);
  EXPECT_TRUE(detector.plans[1].scene) << "second frame: the phone check is due";
  EXPECT_FALSE(detector.plans[1].person) << "light: the mask only on every third frame";
  EXPECT_EQ(glass.radii, std::vector<double>{6.5});
  EXPECT_EQ(images.size(), 1u);
}

TEST_F(CaptureTest, AFrameArrivingWhileOneWaitsIsDiscarded) {
  HeldQueue held;
  Capture busy{{camera, detector, access, nullptr, main, clock, session, held}};
  busy.start();
  camera.frame(1);
  camera.frame(2);
  held.runAll();
  camera.frame(3);
  held.runAll();
  EXPECT_EQ(detector.plans.size(), 2u);
}

// Writes "S" for each new sequence and "f" for each frame it is given.
struct SequenceDetector : fakes::FaceDetector {
  std::string calls;
  void beginSequence() override { calls += 'S'; }
  void detect(const CameraFrame& frame, const FramePlan& plan, Detections& out) override {
    calls += 'f';
    FaceDetector::detect(frame, plan, out);
  }
};

TEST_F(CaptureTest, EveryRunOfTheCameraStartsTheDetectorsAfresh) {
  HeldQueue held;
  SequenceDetector sequence;
  Capture paced{{camera, sequence, access, nullptr, main, clock, session, held}};
  paced.start();
  EXPECT_EQ(sequence.calls, "") << "the detector is touched on the frame queue only";
  camera.frame(1);
  camera.frame(2);  // late: the first still waits
  held.runAll();
  camera.frame(3);
  held.runAll();
  paced.stop();
  paced.start();
  camera.frame(60);
  held.runAll();
  EXPECT_EQ(sequence.calls, "SffSf");
}

TEST_F(CaptureTest, AuthorisationIsAskedAtMostEveryTenSeconds) {
  EXPECT_FALSE(capture.authorized());
  access.answer = true;
  clock.advance(9.9);
  EXPECT_FALSE(capture.authorized());
  clock.advance(0.2);
  EXPECT_TRUE(capture.authorized());
  EXPECT_EQ(access.asks, 2);

  std::optional<bool> granted;
  capture.authorize([&](bool g) { granted = g; });
  access.answer = false;
  access.pending(false);
  EXPECT_FALSE(granted) << "the answer waits for the main thread";
  main.runPosted();
  EXPECT_EQ(granted, false);
  EXPECT_FALSE(capture.authorized()) << "the fresh answer is kept";
  EXPECT_EQ(access.asks, 2);
}

// A 200x200 frame whose mask shows a head from row 10 and a torso below it.
struct SeatedMaskDetector : Detector {
  void detect(const CameraFrame&, const FramePlan& plan, Detections& out) override {
    out.size = {200, 200};
    out.markRan(Detections::Request::faces);
    out.markRan(Detections::Request::landmarks);
    out.faces.push_back({Rect{{0.4, 0.75}, {0.2, 0.2}}, {}, {}});
    out.landmarks.leftEye = {{115, 170}};
    out.landmarks.rightEye = {{85, 170}};
    if (!plan.person) return;
    out.markRan(Detections::Request::person);
    out.mask.width = out.mask.height = 200;
    out.mask.bytes.assign(200 * 200, 0);
    const auto paint = [&](int c0, int r0, int c1, int r1) {
      for (int r = r0; r <= r1; ++r)
        for (int c = c0; c <= c1; ++c)
          out.mask.bytes[static_cast<std::size_t>(r * 200 + c)] = 0xFF;
    };
    paint(80, 10, 120, 50);
    paint(90, 50, 110, 69);
    paint(30, 70, 170, 199);
  }
};

TEST_F(CaptureTest, TheHeadTopOfTheLastMaskTravelsWithEachFrame) {
  SeatedMaskDetector seated;
  Capture withMask{{camera, seated, access, nullptr, main, clock, session, frames}};
  std::vector<std::optional<double>> tops;
  withMask.onHeadTop = [&](std::optional<double> top) { tops.push_back(top); };
  withMask.start();
  main.runPosted();
  camera.frame(1);
  main.runPosted();
  ASSERT_EQ(tops.size(), 1u);
  ASSERT_TRUE(tops[0]);
  EXPECT_NEAR(*tops[0], 200 - 10 - 0.5, 1.0) << "image y of the mask's first head row";
}

}  // namespace
}  // namespace sodam
