#pragma once

#include "posture/capture.h"
#include "posture/frame_source.h"

namespace sodam {

// The product's camera as the monitor sees it. Main thread only.
class CaptureFrameSource final : public FrameSource {
 public:
  explicit CaptureFrameSource(Capture& capture) : capture_(capture) {}

  bool authorized() override { return capture_.authorized(); }
  bool revoked() const override { return capture_.revoked(); }
  void setFrameInterval(double seconds) override { capture_.setFrameInterval(seconds); }
  void setLight(bool on) override { capture_.setLight(on); }
  void setHandler(Handler handler) override { capture_.onMeasurement = std::move(handler); }
  void start() override { capture_.start(); }
  void stop() override { capture_.stop(); }

 private:
  Capture& capture_;
};

}  // namespace sodam
