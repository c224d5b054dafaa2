#include "posture/face_pitch.h"

#include <cmath>
#include <limits>

#include "posture/measurement.h"
#include "support/numeric.h"

namespace sodam::FacePitch {

namespace {
// A rigid head: nose and chin below the eyes and ahead of them, in cm.
constexpr double noseBelow = 3.5;
constexpr double chinBelow = 11.0;
constexpr double noseAhead = 1.8;
constexpr double chinAhead = 0.5;
constexpr double neutralProportion = noseBelow / chinBelow;  // 0.3181818181818182
constexpr double lowestRadians = -1.05;
constexpr double highestRadians = 1.22;
constexpr int rounds = 32;

// The proportion of a head pitched by a is
//   m(a) = (3.5 cos a + 1.8 sin a) / (11 cos a + 0.5 sin a) = (3.5 + 1.8 t) / (11 + 0.5 t),
// t = tan a, which rises strictly over the whole search range towards
// 1.8 / 0.5. So "m(mid) is below the target" is "mid is below the root of
// m(a) = target": one arctangent replaces four sines and cosines per round,
// while the bisection keeps its rounds and its bounds.
double rootAngle(double target) {
  if (target >= noseAhead / chinAhead) return std::numeric_limits<double>::infinity();
  // A NaN target stays NaN: every comparison fails, as it would against m(mid).
  return std::atan((chinBelow * target - noseBelow) / (noseAhead - chinAhead * target));
}
}  // namespace

double degrees(double ratio, double baseline) {
  const double root = rootAngle(ratio / baseline * neutralProportion);
  double lo = lowestRadians;
  double hi = highestRadians;
  for (int round = 0; round < rounds; ++round) {
    const double mid = (lo + hi) / 2;
    if (mid < root) {
      lo = mid;
    } else {
      hi = mid;
    }
  }
  return deg((lo + hi) / 2);
}

}  // namespace sodam::FacePitch
