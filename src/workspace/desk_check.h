#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workspace/desk_geometry.h"

namespace sodam {

// One judgement of a desk setup's side view: a rule, the number it reads,
// which way the number is off, and what the user reads: a line that names
// it and, when it is off, a tip in the product's voice.
struct DeskCheck {
  enum class Rule { screenTop, distance, neck, elbow, wrist, feet };
  // Off on the low or the high side of the rule's number.
  enum class Verdict { good, low, high };

  Rule rule = Rule::screenTop;
  Verdict verdict = Verdict::good;
  double value = 0;
  std::string line;
  std::string tip;  // empty when good

  bool good() const { return verdict == Verdict::good; }

  // The screen's top may sit up to this far below the eye, and a little
  // above it.
  static constexpr double screenTopBelowEyeMostCm = 15;
  static constexpr double screenTopAboveEyeMostCm = 2;
  // Arm's length to the screen's middle; a big screen may stand further, up
  // to this many diagonals.
  static constexpr double closestViewCm = 50;
  static constexpr double farthestViewCm = 75;
  static constexpr double farthestViewDiagonals = 1.6;
  // The gaze to the screen's middle, below the horizon.
  static constexpr double gazeDownMostDegrees = 30;
  static constexpr double gazeDownLeastDegrees = 0;
  // The elbow's inside angle with the hands on the keys.
  static constexpr double elbowLeastDegrees = 80;
  static constexpr double elbowMostDegrees = 125;
  // The keys against the elbow hanging at rest.
  static constexpr double keysAboveElbowMostCm = 6;
  static constexpr double keysBelowElbowMostCm = 15;
  // Feet hanging in the air, and knees pushed above the hips.
  static constexpr double feetDangleMostCm = 1;
  static constexpr double kneeAboveHipMostCm = 2;

  // Every rule that applies to the setup's kind, in the rules' order: the
  // feet only where one sits.
  static std::vector<DeskCheck> judge(const DeskGeometry& geometry);
  // The rules' names as the page heads them: "화면 높이".
  static std::string_view ruleName(Rule rule);
  static std::string_view ruleKey(Rule rule);
  // The checks that are off.
  static std::vector<DeskCheck> broken(const DeskGeometry& geometry);
};

}  // namespace sodam
