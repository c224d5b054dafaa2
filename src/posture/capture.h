#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "posture/detections.h"
#include "posture/measurement.h"
#include "posture/pose_reader.h"
#include "posture/side_body.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/serial_queue.h"
#include "support/weak_call.h"

namespace sodam {

// One camera frame as the platform holds it; the core never looks inside.
struct CameraFrame {
  double mediaTime = 0;  // seconds on the media clock
  Size size;
  // The platform's retained image buffer; empty for a buffer without an image.
  std::shared_ptr<const void> image;
};

// The camera. Its methods are called on the session queue; it delivers frames
// to the sink from a thread of its own (which may be the frame queue itself),
// and never after stopRunning returned.
class CameraDevice {
 public:
  using Sink = std::function<void(CameraFrame)>;
  virtual ~CameraDevice() = default;
  // Finds the built-in camera and sets up 1280x720 frames, late frames
  // discarded, no mirroring, at most 15 a second. False without a device or
  // an input.
  virtual bool configure() = 0;
  virtual void startRunning(Sink sink) = 0;
  virtual void stopRunning() = 0;
  // Another application holds the device.
  virtual bool inUseElsewhere() const = 0;
};

// Runs the detectors a frame's plan asks for, on the frame queue.
class Detector {
 public:
  virtual ~Detector() = default;
  // Fills `out` (already cleared) for the frame, following the plan's order
  // and conditions, and marks each request that ran or failed.
  virtual void detect(const CameraFrame& frame, const FramePlan& plan, Detections& out) = 0;
  // The camera starts again, and the frames that follow have nothing to do
  // with the ones before: a detector that carries state from frame to frame
  // starts it afresh. Called on the frame queue, ahead of the run's first
  // frame.
  virtual void beginSequence() {}
};

// The blurred picture that lets the user see where they sit without a
// sharp image; an opaque platform image.
struct GlassImage {
  std::shared_ptr<const void> handle;
  Size size;
};

// Renders the glass picture on the frame queue: the frame clamped to its
// extent, blurred with a Gaussian of this radius, cropped back, scaled to a
// quarter and mirrored horizontally.
class GlassRenderer {
 public:
  virtual ~GlassRenderer() = default;
  virtual std::optional<GlassImage> render(const CameraFrame& frame, double radius) = 0;
};

// The system's camera permission.
class CameraAccess {
 public:
  virtual ~CameraAccess() = default;
  virtual bool authorized() = 0;
  // The user has not answered yet, so asking shows the system's question. A
  // platform that never asks is never undecided.
  virtual bool undecided() { return false; }
  // Asks the user; `done` may be called on any thread.
  virtual void request(std::function<void(bool granted)> done) = 0;
};

// Owns the camera session and paces it: frames are dropped down to the asked
// interval before any work, the rest go through the pose reader, and results
// reach the handlers on the main thread while the capture runs.
// Threads: the API and the handlers belong to the main thread; the settings
// may be set from any thread (they are read by the frame queue under a lock);
// the session work runs on the session queue and the frames on the frame queue.
class Capture {
 public:
  struct Ports {
    CameraDevice& device;
    Detector& detector;
    CameraAccess& access;
    GlassRenderer* glass = nullptr;  // none: no glass picture is made
    Scheduler& main;
    Clock& clock;
    SerialQueue& sessionQueue;  // "capture.session"
    SerialQueue& frameQueue;    // "capture.frames"
  };

  explicit Capture(Ports ports);
  // Stops the camera and drains both queues before the members go.
  ~Capture();
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  std::function<void(std::optional<Measurement>)> onMeasurement;
  std::function<void(std::optional<GlassImage>)> onGlass;
  std::function<void(std::optional<SideBody>)> onSide;
  std::function<void(bool)> onStateChange;
  // The top of the head in image pixels, as the last person mask showed it;
  // for the diagnostic run, which prints it beside each frame. Told before
  // the frame's measurement.
  std::function<void(std::optional<double>)> onHeadTop;

  // Whether the camera is authorised; the answer is kept for 10 seconds.
  bool authorized();
  // Asks for access; the completion runs on the main thread.
  void authorize(std::function<void(bool granted)> completion);

  // Does nothing once revoked or while running.
  void start();
  void stop();
  // Final: stops a running session, and every later start does nothing.
  void revoke();
  bool inUseElsewhere() const;

  bool running() const { return running_; }
  bool revoked() const { return revoked_; }

  double frameInterval() const;
  void setFrameInterval(double seconds);
  std::optional<double> glassRadius() const;
  void setGlassRadius(std::optional<double> radius);
  bool trackArms() const;
  void setTrackArms(bool on);
  bool light() const;
  void setLight(bool on);
  bool checkPhone() const;
  void setCheckPhone(bool on);

 private:
  struct Settings {
    double interval = 0;
    std::optional<double> glass;
    bool arms = false;
    bool lightMode = false;
    bool phoneMode = false;
  };
  struct Delivery {
    std::optional<Measurement> measurement;
    std::optional<SideBody> side;
    std::optional<GlassImage> glass;
    std::optional<double> headTop;
  };

  Settings settings() const;
  std::function<void()> stateAnnouncer(bool running);
  void beginSession(const std::function<void()>& announce);
  void receive(CameraFrame frame);
  void process(const CameraFrame& frame);
  void deliver(Delivery delivery);

  Ports ports_;
  LifeToken<Capture> self_ = lifeToken(this);

  // Main thread.
  bool running_ = false;
  bool revoked_ = false;
  std::optional<bool> authorizedAnswer_;
  Date authorizedAt_ = Date::distantPast();

  // Session queue.
  bool configured_ = false;

  // Frame queue.
  PoseReader reader_;
  Detections detections_;
  double lastFrame_ = -1e300;
  std::atomic<bool> frameWaiting_{false};

  mutable std::mutex lock_;
  Settings settings_;
};

}  // namespace sodam
