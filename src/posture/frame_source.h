#pragma once

#include <functional>
#include <optional>

#include "posture/measurement.h"

namespace sodam {

// What the monitor asks of the camera: a paced stream of measurements on the
// main thread. Capture is the product's; the simulation and tests bring their
// own. Main thread only.
class FrameSource {
 public:
  using Handler = std::function<void(std::optional<Measurement>)>;

  virtual ~FrameSource() = default;
  virtual bool authorized() = 0;
  // A revoked camera never starts again.
  virtual bool revoked() const = 0;
  virtual void setFrameInterval(double seconds) = 0;
  virtual void setLight(bool on) = 0;
  // An empty handler stops deliveries, even of frames already on their way.
  virtual void setHandler(Handler handler) = 0;
  virtual void start() = 0;
  virtual void stop() = 0;
};

}  // namespace sodam
