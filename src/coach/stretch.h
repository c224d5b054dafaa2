#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "coach/motion.h"
#include "posture/issue_kind.h"

namespace sodam {

// How the user sits to the camera for a stretch.
enum class Stage { front, side };

// Which side of a two-sided stretch runs: `right` as written, `left` mirrored.
enum class Side { right, left };

// A body part the figure highlights. `neckSide` and `side` carry a sign: -1
// for the figure's one side, +1 for the other.
struct Focus {
  enum class Part {
    neckSide,
    side,
    neckBack,
    neckFront,
    chest,
    upperBack,
    lowerBack,
    shoulders,
    wrists,
    eyes,
    head,
    jaw
  };
  Part part;
  double sign = 0;

  static Focus neckSide(double sign) { return {Part::neckSide, sign}; }
  static Focus side(double sign) { return {Part::side, sign}; }
  // The same highlight on the other side.
  Focus flipped() const { return {part, -sign}; }

  bool operator==(const Focus&) const = default;
};

// The library's groups; the raw value is the Korean name.
enum class BodyArea { neck, shoulder, back, chest, waist, eyes, wrist };
std::string_view areaName(BodyArea area);

// A stretch of the library: a motion written for the right side with its
// texts, its area, the stage the user sits in and the issues it answers.
struct Stretch {
  std::string id;
  std::string name;
  BodyArea area = BodyArea::neck;
  std::string summary;
  std::string benefit;
  Stage stage = Stage::front;
  std::vector<Focus> focusRight;  // the highlights of the right side
  bool sides = false;             // runs once per side
  int seconds = 0;                // planned seconds for one side
  Motion motion;                  // written for the right side
  std::vector<IssueKind> helps;
  bool turn = false;  // the user turns sideways to the camera first

  std::vector<Focus> focus(Side side) const;
  // `motion` for the right side, its mirror image for the left.
  Motion motionFor(Side side) const;
  // Loops of the motion in one side: the planned seconds over the loop,
  // rounded, at least 1.
  int reps() const;
  // Seconds of one side: whole loops.
  double duration() const;
  int shownSeconds() const;
  // Both sides when the stretch has two.
  int totalSeconds() const;
  // The rest pose of the stretch's stage.
  Pose rest() const;
};

}  // namespace sodam
