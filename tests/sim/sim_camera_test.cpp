#include "sim/sim_camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "sim/virtual_sitter.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct Granted : CameraAccess {
  bool authorized() override { return true; }
  void request(std::function<void(bool)> done) override { done(true); }
};

// The virtual sitter in front of the simulated camera, through the capture,
// in virtual time: frames come at 15 a second on the main thread.
struct SimPipeline : ::testing::Test {
  ManualClock clock;
  ManualScheduler main{clock};
  InlineQueue session;
  InlineQueue frames;
  VirtualSitter sitter;
  SimCamera camera{main, clock, [this] { return sitter.render(); }};
  Granted access;
  Capture capture{{camera, camera, access, nullptr, main, clock, session, frames}};
  std::vector<double> deliveredAt;  // in frames of the camera since the start
  std::vector<std::optional<Measurement>> delivered;

  void SetUp() override {
    capture.onMeasurement = [this](std::optional<Measurement> m) {
      deliveredAt.push_back(std::round(clock.now().sinceReference * 15));
      delivered.push_back(std::move(m));
    };
  }
};

TEST_F(SimPipeline, PacingKeepsExactlyTheFramesTheIntervalAllows) {
  capture.setFrameInterval(0.2);
  capture.start();
  main.advance(1.0);
  EXPECT_EQ(camera.framesMade(), 15);
  // Every third frame: 1/15 s apart, the second and third come too early.
  EXPECT_EQ(deliveredAt, (std::vector<double>{1, 4, 7, 10, 13}));

  capture.setFrameInterval(0.5);  // between frames 15 and 16
  main.advance(1.0);
  EXPECT_EQ(deliveredAt, (std::vector<double>{1, 4, 7, 10, 13, 21, 29}));
  for (const auto& m : delivered)
    EXPECT_TRUE(m);

  capture.stop();
  main.advance(1.0);
  EXPECT_EQ(camera.framesMade(), 30) << "the camera's timer ends with the session";
  EXPECT_EQ(delivered.size(), 7u);
}

TEST_F(SimPipeline, TheReaderRecoversWhatTheSitterShows) {
  capture.setTrackArms(true);
  capture.start();
  main.advance(0.1);
  const auto truth = sitter.render();
  ASSERT_TRUE(truth && truth->shoulderL && truth->torsoWidth);
  ASSERT_EQ(delivered.size(), 1u);
  const auto& m = delivered.front();
  ASSERT_TRUE(m && m->shoulderL && m->torsoWidth && m->arms);
  EXPECT_NEAR(m->eyeL.x, truth->eyeL.x, 1e-9);
  EXPECT_NEAR(m->eyeR.y, truth->eyeR.y, 1e-9);
  EXPECT_NEAR(*m->faceRatio, *truth->faceRatio, 1e-9);
  EXPECT_NEAR(*m->aperture, *truth->aperture, 1e-9);
  EXPECT_NEAR(m->pupil->x, 0.5, 1e-9);
  // The mask has half the frame's resolution: a row is 2 pixels.
  EXPECT_NEAR(m->shoulderL->y, truth->shoulderL->y, 2);
  EXPECT_NEAR(*m->torsoWidth, *truth->torsoWidth, 2 * 2);
  EXPECT_NEAR(m->arms->shoulderL->x, truth->shoulderL->x, 1e-9);
  EXPECT_FALSE(m->arms->wristL) << "the hands are below the frame: absent, not guessed";
}

TEST_F(SimPipeline, AnEmptyChairGivesFramesWithoutAMeasurement) {
  sitter.present = false;
  capture.setTrackArms(true);
  capture.start();
  main.advance(0.5);
  ASSERT_FALSE(delivered.empty());
  for (const auto& m : delivered)
    EXPECT_FALSE(m);
}

TEST(SimCameraThreads, StartedAndStoppedFromTheSessionQueue) {
  ManualClock clock;
  ManualScheduler main{clock};
  ThreadQueue session("capture.session");
  ThreadQueue frames("capture.frames");
  VirtualSitter sitter;
  SimCamera camera{main, clock, [&] { return sitter.render(); }};
  Granted access;
  Capture capture{{camera, camera, access, nullptr, main, clock, session, frames}};
  std::atomic<int> seen = 0;
  capture.onMeasurement = [&](std::optional<Measurement> m) { seen += m.has_value(); };
  capture.start();
  session.sync([] {});
  for (int i = 0; i < 15; ++i) {
    main.advance(1.0 / 15);
    frames.sync([] {});
  }
  main.runPosted();
  EXPECT_GT(seen, 10);
  capture.stop();
  session.sync([] {});
  main.advance(1);
  const int made = camera.framesMade();
  main.advance(1);
  EXPECT_EQ(camera.framesMade(), made);
}

}  // namespace
}  // namespace sodam
