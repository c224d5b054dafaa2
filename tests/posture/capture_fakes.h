#pragma once

// Stand-ins for the camera's platform ports, shared by the capture and live
// feed tests.

#include "posture/capture.h"

namespace sodam::fakes {

struct Camera : CameraDevice {
  bool configurable = true;
  int configures = 0, starts = 0, stops = 0;
  Sink sink;

  bool configure() override {
    ++configures;
    return configurable;
  }
  void startRunning(Sink s) override {
    ++starts;
    sink = std::move(s);
  }
  void stopRunning() override {
    ++stops;
    sink = nullptr;
  }
  bool inUseElsewhere() const override { return false; }

  void frame(double mediaTime, bool withImage = true) {
    if (sink)
      sink(CameraFrame{mediaTime, {1280, 720}, withImage ? std::make_shared<int>(0) : nullptr});
  }
};

// A face on every frame it is asked about; keeps the plans it was given.
struct FaceDetector : Detector {
  std::vector<FramePlan> plans;
  void detect(const CameraFrame&, const FramePlan& plan, Detections& out) override {
    plans.push_back(plan);
    out.size = {1280, 720};
    out.markRan(Detections::Request::faces);
    out.markRan(Detections::Request::landmarks);
    out.faces.push_back({Rect{{0.4, 0.5}, {0.2, 0.3}}, {}, {}});
    out.landmarks.leftEye = {{700, 400}};
    out.landmarks.rightEye = {{580, 400}};
  }
};

// Answers `answer`, and `unanswered` to whether the user was asked; a
// request waits in `pending` until the test answers it.
struct Access : CameraAccess {
  bool answer = false;
  bool unanswered = false;
  int asks = 0;
  std::function<void(bool)> pending;
  bool authorized() override {
    ++asks;
    return answer;
  }
  bool undecided() override { return unanswered; }
  void request(std::function<void(bool)> done) override { pending = std::move(done); }
};

}  // namespace sodam::fakes
