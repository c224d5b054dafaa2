#pragma once

// Made on any thread, then called on the frame queue only, one frame at a
// time; it has no callbacks.

#include <memory>

#include "posture/capture.h"

namespace sodam {

// Runs the Vision requests a frame's plan asks for over the frame's pixel
// buffer and converts what they observe into the core's plain values. The
// requests are pinned to the revisions the measurements were tuned on, made
// once and reused from frame to frame (the segmentation once per run of the
// camera), which is why two threads must never share one detector. The person mask comes at the
// balanced quality: the shoulder walk and the torso scan read its edges,
// which the fast level blurs, and light mode already skips it on most frames.
class VisionDetector final : public Detector {
 public:
  VisionDetector();
  ~VisionDetector() override;
  VisionDetector(const VisionDetector&) = delete;
  VisionDetector& operator=(const VisionDetector&) = delete;

  void detect(const CameraFrame& frame, const FramePlan& plan, Detections& out) override;
  // The person segmentation starts over with a request of its own.
  void beginSequence() override;

 private:
  struct Requests;
  std::unique_ptr<Requests> requests_;
};

}  // namespace sodam
