#pragma once

#include <optional>

#include "workspace/desk_setup.h"

namespace sodam {

// Where every joint and every edge of a desk setup stands in the side view,
// worked out from the setup and the body's height. The floor is y = 0, the
// desk's front edge x = 0, x grows towards the screen; centimetres and
// degrees. Plain arithmetic, no state.
class DeskGeometry {
 public:
  // With `reach` the leg keeps that length instead of working it out, so
  // that dragging the seat does not change the leg.
  explicit DeskGeometry(const DeskSetup& setup, std::optional<double> reach = std::nullopt);

  DeskSetup setup;
  BodySize body;

  double seatTop = 0;
  double seatBack = 0;
  double seatFront = 0;
  V2 hip, knee, ankle, toe, shoulder, neck, head, eye, elbow, elbowRest, hand;
  double surface = 0;  // what the screen and keyboard stand on
  V2 keyboard;
  std::optional<V2> laptopHinge, laptopBottom, laptopTop, monitorBottom, monitorTop;
  V2 screenTop, screenBottom, camera;
  double feetDangle = 0;  // how far the feet hang above what they should rest on
  double footY = 0;
  double legReach = 0;
  double hunch = 0;
  double trunkAngle = 0;  // backwards from upright
  double neckAngle = 0;

  // The body's proportions against its height.
  static constexpr double thighShare = 0.245;
  static constexpr double upperArmShare = 0.186;
  static constexpr double forearmShare = 0.19;
  // Where the fingers hover above the keys.
  static constexpr double fingerLiftCm = 1.5;

  // The laptop's screen height: a 16:10 panel's height per inch of diagonal.
  double laptopScreenHeight() const;
  double monitorHeight() const;
  // The screen of record's diagonal in centimetres.
  double screenDiagonalCm() const;
  V2 screenMiddle() const;
  // Where the hands would rest on the keys.
  V2 keyTarget() const { return keyboard + V2{0, fingerLiftCm}; }

  // How far the eye is above the screen's top; negative below.
  double eyeAboveScreenTop() const { return eye.y - screenTop.y; }
  // From the eye to the middle of the screen.
  double viewDistance() const;
  // How far below the horizon the eye looks to reach the screen's middle.
  double gazeDownDegrees() const;
  // The angle inside the elbow with the hands on the keys.
  double elbowDegrees() const;
  // The hand reaches the keys; otherwise the arm is straight and short.
  bool handReaches() const;
  // How high the keys are above the elbow hanging at rest.
  double keysAboveElbow() const { return keyboard.y - elbowRest.y; }
  double kneeAboveHip() const { return knee.y - hip.y; }

 private:
  struct Trunk {
    V2 shoulder, eye, head;
  };
  Trunk trunk(double hunch) const;
  void placeLegs(std::optional<double> reach);
  void placeTrunk();
  void placeStanding();
  void placeScreens();
  void placeArm();
  double solveHunch() const;
};

}  // namespace sodam
