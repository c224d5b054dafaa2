#pragma once

#include <optional>

#include "posture/measurement.h"
#include "support/date.h"
#include "support/geometry.h"

namespace sodam {

// Where the companion's eyes look when they follow the user's face. Main
// thread only: the routing writes it from each frame of a check, and the
// pill's drawing reads it.
class BuddySight {
 public:
  // How long the eyes take to move from one target to the next.
  static constexpr double easeSeconds = 0.25;

  // x and y from −1 to 1; positive y looks down.
  void set(double x, double y, Date at);
  // No target until the next set: the eyes rest.
  void clear();
  // The eased position now, or nothing after a clear.
  std::optional<Point> current(Date at) const;

  // The look that meets a face in the picture: mirrored towards the user.
  static Point face(const Measurement& m);

 private:
  Point from_;
  Point to_;
  Date movedAt_;
  bool seen_ = false;
};

}  // namespace sodam
