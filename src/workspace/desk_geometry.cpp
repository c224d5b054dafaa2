#include "workspace/desk_geometry.h"

#include <algorithm>
#include <cmath>

#include "support/numeric.h"

namespace sodam {

namespace {

// Inches of diagonal to centimetres of a laptop's 16:10 panel height.
constexpr double laptopHeightPerInch = 1.346;
constexpr double screenBezelCm = 3;
constexpr double hipAboveSeatCm = 9;
constexpr double sofaHipX = -48;
constexpr double bodyToHipCm = 12;
// Feet count as on the footrest above this height.
constexpr double footrestUsedCm = 0.5;
constexpr double kneeAboveFootCm = 3;
constexpr double ankleBelowKneeCm = 2.5 + 3;
// Below this measured drop of the eye the user sits as tall as ever.
constexpr double slumpNoticedCm = 0.05;
constexpr double hunchMost = 1.4;
constexpr int hunchRounds = 18;

V2 midpoint(V2 a, V2 b) {
  return (a + b) * 0.5;
}

}  // namespace

DeskGeometry::DeskGeometry(const DeskSetup& s, std::optional<double> reach)
    : setup(s), body{s.height} {
  if (setup.kind == DeskKind::standing) {
    placeStanding();
  } else {
    placeLegs(reach);
    placeTrunk();
  }
  neck = {(shoulder.x + head.x) / 2 + 1, shoulder.y + 0.42 * (head.y - shoulder.y)};
  placeScreens();
  placeArm();
}

void DeskGeometry::placeLegs(std::optional<double> reach) {
  const double h = body.height;
  const DeskKind kind = setup.kind;
  seatTop = setup.seat + setup.cushion;
  hip = {kind == DeskKind::sofa ? sofaHipX : -bodyToHipCm - setup.gap, seatTop + hipAboveSeatCm};
  const double natural = 0.252 * h + 2.5;
  Feet feet = Feet::floor;
  if (kind != DeskKind::sofa) {
    feet = setup.feet.value_or(setup.footrest > footrestUsedCm ? Feet::footrest : Feet::floor);
  }
  footY = feet == Feet::footrest ? setup.footrest : 0;
  const double drop = seatTop - footY;
  if (reach) {
    legReach = *reach;
  } else if (kind == DeskKind::sofa) {
    legReach = natural;
  } else if (feet == Feet::dangle) {
    legReach = clamp(drop - 3, natural - 12, natural);
  } else {
    const double slack = feet == Feet::footrest ? 10 : 3;
    legReach = clamp(drop, natural - slack, natural + 16);
  }
  feetDangle = drop - legReach;
  const double kneeY = std::max(seatTop + 3, footY + legReach + kneeAboveFootCm);
  const double thigh = thighShare * h;
  const double rise = kneeY - hip.y;
  knee = {hip.x + std::sqrt(std::max(0.0, thigh * thigh - rise * rise)), kneeY};
  ankle = {knee.x + 3, kneeY - (legReach - ankleBelowKneeCm)};
  toe = {ankle.x + 17, ankle.y - 5};
}

DeskGeometry::Trunk DeskGeometry::trunk(double bend) const {
  const double h = body.height;
  const double fit = setup.sitFit.value_or(0);
  const double a = setup.recline - 8 * bend;
  const double b = a - 12 * bend;
  const double trunkLength = 0.34 * h - 9 - 10 * bend + fit / 2;
  const double headReach = 0.452 * h - 0.34 * h + fit / 2;
  Trunk t;
  t.shoulder = hip + V2{1, trunkLength}.turned(a);
  t.eye = t.shoulder + V2{8, headReach}.turned(b);
  t.head = t.shoulder + V2{2, headReach + 2.5}.turned(b);
  return t;
}

// Halves [0, 1.4] a fixed number of times for the hunch at which the eye
// falls as far as the camera saw it fall.
double DeskGeometry::solveHunch() const {
  if (!setup.slump || *setup.slump <= slumpNoticedCm) return 0;
  const double start = trunk(0).eye.y;
  double low = 0;
  double high = hunchMost;
  double middle = 0;
  for (int round = 0; round < hunchRounds; ++round) {
    middle = (low + high) / 2;
    if (start - trunk(middle).eye.y < *setup.slump) {
      low = middle;
    } else {
      high = middle;
    }
  }
  return middle;
}

void DeskGeometry::placeTrunk() {
  hunch = solveHunch();
  const double bend = std::max(hunch, 0.0);
  trunkAngle = setup.recline - 8 * bend;
  neckAngle = trunkAngle - 12 * bend;
  const Trunk t = trunk(bend);
  shoulder = t.shoulder;
  eye = t.eye;
  head = t.head;
  elbowRest = {shoulder.x + 2, shoulder.y + 0.14 * body.height - 0.34 * body.height};
  seatBack = hip.x - 14;
  seatFront = knee.x - 8;
}

void DeskGeometry::placeStanding() {
  const double h = body.height;
  const double x0 = -bodyToHipCm - setup.gap;
  ankle = {x0 + 2, 8};
  toe = {x0 + 19, 2};
  knee = {x0 + 3, 0.285 * h};
  hip = {x0, 0.53 * h};
  shoulder = {x0 - 1, 0.82 * h};
  eye = {x0 + 8, 0.936 * h};
  head = {x0 + 2, 0.936 * h + 2.5};
  elbowRest = {shoulder.x + 2, 0.63 * h};
}

double DeskGeometry::laptopScreenHeight() const {
  return setup.laptopSize * laptopHeightPerInch + screenBezelCm;
}

double DeskGeometry::monitorHeight() const {
  return setup.monitorSize * setup.shape.heightPerInch() + screenBezelCm;
}

void DeskGeometry::placeScreens() {
  const DeskKind kind = setup.kind;
  const double S = laptopScreenHeight();
  surface = setup.desk;
  std::optional<V2> hinge;
  if (kind == DeskKind::laptop || kind == DeskKind::cafe) {
    hinge = V2{setup.depth, setup.desk + 1.6};
    keyboard = {setup.depth - 0.55 * S, setup.desk + 3.4};
  } else if (kind == DeskKind::laptopStand) {
    hinge = V2{setup.depth, setup.desk + setup.stand + 1.6};
  } else if (kind == DeskKind::laptopMonitor) {
    hinge = V2{std::max(setup.depth - 24, 30.0), setup.desk + 1.6};
  } else if (kind == DeskKind::sofa) {
    surface = std::max(hip.y, knee.y) + 7 + setup.stand;
    hinge = V2{knee.x + 4, surface + 1.6};
    keyboard = {hinge->x - 0.55 * S, surface + 3.4};
  }
  if (kind.keyboard()) keyboard = {16, setup.desk + 1.8};
  if (hinge) {
    const double l = rad(setup.lid - 90);
    laptopHinge = hinge;
    laptopBottom = *hinge + V2{2.2 * std::sin(l), 2.2 * std::cos(l)};
    laptopTop = *hinge + V2{(S - 1) * std::sin(l), (S - 1) * std::cos(l)};
  }
  if (kind.usesMonitor()) {
    const double P = monitorHeight();
    const double t = rad(setup.tilt);
    monitorBottom = V2{setup.depth, setup.desk + setup.stand};
    monitorTop = *monitorBottom + V2{P * std::sin(t), P * std::cos(t)};
    screenTop = *monitorTop;
    screenBottom = *monitorBottom;
  } else {
    screenTop = laptopTop.value_or(V2{});
    screenBottom = laptopBottom.value_or(V2{});
  }
  camera = laptopTop ? *laptopTop : monitorTop.value_or(V2{});
}

void DeskGeometry::placeArm() {
  const double a = upperArmShare * body.height;
  const double b = forearmShare * body.height;
  const V2 target = keyTarget();
  const V2 toward = target - shoulder;
  const double d = toward.length();
  const double theta = std::atan2(toward.y, toward.x);
  if (a + b - 0.5 <= d) {
    elbow = shoulder + V2{std::cos(theta), std::sin(theta)} * a;
    hand = shoulder + V2{std::cos(theta), std::sin(theta)} * (a + b);
    return;
  }
  const double phi = std::acos(clamp((a * a + d * d - b * b) / (2 * a * std::max(d, 1.0)), -1, 1));
  elbow = shoulder + V2{std::cos(theta - phi), std::sin(theta - phi)} * a;
  hand = target;
}

double DeskGeometry::screenDiagonalCm() const {
  const double inches = setup.kind.usesMonitor() ? setup.monitorSize : setup.laptopSize;
  return inches * 2.54;
}

V2 DeskGeometry::screenMiddle() const {
  return midpoint(screenTop, screenBottom);
}

double DeskGeometry::viewDistance() const {
  return (screenMiddle() - eye).length();
}

double DeskGeometry::gazeDownDegrees() const {
  const V2 look = screenMiddle() - eye;
  return deg(std::atan2(-look.y, look.x));
}

double DeskGeometry::elbowDegrees() const {
  const V2 up = shoulder - elbow;
  const V2 down = hand - elbow;
  const double cosine = (up.x * down.x + up.y * down.y) / (up.length() * down.length());
  return deg(std::acos(clamp(cosine, -1, 1)));
}

bool DeskGeometry::handReaches() const {
  return (hand - keyTarget()).length() < 0.01;
}

}  // namespace sodam
