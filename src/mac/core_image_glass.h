#pragma once

// Made on any thread, then called on the frame queue only, one frame at a
// time; it has no callbacks.

#include <memory>

#include "posture/capture.h"

namespace sodam {

// Renders the glass picture of a MacCamera frame with Core Image: one blur
// filter and one context, made once and reused for every frame.
class CoreImageGlass final : public GlassRenderer {
 public:
  CoreImageGlass();
  ~CoreImageGlass() override;
  CoreImageGlass(const CoreImageGlass&) = delete;
  CoreImageGlass& operator=(const CoreImageGlass&) = delete;

  // Nothing for a frame without an image or when rendering fails.
  std::optional<GlassImage> render(const CameraFrame& frame, double radius) override;

 private:
  struct Pipeline;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace sodam
