#pragma once

#include <optional>

#include "support/geometry.h"

namespace sodam {

// A person seen without a face or turned sideways, as the stretch coach needs.
struct SideBody {
  struct Torso {
    double lo = 0;
    double hi = 0;
    double y = 0;
    bool clipped = false;
    bool operator==(const Torso&) const = default;
  };
  struct Band {
    double lo = 0;
    double loY = 0;
    double hi = 0;
    double hiY = 0;
    bool operator==(const Band&) const = default;
  };

  Point head;
  double headWidth = 0;
  std::optional<Torso> torso;
  std::optional<Band> band;
  std::optional<Point> shoulderL, shoulderR;
  float confL = 0;
  float confR = 0;
  std::optional<Point> elbowL, elbowR, wristL, wristR, hipL, hipR;
  std::optional<Point> ear;
  std::optional<Point> nose;
  std::optional<double> faceRatio;
  std::optional<bool> sideways;

  SideBody() = default;
  SideBody(Point head, double headWidth) : head(head), headWidth(headWidth) {}

  // Fills `sideways` from the torso span and the shoulders.
  void judge();

  bool operator==(const SideBody&) const = default;
};

}  // namespace sodam
