#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "coach/follow_score.h"
#include "coach/pose.h"
#include "support/date.h"

namespace sodam {

// Steadies the mirrored pose joint by joint: a speed-adaptive low-pass for
// what was measured, jumps held back until three frames agree, and joints
// no longer measured faded back to rest after a second. Belongs to one coach
// session, which resets it for each new motion. Main thread only.
class MirrorFilter {
 public:
  // The filtered fields of a pose, in order; an arm's hand and `behind` are
  // not filtered.
  enum class Part : std::uint8_t {
    spineSide,
    spineFlex,
    neckSide,
    neckFlex,
    headForward,
    headTurn,
    shrugL,
    shrugR,
    armLUpper,
    armLFore,
    armRUpper,
    armRFore,
  };
  static constexpr std::size_t partCount = 12;

  struct Channel {
    double value = 0;
    double speed = 0;
    Date seen = Date::distantPast();  // when a sample was last accepted
    struct Pending {
      double value = 0;
      int count = 0;
    };
    std::optional<Pending> pending;
  };

  void reset();
  // The pose to draw and compare: `demo` for joints not tracked, the
  // steadied value for the others.
  Pose filter(const Pose& pose, FollowScore::JointSet measured, const Pose& demo, const Pose& rest,
              FollowScore::JointSet tracked, Date now);

  const std::optional<Channel>& channel(Part part) const {
    return channels_[static_cast<std::size_t>(part)];
  }

 private:
  void step(Part part, const Pose& pose, bool measured, double rest, Date now, double dt,
            double& out);

  std::array<std::optional<Channel>, partCount> channels_;
  std::optional<Date> last_;
};

}  // namespace sodam
