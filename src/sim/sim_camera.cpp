#include "sim/sim_camera.h"

namespace sodam {

namespace {

// What the simulated image holds: the person the source gave, if any.
struct SimScene {
  std::optional<SimPerson> person;
};

}  // namespace

SimCamera::SimCamera(Scheduler& main, Clock& clock, Source source, Options options)
    : main_(main), clock_(clock), source_(std::move(source)), options_(std::move(options)) {}

SimCamera::~SimCamera() {
  *self_ = nullptr;
}

void SimCamera::startRunning(Sink sink) {
  {
    std::lock_guard guard(mutex_);
    sink_ = std::move(sink);
    if (!runningSince_) runningSince_ = clock_.now();
  }
  // The timer belongs to the main thread, whichever queue starts the camera.
  main_.post(weakCall(self_, [](SimCamera& camera) {
    if (camera.timer_.isValid()) return;
    const double period = 1 / camera.options_.framesPerSecond;
    camera.timer_ = camera.main_.schedule({period, period, 0}, [&camera] { camera.tick(); });
  }));
}

// The timer notices the missing sink at its next tick and ends itself.
void SimCamera::stopRunning() {
  std::lock_guard guard(mutex_);
  sink_ = nullptr;
  if (runningSince_) secondsRunBefore_ += clock_.now() - *runningSince_;
  runningSince_.reset();
}

void SimCamera::tick() {
  std::lock_guard guard(mutex_);
  if (!sink_) {
    timer_.invalidate();
    return;
  }
  auto scene = std::make_shared<SimScene>();
  scene->person = source_();
  CameraFrame frame;
  frame.mediaTime = clock_.now().sinceReference;
  frame.size = scene->person ? scene->person->face.size : options_.frame;
  frame.image = std::move(scene);
  ++framesMade_;
  // Called under the lock so that stopRunning waits for a frame on its way.
  sink_(std::move(frame));
}

void SimCamera::detect(const CameraFrame& frame, const FramePlan& plan, Detections& out) {
  ++framesDetected_;
  const auto* scene = static_cast<const SimScene*>(frame.image.get());
  options_.detections.render(scene->person, frame.size, plan, out);
  for (std::size_t r = 0; r < Detections::requestCount; ++r) {
    if (out.requests[r].ran) ++requestsRun_[r];
  }
}

int SimCamera::requestsRun(Detections::Request request) const {
  return requestsRun_[static_cast<std::size_t>(request)];
}

int SimCamera::framesDetected() const {
  return framesDetected_;
}

bool SimCamera::running() const {
  std::lock_guard lock(mutex_);
  return runningSince_.has_value();
}

double SimCamera::secondsRunning() const {
  std::lock_guard guard(mutex_);
  return secondsRunBefore_ + (runningSince_ ? clock_.now() - *runningSince_ : 0);
}

int SimCamera::framesMade() const {
  std::lock_guard guard(mutex_);
  return framesMade_;
}

}  // namespace sodam
