#pragma once

// The pose reader's steps, shared between its source files. Not for use
// outside the reader.

#include <cmath>
#include <optional>
#include <vector>

#include "posture/detections.h"
#include "posture/measurement.h"
#include "posture/pose_reader.h"
#include "posture/side_body.h"

namespace sodam::pose_steps {

using Mask = Detections::PersonMask;
using BodyJoint = Detections::BodyJoint;

// Converts between the mask's grid (row 0 at the top) and image pixels
// (origin lower left); the two may differ in resolution.
struct MaskGrid {
  const Mask& mask;
  Size size;

  double pixelsPerColumn() const { return size.width / mask.width; }
  double pixelsPerRow() const { return size.height / mask.height; }
  int columnOf(double xNormalised) const {
    return static_cast<int>(std::floor(xNormalised * mask.width));
  }
  int rowOf(double yNormalised) const {
    return static_cast<int>(std::floor((1 - yNormalised) * mask.height));
  }
  double imageX(double column) const { return size.width * (column + 0.5) / mask.width; }
  double imageY(double row) const { return size.height * (1 - (row + 0.5) / mask.height); }
};

// Mean of a region's points; nothing for an empty region.
std::optional<Point> centroid(const std::vector<Point>& points);

// The face-derived part of a Measurement; nothing without landmarks or
// without both eyes.
std::optional<Measurement> readFace(const Detections& detections, const Detections::Face& face);
bool eyesReadable(const Detections& detections);

// Walks down the silhouette beside the head and scans the torso below it.
std::optional<PoseReader::LastShoulders> shoulders(const Mask& mask, Rect face, Size size,
                                                   std::vector<PoseReader::TorsoRun>& runs);

// The body with the best shoulder confidence; the first on a tie.
const Detections::BodyPose* bestBody(const Detections& detections);
// A joint of the body in image pixels, when it is at least this confident.
std::optional<Point> jointPoint(const Detections::BodyPose& body, BodyJoint joint,
                                double minConfidence, Size size);

// The body pose standing in for a face that wasn't found.
struct StandIn {
  Point eyeL;
  Point eyeR;
  std::optional<Point> nose;
  Rect face;  // made up around the eyes, normalised
};
std::optional<StandIn> standIn(const Detections& detections);

// `face` is the face's box or the stand-in's, normalised; `mask` the one this
// frame may use, if any.
Arms readArms(const Detections& detections, const Mask* mask, Rect face,
              std::optional<PoseReader::LastWrist>& lastL,
              std::optional<PoseReader::LastWrist>& lastR);

std::optional<SideBody> readSide(const Detections& detections, const Mask* mask,
                                 std::optional<double> faceRatio);

}  // namespace sodam::pose_steps
