#pragma once

// MacCamera is configured, started, stopped and given preview layers on the
// capture's session queue and asked inUseElsewhere on the main thread; it
// calls its frame sink on the frame queue, and handles the loss of its
// device on the session queue. MacCameraAccess answers on the calling thread
// and calls back on a queue the system chooses.

#include <CoreVideo/CoreVideo.h>

#include <functional>
#include <memory>

#include "mac/dispatch_queue.h"
#include "posture/capture.h"

#ifdef __OBJC__
#endif

namespace sodam {

// The built-in camera (or, without a usable one, the default video device,
// or any other camera) behind one capture session, delivering 1280x720
// full-range 4:2:0 frames, unmirrored, at up to 15 a second, with Center
// Stage off. A suspended camera (the built-in one with the lid closed) is
// passed over. A camera that is unplugged or fails while running is looked
// for again at once, and a camera lost while stopped on the next start.
// While a feature wants frames the process holds an activity, so that App
// Nap does not slow its timers and queues. A frame's media time is the sample
// buffer's presentation time, so that pacing measures the spacing of capture
// and not the jitter of delivery; its image holds the sample buffer.
class MacCamera final : public CameraDevice {
 public:
  // `sessionQueue` is the capture's; frames are delivered straight onto
  // `frameQueue`.
  MacCamera(DispatchSerialQueue& sessionQueue, DispatchSerialQueue& frameQueue);
  ~MacCamera() override;
  MacCamera(const MacCamera&) = delete;
  MacCamera& operator=(const MacCamera&) = delete;

  bool configure() override;
  void startRunning(Sink sink) override;
  // Once it returns, the sink is never called again.
  void stopRunning() override;
  bool inUseElsewhere() const override;

 private:
  struct Session;
  // Shared with the notification handlers, which may outlive this object by
  // one hop to the session queue.
  std::shared_ptr<Session> session_;
};

// The pixel buffer of a frame made by MacCamera; not retained, so it lives as
// long as the frame's image does. Null for a frame without an image.
CVPixelBufferRef pixelBuffer(const CameraFrame& frame);

#ifdef __OBJC__
#endif

// The system's camera permission for video.
class MacCameraAccess final : public CameraAccess {
 public:
  bool authorized() override;
  bool undecided() override;
  void request(std::function<void(bool granted)> done) override;
};

}  // namespace sodam
