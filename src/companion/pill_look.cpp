#include "companion/pill_look.h"

namespace sodam {

namespace {
constexpr std::array<LookColor, 12> bodies{{
    {0, 0, 0},       // black: one with the notch
    {96, 64, 48},    // cocoa
    {196, 138, 52},  // honey
    {30, 44, 92},    // navy
    {44, 98, 196},   // blue
    {38, 94, 60},    // forest
    {20, 112, 132},  // ocean
    {112, 48, 94},   // plum
    {104, 72, 178},  // violet
    {116, 30, 50},   // wine
    {170, 42, 98},   // berry
    {84, 94, 110},   // slate
}};

using Stops = std::array<LookColor, 3>;
constexpr Stops plain(LookColor c) {
  return {c, c, c};
}
constexpr std::array<Stops, 11> eyeStops{{
    plain({112, 200, 255}),                                 // sky
    plain({112, 236, 192}),                                 // mint
    plain({255, 228, 92}),                                  // lemon
    plain({255, 122, 152}),                                 // rose
    plain({192, 162, 255}),                                 // lavender
    plain({255, 182, 142}),                                 // peach
    {{{255, 214, 70}, {255, 140, 40}, {255, 70, 44}}},      // fire
    plain({236, 246, 255}),                                 // snow
    {{{120, 255, 200}, {110, 200, 255}, {160, 110, 255}}},  // aurora
    {{{255, 96, 112}, {255, 222, 92}, {92, 172, 255}}},     // rainbow
    {{{232, 176, 255}, {132, 104, 255}, {60, 56, 190}}},    // galaxy
}};
}  // namespace

LookColor bodyColor(PillBody body) {
  return bodies[static_cast<std::size_t>(body)];
}

std::array<LookColor, 3> eyeColors(PillEyeColor eyes) {
  return eyeStops[static_cast<std::size_t>(eyes)];
}

PillLook PillLook::current(const Store& store) {
  PillLook look;
  look.ears = lookFrom<PillEars>(store.pillEars(lookCount<PillEars>()));
  look.trim = lookFrom<PillTrim>(store.pillTrim(lookCount<PillTrim>()));
  look.body = lookFrom<PillBody>(store.pillBody(lookCount<PillBody>()));
  look.eyes = lookFrom<PillEyeColor>(store.pillEyes(lookCount<PillEyeColor>()));
  look.face = lookFrom<PillFace>(store.pillFace(lookCount<PillFace>()));
  look.pattern = lookFrom<PillPattern>(store.pillPattern(lookCount<PillPattern>()));
  return look;
}

void PillLook::save(Store& store) const {
  store.setPillEars(lookRaw(ears));
  store.setPillTrim(lookRaw(trim));
  store.setPillBody(lookRaw(body));
  store.setPillEyes(lookRaw(eyes));
  store.setPillFace(lookRaw(face));
  store.setPillPattern(lookRaw(pattern));
}

}  // namespace sodam
