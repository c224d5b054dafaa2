#include "posture/capture.h"

namespace sodam {

namespace {

constexpr double authorizationCacheSeconds = 10;
// Media times are differences of large doubles: a frame exactly one interval
// after the last must not be dropped because the subtraction rounded down.
constexpr double pacingSlackSeconds = 1e-6;

}  // namespace

Capture::Capture(Ports ports) : ports_(ports) {}

Capture::~Capture() {
  *self_ = nullptr;
  ports_.sessionQueue.sync([this] { ports_.device.stopRunning(); });
  ports_.frameQueue.sync([] {});
}

bool Capture::authorized() {
  const Date now = ports_.clock.now();
  if (!authorizedAnswer_ || now - authorizedAt_ >= authorizationCacheSeconds ||
      now < authorizedAt_) {
    authorizedAnswer_ = ports_.access.authorized();
    authorizedAt_ = now;
  }
  return *authorizedAnswer_;
}

void Capture::authorize(std::function<void(bool)> completion) {
  // The completion is told even when the capture is gone by then.
  auto remember = weakCall(self_, [](Capture& capture, bool granted) {
    capture.authorizedAnswer_ = granted;
    capture.authorizedAt_ = capture.ports_.clock.now();
  });
  ports_.access.request(
      [remember, completion = std::move(completion), &main = ports_.main](bool granted) mutable {
        main.post([remember, completion = std::move(completion), granted] {
          remember(granted);
          if (completion) completion(granted);
        });
      });
}

void Capture::start() {
  if (revoked_ || running_) return;
  running_ = true;
  ports_.sessionQueue.async([this, announce = stateAnnouncer(true)] { beginSession(announce); });
}

// The state change is told on the main thread, and only while the capture
// lives; the announcer is made there, before the queue runs the work.
std::function<void()> Capture::stateAnnouncer(bool running) {
  return weakCall(self_, [running](Capture& capture) {
    if (capture.onStateChange) capture.onStateChange(running);
  });
}

void Capture::beginSession(const std::function<void()>& announce) {
  if (!configured_) configured_ = ports_.device.configure();
  // Unconfigured, the session runs without frames and the monitor's
  // watchdog notices.
  if (configured_) {
    // Queued before the device can deliver, so it comes ahead of the first frame.
    ports_.frameQueue.async([this] { ports_.detector.beginSequence(); });
    ports_.device.startRunning([this](CameraFrame frame) { receive(frame); });
  }
  ports_.main.post(announce);
}

void Capture::stop() {
  running_ = false;
  ports_.sessionQueue.async([this, announce = stateAnnouncer(false)] {
    ports_.device.stopRunning();
    ports_.main.post(announce);
  });
}

void Capture::revoke() {
  revoked_ = true;
  if (running_) stop();
}

bool Capture::inUseElsewhere() const {
  return ports_.device.inUseElsewhere();
}

// Called on the device's thread, or on the frame queue itself when the
// device delivers there; either way the frame's work waits its turn. A frame
// that arrives while the last one is still waiting for the frame queue is
// late and is discarded, as the camera output does with late frames.
void Capture::receive(CameraFrame frame) {
  if (frameWaiting_.exchange(true)) return;
  ports_.frameQueue.async([this, frame = std::move(frame)] {
    frameWaiting_ = false;
    process(frame);
  });
}

void Capture::process(const CameraFrame& frame) {
  const double interval = frameInterval();
  if (frame.mediaTime - lastFrame_ < interval - pacingSlackSeconds) return;
  if (!frame.image) return;
  lastFrame_ = frame.mediaTime;
  const Settings now = settings();

  const FramePlan plan = reader_.plan(now.arms, now.lightMode, now.phoneMode);
  detections_.clear();
  ports_.detector.detect(frame, plan, detections_);
  auto result = reader_.read(detections_, now.arms, now.lightMode, now.phoneMode);

  Delivery delivery{std::move(result.measurement), std::move(result.side), std::nullopt,
                    reader_.lastShoulders() ? reader_.lastShoulders()->top : std::nullopt};
  if (now.glass && ports_.glass) delivery.glass = ports_.glass->render(frame, *now.glass);
  ports_.main.post([deliver = weakCall(self_, [](Capture& capture,
                                                 Delivery& d) { capture.deliver(std::move(d)); }),
                    delivery = std::move(delivery)]() mutable { deliver(delivery); });
}

// Handlers are read here, at delivery, so one cleared meanwhile gets nothing.
void Capture::deliver(Delivery delivery) {
  if (!running_) return;
  if (onHeadTop) onHeadTop(delivery.headTop);
  if (onMeasurement) onMeasurement(delivery.measurement);
  if (onSide) onSide(delivery.side);
  if (delivery.glass && onGlass) onGlass(delivery.glass);
}

Capture::Settings Capture::settings() const {
  std::lock_guard guard(lock_);
  return settings_;
}

double Capture::frameInterval() const {
  std::lock_guard guard(lock_);
  return settings_.interval;
}

void Capture::setFrameInterval(double seconds) {
  std::lock_guard guard(lock_);
  settings_.interval = seconds;
}

std::optional<double> Capture::glassRadius() const {
  std::lock_guard guard(lock_);
  return settings_.glass;
}

void Capture::setGlassRadius(std::optional<double> radius) {
  std::lock_guard guard(lock_);
  settings_.glass = radius;
}

bool Capture::trackArms() const {
  std::lock_guard guard(lock_);
  return settings_.arms;
}

void Capture::setTrackArms(bool on) {
  std::lock_guard guard(lock_);
  settings_.arms = on;
}

bool Capture::light() const {
  std::lock_guard guard(lock_);
  return settings_.lightMode;
}

void Capture::setLight(bool on) {
  std::lock_guard guard(lock_);
  settings_.lightMode = on;
}

bool Capture::checkPhone() const {
  std::lock_guard guard(lock_);
  return settings_.phoneMode;
}

void Capture::setCheckPhone(bool on) {
  std::lock_guard guard(lock_);
  settings_.phoneMode = on;
}

}  // namespace sodam
