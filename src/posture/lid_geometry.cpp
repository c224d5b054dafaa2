#include "posture/lid_geometry.h"

#include "posture/spine_helpers.h"

namespace sodam {

double LidGeometry::length(std::optional<double> displayHeightCm) {
  // The camera sits in the bezel, 2 cm above the top of the picture.
  constexpr double bezelCm = 2.0;
  return positiveValue(displayHeightCm).value_or(defaultDisplayHeightCm) + bezelCm;
}

}  // namespace sodam
