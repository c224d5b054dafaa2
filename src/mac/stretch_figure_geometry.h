#pragma once

// Plain arithmetic behind the stretch figure's drawing, kept free of AppKit
// so it can be checked anywhere. The figure is drawn as the user's mirror:
// facing the camera its right side is on the screen's right; sideways it
// faces the screen's right, its right arm the near one. Units are the head's
// radius, y up, the hips at the origin.

#include <array>
#include <cmath>
#include <vector>

#include "coach/pose.h"
#include "coach/stretch.h"
#include "support/geometry.h"
#include "support/numeric.h"

namespace sodam {

struct FigureSkeleton {
  // Index 0 is the figure's left, 1 its right.
  enum Arm { left = 0, right = 1 };

  Point hip;
  Point chest;
  Point neck;  // the base of the neck, between the shoulders
  Point head;  // the head's centre
  double headRadius = 1;
  Point face;  // where the face looks: a point on the head's rim
  std::array<Point, 2> shoulder, elbow, wrist, hand;
  std::array<bool, 2> behind{};
};

// A soft highlight behind a part of the figure.
struct FigureGlow {
  Point centre;
  double radius = 0;
};

namespace figure {

inline constexpr double spine = 5;
inline constexpr double neckLength = 1.4;
inline constexpr double shoulderHalfWidth = 1.9;
inline constexpr double upperArm = 2.9;
inline constexpr double forearm = 2.6;
inline constexpr double handLength = 0.7;
inline constexpr double shrugLift = 0.35;
inline constexpr double retractShift = 0.3;
inline constexpr double headShift = 0.8;

inline Point along(Point from, double length, double degreesFromUp) {
  return {from.x + length * std::sin(rad(degreesFromUp)),
          from.y + length * std::cos(rad(degreesFromUp))};
}

// An arm's angle from hanging down, outward (or forward) on the side whose
// x grows with `outward`.
inline Point hanging(Point from, double length, double degrees, double outward) {
  return {from.x + outward * length * std::sin(rad(degrees)),
          from.y - length * std::cos(rad(degrees))};
}

inline void placeArm(FigureSkeleton& f, int arm, const Limb& limb, double outward) {
  f.elbow[arm] = hanging(f.shoulder[arm], upperArm, limb.upper, outward);
  f.wrist[arm] = hanging(f.elbow[arm], forearm, limb.fore, outward);
  // Wrist flexion turns the hand down from the forearm's line.
  f.hand[arm] = hanging(f.wrist[arm], handLength, limb.fore - outward * limb.hand, outward);
  f.behind[arm] = limb.behind;
}

inline FigureSkeleton front(const Pose& p) {
  FigureSkeleton f;
  const double length = spine * std::max(std::cos(rad(p.spineFlex)), 0.6);
  f.neck = along(f.hip, length, p.spineSide);
  f.chest = along(f.hip, length * 0.6, p.spineSide);
  const double half = shoulderHalfWidth * std::max(std::cos(rad(p.twist)), 0.3);
  const double across = rad(p.spineSide);
  const Point perp{std::cos(across), -std::sin(across)};
  const Point up{std::sin(across), std::cos(across)};
  f.shoulder[FigureSkeleton::right] = {f.neck.x + half * perp.x + shrugLift * p.shrugR * up.x,
                                       f.neck.y + half * perp.y + shrugLift * p.shrugR * up.y};
  f.shoulder[FigureSkeleton::left] = {f.neck.x - half * perp.x + shrugLift * p.shrugL * up.x,
                                      f.neck.y - half * perp.y + shrugLift * p.shrugL * up.y};
  f.headRadius = 1 + 0.08 * p.headForward;
  const Point top = along(f.neck, neckLength, p.spineSide + p.neckSide);
  f.head = along(top, f.headRadius, p.spineSide + p.neckSide);
  f.head.y -= 0.3 * std::sin(rad(p.neckFlex));
  f.face = {f.head.x + f.headRadius * std::sin(rad(p.headTurn)),
            f.head.y - 0.2 * f.headRadius * std::sin(rad(p.neckFlex))};
  placeArm(f, FigureSkeleton::left, p.armL, -1);
  placeArm(f, FigureSkeleton::right, p.armR, 1);
  return f;
}

inline FigureSkeleton side(const Pose& p) {
  FigureSkeleton f;
  f.neck = along(f.hip, spine, p.spineFlex);
  f.neck.x -= retractShift * p.retract;
  f.chest = along(f.hip, spine * 0.6, p.spineFlex);
  f.shoulder = {f.neck, f.neck};
  const Point top = along(f.neck, neckLength, p.spineFlex + p.neckFlex);
  f.head = along(top, f.headRadius, p.spineFlex + p.neckFlex);
  f.head.x += headShift * p.headForward;
  f.face = along(f.head, f.headRadius, 90 + p.spineFlex + p.neckFlex);
  placeArm(f, FigureSkeleton::left, p.armL, 1);
  placeArm(f, FigureSkeleton::right, p.armR, 1);
  return f;
}

inline FigureSkeleton skeleton(const Pose& pose, Stage stage) {
  return stage == Stage::side ? side(pose) : front(pose);
}

inline Point mid(Point a, Point b) {
  return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

// Where each highlighted part lies on the figure.
inline std::vector<FigureGlow> glows(const FigureSkeleton& f, const std::vector<Focus>& focus,
                                     Stage stage) {
  std::vector<FigureGlow> out;
  const Point neckMid = mid(f.neck, f.head);
  const double back = stage == Stage::side ? -0.7 : 0;
  for (const auto& part : focus) {
    switch (part.part) {
      case Focus::Part::neckSide:
        out.push_back({{neckMid.x + 0.6 * part.sign, neckMid.y}, 0.8});
        break;
      case Focus::Part::side:
        out.push_back({{f.chest.x + shoulderHalfWidth * part.sign, f.chest.y}, 1.3});
        break;
      case Focus::Part::neckBack:
        out.push_back({{neckMid.x + back, neckMid.y}, 0.8});
        break;
      case Focus::Part::neckFront:
        out.push_back({{neckMid.x - back, neckMid.y}, 0.8});
        break;
      case Focus::Part::chest:
        out.push_back({{f.chest.x - back, f.chest.y + 0.8}, 1.4});
        break;
      case Focus::Part::upperBack:
        out.push_back({{f.chest.x + back, f.chest.y + 0.8}, 1.4});
        break;
      case Focus::Part::lowerBack:
        out.push_back({{f.hip.x + back, f.hip.y + 1}, 1.3});
        break;
      case Focus::Part::shoulders:
        for (const Point& s : f.shoulder)
          out.push_back({s, 0.9});
        break;
      case Focus::Part::wrists:
        for (const Point& w : f.wrist)
          out.push_back({w, 0.7});
        break;
      case Focus::Part::eyes:
      case Focus::Part::head:
      case Focus::Part::jaw:
        out.push_back({f.head, f.headRadius * 1.3});
        break;
    }
  }
  return out;
}

}  // namespace figure

}  // namespace sodam
