#pragma once

#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "posture/detections.h"
#include "posture/measurement.h"
#include "support/geometry.h"

namespace sodam {

// A person's silhouette in image pixels (origin lower left), as a person
// segmentation would find it: ellipses and convex quadrilaterals.
struct Outline {
  struct Ellipse {
    Point centre;
    double rx = 0;
    double ry = 0;
  };
  // Corners in order round the edge.
  struct Quad {
    std::array<Point, 4> corners;
  };

  std::vector<Ellipse> ellipses;
  std::vector<Quad> quads;

  // A limb or neck of this radius from a to b: a quadrilateral with round ends.
  void addCapsule(Point a, Point b, double radius);
  // Marks every mask pixel whose centre lies inside a shape.
  void draw(Detections::PersonMask& mask, Size frame) const;
};

// What the simulated camera sees of a person: the reading the face
// detectors give (shown as a face unless `fromBody`), and, when the person is
// drawn joint by joint, the body pose and the silhouette. Without them both
// are derived from the face's reading.
struct SimPerson {
  Measurement face;
  std::optional<Detections::BodyPose> body;
  std::optional<Outline> outline;
  // The hands the hand pose detector finds, and where a phone held in them
  // shows, in image pixels.
  std::vector<Detections::HandPose> hands;
  std::optional<Point> phone;

  // Implicit, so that a plain reading stands for a person facing the camera.
  SimPerson(Measurement reading) : face(std::move(reading)) {}
};

}  // namespace sodam
