#pragma once

#include <optional>

#include "posture/detections.h"
#include "posture/measurement.h"
#include "posture/pose_reader.h"
#include "sim/sim_person.h"

namespace sodam {

// Draws what the platform's detectors would report for a person: landmark
// regions around the eyes, nose and chin of the face's reading, a face box,
// a silhouette mask and body joints. Unless the person brings their own, the
// mask (head ellipse, neck, and a torso from the shoulder line down) and the
// joints are made from the face's reading. A face marked fromBody is not
// shown, only the body. Nothing: an empty chair.
struct SimDetections {
  Size maskSize{640, 360};  // the segmentation's own resolution
  float jointConfidence = 0.9f;
  // The classifier's confidence in a phone that fills the region it is shown.
  float phoneConfidence = 0.72f;

  // Fills `out` (cleared) for the requests the plan asks, in its order.
  void render(const std::optional<SimPerson>& person, Size frame, const FramePlan& plan,
              Detections& out) const;

  // The pieces, also used on their own by tests and benchmarks.
  static Detections::Face faceOf(const Measurement& m);
  static void landmarksOf(const Measurement& m, Detections::FaceLandmarks& out);
  void maskOf(const Measurement& m, Detections::PersonMask& out) const;
  Detections::BodyPose bodyOf(const Measurement& m) const;
  // The scene classifier's labels for the region of interest.
  void sceneOf(const SimPerson& person, Rect region, Detections& out) const;
  // A mask of the segmentation's size with nobody in it.
  void emptyMask(Detections::PersonMask& mask) const;
};

}  // namespace sodam
