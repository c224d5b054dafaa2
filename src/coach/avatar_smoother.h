#pragma once

#include <optional>

#include "coach/pose.h"
#include "support/date.h"

namespace sodam {

// Eases the user's mirrored figure on screen from frame to frame. Belongs to
// the view that draws it. Main thread only.
class AvatarSmoother {
 public:
  // The pose to draw now, moved towards the target; the arms take the short
  // way round.
  const Pose& step(const Pose& target, Date now);
  const std::optional<Pose>& shown() const { return shown_; }

 private:
  std::optional<Pose> shown_;
  Date last_;
};

}  // namespace sodam
