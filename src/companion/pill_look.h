#pragma once

#include <array>
#include <cstdint>

#include "companion/look_option.h"
#include "companion/pill_ears.h"
#include "platform/store.h"

namespace sodam {

// What the companion wears on its head, in raw order.
enum class PillTrim {
  none,
  ribbon,
  flower,
  heart,
  sprout,
  headphones,
  party,
  star,
  flowerCrown,
  crown,
  beret,
  chef,
  halo,
  cloud,
  wizard,
  santa,
};

// The colour of the companion's body, in raw order.
enum class PillBody {
  black,
  cocoa,
  honey,
  navy,
  blue,
  forest,
  ocean,
  plum,
  violet,
  wine,
  berry,
  slate,
};

// The colour of the companion's eyes, in raw order.
enum class PillEyeColor {
  sky,
  mint,
  lemon,
  rose,
  lavender,
  peach,
  fire,
  snow,
  aurora,
  rainbow,
  galaxy,
};

// What the companion wears on its face, in raw order.
enum class PillFace {
  none,
  blush,
  hearts,
  glasses,
  whiskers,
  sunglasses,
  mustache,
  sparkle,
};

// The pattern on the companion's body, in raw order.
enum class PillPattern {
  none,
  dots,
  stripes,
  stars,
  hearts,
  checker,
};

// The option tables are uneven on purpose: an option's level follows its
// charm, not its place in the list.
template <>
struct LookTable<PillTrim> {
  static constexpr std::array<LookOption, 16> rows{{
      {"없음", 1},
      {"리본", 1},
      {"꽃", 1},
      {"하트", 1},
      {"새싹", 1},
      {"헤드폰", 1},
      {"고깔모자", 2},
      {"별", 3},
      {"화관", 2},
      {"왕관", 4},
      {"베레모", 5},
      {"요리사 모자", 3},
      {"천사 고리", 6},
      {"구름", 4},
      {"마법사 모자", 6},
      {"산타 모자", 8},
  }};
};

template <>
struct LookTable<PillBody> {
  static constexpr std::array<LookOption, 12> rows{{
      {"까망", 1},
      {"코코아", 1},
      {"꿀빛", 2},
      {"남색", 1},
      {"파랑", 1},
      {"숲", 3},
      {"바다", 2},
      {"자두", 4},
      {"제비꽃", 5},
      {"와인", 6},
      {"베리", 3},
      {"잿빛", 1},
  }};
};

template <>
struct LookTable<PillEyeColor> {
  static constexpr std::array<LookOption, 11> rows{{
      {"하늘", 1},
      {"민트", 1},
      {"레몬", 1},
      {"장미", 1},
      {"라벤더", 1},
      {"복숭아", 2},
      {"불꽃", 3},
      {"눈송이", 1},
      {"오로라", 6},
      {"무지개", 5},
      {"은하수", 7},
  }};
};

template <>
struct LookTable<PillFace> {
  static constexpr std::array<LookOption, 8> rows{{
      {"없음", 1},
      {"발그레", 1},
      {"하트 볼", 2},
      {"동그란 안경", 1},
      {"고양이 수염", 1},
      {"선글라스", 3},
      {"콧수염", 4},
      {"반짝", 5},
  }};
};

template <>
struct LookTable<PillPattern> {
  static constexpr std::array<LookOption, 6> rows{{
      {"없음", 1},
      {"물방울", 1},
      {"줄무늬", 1},
      {"별빛", 2},
      {"하트", 3},
      {"체크", 4},
  }};
};

// An sRGB colour of a look, 0 to 255 a channel.
struct LookColor {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const LookColor&) const = default;
};

LookColor bodyColor(PillBody body);
// The eyes from top to bottom; a plain colour repeats itself.
std::array<LookColor, 3> eyeColors(PillEyeColor eyes);

// The companion's whole look, each field kept under its own setting as the
// raw value of its case.
struct PillLook {
  PillEars ears = PillEars::cat;
  PillTrim trim = PillTrim::none;
  PillBody body = PillBody::black;
  PillEyeColor eyes = PillEyeColor::sky;
  PillFace face = PillFace::none;
  PillPattern pattern = PillPattern::none;

  // The user's look now; a stored value that is no case reads as the default.
  static PillLook current(const Store& store);
  void save(Store& store) const;

  // Wears something on its head, so a pill must hang lower for it.
  bool hasTop() const { return trim != PillTrim::none; }

  void set(PillEars value) { ears = value; }
  void set(PillTrim value) { trim = value; }
  void set(PillBody value) { body = value; }
  void set(PillEyeColor value) { eyes = value; }
  void set(PillFace value) { face = value; }
  void set(PillPattern value) { pattern = value; }

  bool operator==(const PillLook&) const = default;
};

// Puts the option on the user's look when the friendship level opens it;
// false, and nothing stored, while it is still locked.
template <class Option>
bool chooseLook(Store& store, Option option, int friendshipLevel) {
  if (!lookOpen(option, friendshipLevel)) return false;
  PillLook look = PillLook::current(store);
  look.set(option);
  look.save(store);
  return true;
}

}  // namespace sodam
