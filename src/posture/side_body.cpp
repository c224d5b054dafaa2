#include "posture/side_body.h"

#include <algorithm>
#include <cmath>

namespace sodam {

namespace {
// The torso span against the head: a narrow torso is seen from the side, a
// wide or clipped one from the front; in between it can't tell.
std::optional<bool> torsoVerdict(const SideBody& body) {
  if (!body.torso) return std::nullopt;
  const auto& torso = *body.torso;
  double width = torso.hi - torso.lo;
  if (body.headWidth > 1 && !torso.clipped) width /= body.headWidth;
  if (torso.clipped || width > 2.4) return false;
  if (width < 2.0) return true;
  return std::nullopt;
}
}  // namespace

void SideBody::judge() {
  const auto first = torsoVerdict(*this);
  if (shoulderL && shoulderR && confL >= 0.3f && confR >= 0.3f) {
    sideways =
        first ? *first : std::abs(shoulderL->x - shoulderR->x) / std::max(headWidth, 1.0) < 1.1;
    return;
  }
  if (first) {
    sideways = first;
    return;
  }
  // One shoulder seen clearly and the other hardly at all: the far one is
  // hidden behind the body.
  if (std::max(confL, confR) >= 0.4f && std::min(confL, confR) < 0.1f) {
    sideways = true;
  } else {
    sideways = std::nullopt;
  }
}

}  // namespace sodam
