#include "workspace/desk_setup.h"

#include <cmath>
#include <numbers>

#include "platform/store.h"
#include "support/json.h"
#include "workspace/desk_fields.h"

namespace sodam {

using nlohmann::json;

namespace {

struct KindFacts {
  std::string_view raw;
  std::string_view title;
  bool usesLaptop, usesMonitor, keyboard, adjustableSeat, raisable, lateral;
};

constexpr std::array<KindFacts, DeskKind::count> kinds{{
    {"laptop", "노트북만", true, false, false, true, false, false},
    {"laptopStand", "노트북 거치대", true, false, true, true, true, false},
    {"monitor", "모니터만", false, true, true, true, true, true},
    {"dualMonitor", "모니터 두 대", false, true, true, true, true, true},
    {"laptopMonitor", "노트북과 모니터", false, true, true, true, true, true},
    {"standing", "서서 일하기", false, true, true, false, true, false},
    {"cafe", "카페·식탁", true, false, false, false, false, false},
    {"sofa", "소파·침대", true, false, false, false, true, false},
}};

constexpr std::array<std::string_view, 3> shapes{"wide", "ultra", "vertical"};
constexpr std::array<std::string_view, 3> feetNames{"floor", "footrest", "dangle"};

template <std::size_t N>
std::optional<int> indexOf(const std::array<std::string_view, N>& names, std::string_view raw) {
  for (std::size_t i = 0; i < N; ++i)
    if (names[i] == raw) return static_cast<int>(i);
  return std::nullopt;
}

// An optional field that names a case: false when it holds anything but a
// known name.
template <class T>
bool readCase(const json& object, const char* key, std::optional<T>& out,
              std::optional<T> (*fromRaw)(std::string_view)) {
  const json& value = jsonField(object, key);
  if (value.is_null()) return true;
  auto name = jsonAs<std::string>(value);
  if (!name) return false;
  out = fromRaw(*name);
  return out.has_value();
}

// A field with a default: a missing one keeps it.
template <class T>
bool readDefaulted(const json& object, const char* key, T& out) {
  std::optional<T> value;
  if (!jsonOptional(object, key, value)) return false;
  if (value) out = *value;
  return true;
}

double mix(double a, double b, double t) {
  return a + (b - a) * t;
}

std::optional<double> mix(std::optional<double> a, std::optional<double> b, double t) {
  if (a && b) return mix(*a, *b, t);
  return b;
}

std::string keyOf(const std::optional<std::string>& placeId) {
  return placeId ? StoreKey::deskSetupOf(*placeId) : std::string(StoreKey::deskSetup);
}

}  // namespace

double V2::length() const {
  return std::hypot(x, y);
}

V2 V2::turned(double degrees) const {
  const double t = degrees * std::numbers::pi / 180;
  return {x * std::cos(t) - y * std::sin(t), x * std::sin(t) + y * std::cos(t)};
}

const std::array<DeskKind, DeskKind::count>& DeskKind::all() {
  static const std::array<DeskKind, count> every{laptop,        laptopStand, monitor, dualMonitor,
                                                 laptopMonitor, standing,    cafe,    sofa};
  return every;
}

std::optional<DeskKind> DeskKind::fromRaw(std::string_view raw) {
  for (int i = 0; i < count; ++i)
    if (kinds[i].raw == raw) return DeskKind(static_cast<Value>(i));
  return std::nullopt;
}

std::string_view DeskKind::raw() const {
  return kinds[value_].raw;
}
std::string_view DeskKind::title() const {
  return kinds[value_].title;
}
bool DeskKind::usesLaptop() const {
  return kinds[value_].usesLaptop;
}
bool DeskKind::usesMonitor() const {
  return kinds[value_].usesMonitor;
}
bool DeskKind::keyboard() const {
  return kinds[value_].keyboard;
}
bool DeskKind::adjustableSeat() const {
  return kinds[value_].adjustableSeat;
}
bool DeskKind::raisable() const {
  return kinds[value_].raisable;
}
bool DeskKind::lateral() const {
  return kinds[value_].lateral;
}

std::optional<ScreenShape> ScreenShape::fromRaw(std::string_view raw) {
  if (auto i = indexOf(shapes, raw)) return ScreenShape(static_cast<Value>(*i));
  return std::nullopt;
}

std::string_view ScreenShape::raw() const {
  return shapes[value_];
}

// The aspect ratios 16:9, 21:9 and 9:16 over an inch of diagonal.
double ScreenShape::heightPerInch() const {
  switch (value_) {
    case wide:
      return 2.54 * 9 / std::sqrt(337.0);
    case ultra:
      return 2.54 * 9 / std::sqrt(522.0);
    case vertical:
      return 2.54 * 16 / std::sqrt(337.0);
  }
  return 0;
}

double ScreenShape::widthPerInch() const {
  switch (value_) {
    case wide:
      return 2.54 * 16 / std::sqrt(337.0);
    case ultra:
      return 2.54 * 21 / std::sqrt(522.0);
    case vertical:
      return 2.54 * 9 / std::sqrt(337.0);
  }
  return 0;
}

std::string_view feetRaw(Feet feet) {
  return feetNames[static_cast<int>(feet)];
}

std::optional<Feet> feetFromRaw(std::string_view raw) {
  if (auto i = indexOf(feetNames, raw)) return static_cast<Feet>(*i);
  return std::nullopt;
}

DeskSetup DeskSetup::switched(DeskKind to) const {
  DeskSetup next = *this;
  const DeskKind from = kind;
  next.kind = to;
  next.offset = 0;
  next.recline = 0;
  next.cushion = 0;
  auto either = [from, to](std::initializer_list<DeskKind::Value> set) {
    for (auto k : set)
      if (from == k || to == k) return true;
    return false;
  };
  if (either({DeskKind::standing, DeskKind::sofa})) next.seat = to == DeskKind::sofa ? 42 : 45;
  if (either({DeskKind::standing, DeskKind::cafe, DeskKind::sofa})) {
    next.desk = to == DeskKind::standing ? 100 : to == DeskKind::cafe ? 74 : 72;
  }
  switch (to) {
    case DeskKind::laptop:
    case DeskKind::cafe:
      next.depth = 34, next.stand = 0, next.lid = 110, next.gap = 12;
      break;
    case DeskKind::laptopStand:
      next.depth = 42, next.stand = 14, next.lid = 105, next.gap = 12;
      break;
    case DeskKind::monitor:
    case DeskKind::dualMonitor:
      next.depth = 62, next.stand = 10, next.tilt = 8, next.gap = 12;
      break;
    case DeskKind::laptopMonitor:
      next.depth = 62, next.stand = 10, next.tilt = 8, next.gap = 12, next.offset = -10;
      break;
    case DeskKind::standing:
      next.depth = 58, next.stand = 10, next.tilt = 8, next.gap = 10;
      break;
    case DeskKind::sofa:
      next.stand = 0, next.lid = 115, next.recline = 18, next.footrest = 0;
      break;
  }
  return next;
}

DeskSetup DeskSetup::lerp(const DeskSetup& a, const DeskSetup& b, double t) {
  DeskSetup out = b;
  for (const auto& field : deskFields())
    out.*field.member = mix(a.*field.member, b.*field.member, t);
  out.sitFit = mix(a.sitFit, b.sitFit, t);
  out.slump = mix(a.slump, b.slump, t);
  out.eyeAbove = mix(a.eyeAbove, b.eyeAbove, t);
  out.eyeAhead = mix(a.eyeAhead, b.eyeAhead, t);
  return out;
}

json DeskSetup::toJson() const {
  json object = json::object();
  object["kind"] = kind.raw();
  for (const auto& field : deskFields())
    jsonPut(object, field.key.data(), field.get(*this));
  object["shape"] = shape.raw();
  jsonPut(object, "primary", primary);
  jsonPut(object, "deskKnown", deskKnown);
  if (feet) object["feet"] = feetRaw(*feet);
  jsonPut(object, "gapKnown", gapKnown);
  jsonPut(object, "sitFit", sitFit);
  jsonPut(object, "slump", slump);
  jsonPut(object, "analyzedAt", analyzedAt);
  jsonPut(object, "eyeAbove", eyeAbove);
  jsonPut(object, "eyeAhead", eyeAhead);
  jsonPut(object, "rev", rev);
  return object;
}

std::optional<DeskSetup> DeskSetup::fromJson(const json& object) {
  if (!object.is_object()) return std::nullopt;
  DeskSetup setup;
  setup.rev = std::nullopt;
  std::optional<DeskKind> kind;
  std::optional<ScreenShape> shape;
  bool ok =
      readCase(object, "kind", kind, &DeskKind::fromRaw) &&
      readCase(object, "shape", shape, &ScreenShape::fromRaw) &&
      readCase(object, "feet", setup.feet, &feetFromRaw) &&
      readDefaulted(object, "primary", setup.primary) &&
      jsonOptional(object, "deskKnown", setup.deskKnown) &&
      jsonOptional(object, "gapKnown", setup.gapKnown) &&
      jsonOptional(object, "sitFit", setup.sitFit) && jsonOptional(object, "slump", setup.slump) &&
      jsonOptional(object, "analyzedAt", setup.analyzedAt) &&
      jsonOptional(object, "eyeAbove", setup.eyeAbove) &&
      jsonOptional(object, "eyeAhead", setup.eyeAhead) && jsonOptional(object, "rev", setup.rev);
  for (const auto& field : deskFields())
    ok = ok && readDefaulted(object, field.key.data(), setup.*field.member);
  if (!ok) return std::nullopt;
  if (kind) setup.kind = *kind;
  if (shape) setup.shape = *shape;
  return setup;
}

DeskSetup DeskSetup::saved(const Defaults& defaults, const std::optional<std::string>& placeId) {
  if (auto stored = defaults.jsonData(keyOf(placeId))) {
    if (auto setup = fromJson(*stored)) return *setup;
  }
  return DeskSetup();
}

void DeskSetup::save(Defaults& defaults, const std::optional<std::string>& placeId) const {
  defaults.setJsonData(keyOf(placeId), toJson());
}

}  // namespace sodam
