#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "platform/defaults.h"
#include "support/date.h"

namespace sodam {

// A point of the desk's side view in centimetres: the floor at y = 0, the
// desk's front edge at x = 0, x growing towards the screen.
struct V2 {
  double x = 0;
  double y = 0;

  V2 operator+(V2 o) const { return {x + o.x, y + o.y}; }
  V2 operator-(V2 o) const { return {x - o.x, y - o.y}; }
  V2 operator*(double k) const { return {x * k, y * k}; }
  double length() const;
  // Turned counter-clockwise by the angle: backwards for the body, which
  // faces the desk.
  V2 turned(double degrees) const;
  bool operator==(const V2&) const = default;
};

struct BodySize {
  double height = 170;  // centimetres
};

// The eight kinds of place a desk setup can be, with what each has.
class DeskKind {
 public:
  enum Value : int {
    laptop,
    laptopStand,
    monitor,
    dualMonitor,
    laptopMonitor,
    standing,
    cafe,
    sofa
  };
  static constexpr int count = 8;

  constexpr DeskKind(Value value) : value_(value) {}
  constexpr operator Value() const { return value_; }
  static const std::array<DeskKind, count>& all();
  // The case name, which the record stores.
  static std::optional<DeskKind> fromRaw(std::string_view raw);
  std::string_view raw() const;
  std::string_view title() const;

  // A laptop is the screen of record; `laptopMonitor` answers no, as its
  // screen of record is the monitor.
  bool usesLaptop() const;
  bool usesMonitor() const;
  // A separate keyboard on the desk.
  bool keyboard() const;
  bool adjustableSeat() const;
  // The screen can stand on something.
  bool raisable() const;
  // The screen can stand beside the user.
  bool lateral() const;
  bool seated() const { return value_ != standing; }
  bool chair() const { return value_ != standing && value_ != sofa; }
  // A laptop is on the desk, as the screen of record or beside the monitor.
  bool hasLaptop() const { return usesLaptop() || value_ == laptopMonitor; }

 private:
  Value value_;
};

// A screen's aspect: centimetres of height and width per inch of diagonal.
class ScreenShape {
 public:
  enum Value : int { wide, ultra, vertical };
  constexpr ScreenShape(Value value) : value_(value) {}
  constexpr operator Value() const { return value_; }
  static std::optional<ScreenShape> fromRaw(std::string_view raw);
  std::string_view raw() const;
  double heightPerInch() const;
  double widthPerInch() const;

 private:
  Value value_;
};

enum class Feet { floor, footrest, dangle };
std::string_view feetRaw(Feet feet);
std::optional<Feet> feetFromRaw(std::string_view raw);

// What the user can change of a desk, kept as a JSON record in the defaults:
// "deskSetup", or "deskSetup." and the place's id for a place of its own.
// Lengths in centimetres, angles in degrees, screen sizes in inches.
struct DeskSetup {
  DeskKind kind = DeskKind::laptop;
  double height = 170;  // the user's height
  double seat = 45;
  double cushion = 0;
  double footrest = 0;
  double recline = 0;  // the backrest's angle
  double gap = 12;     // from the body to the desk's edge
  double desk = 72;
  double depth = 34;  // how far back the screen stands from the desk's edge
  double stand = 0;   // under the screen
  double lid = 110;
  double tilt = 8;  // the monitor's
  double laptopSize = 14;
  double monitorSize = 24;
  ScreenShape shape = ScreenShape::wide;
  double offset = 0;  // sideways, of the screen
  int primary = 0;    // the screen chiefly watched
  std::optional<bool> deskKnown;
  std::optional<Feet> feet;
  std::optional<bool> gapKnown;
  std::optional<double> sitFit;  // the torso's fit measured by the camera
  std::optional<double> slump;   // the eye's drop measured by the camera
  std::optional<Date> analyzedAt;
  std::optional<double> eyeAbove;  // measured eye height above the screen's top
  std::optional<double> eyeAhead;  // measured eye distance
  std::optional<int> rev = currentRevision;

  static constexpr int currentRevision = 2;

  // A copy for another kind, with the furniture that kind brings.
  DeskSetup switched(DeskKind to) const;
  // The blend of two setups for animation: the numbers move from a to b,
  // everything else is b's.
  static DeskSetup lerp(const DeskSetup& a, const DeskSetup& b, double t);

  nlohmann::json toJson() const;
  // A missing field is its default; nothing when a field holds another type
  // or an unknown case.
  static std::optional<DeskSetup> fromJson(const nlohmann::json& json);

  // The setup stored for a place, or for the one-place case without one;
  // the defaults when none is stored or it can't be read.
  static DeskSetup saved(const Defaults& defaults,
                         const std::optional<std::string>& placeId = std::nullopt);
  void save(Defaults& defaults, const std::optional<std::string>& placeId = std::nullopt) const;

  bool operator==(const DeskSetup&) const = default;
};

}  // namespace sodam
