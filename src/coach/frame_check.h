#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "coach/motion.h"
#include "posture/measurement.h"
#include "posture/side_body.h"

namespace sodam {

// One thing the camera must see before a stretch can be followed: whether
// this frame shows it, how much it counts, and what the user should do.
// Texts are the product's own literals.
struct FrameCheck {
  static constexpr std::size_t count = 4;
  using List = std::array<FrameCheck, count>;

  std::string_view id;
  std::string_view title;
  std::string_view fix;
  double weight = 0;
  bool ok = false;

  // Facing the camera: the face, the screen's angle and distance, the
  // shoulders and the elbows of the arms the motion moves.
  static List front(const std::optional<Measurement>& measurement, bool leftArmMoves,
                    bool rightArmMoves);
  // Sideways: turned, the torso whole, a shoulder and an elbow.
  static List side(const std::optional<SideBody>& body);
  // The arms the motion moves by more than a glance, the person's own left
  // and right.
  static std::pair<bool, bool> armsMoved(const Motion& motion);
  // The share of the weights that this frame's checks pass.
  static double score(const List& checks);

  bool operator==(const FrameCheck&) const = default;
};

}  // namespace sodam
