#pragma once

#include "companion/look_option.h"

namespace sodam {

// The companion's ears, in the raw order the settings store them.
enum class PillEars {
  cat,
  bear,
  bunny,
  mouse,
  hamster,
  koala,
  dog,
  fox,
  horns,
  antlers,
  antenna,
  unicorn,
  none,
};

template <>
struct LookTable<PillEars> {
  static constexpr std::array<LookOption, 13> rows{{
      {"고양이", 1},
      {"곰", 1},
      {"토끼", 1},
      {"생쥐", 1},
      {"햄스터", 1},
      {"코알라", 2},
      {"강아지", 3},
      {"여우", 2},
      {"작은 뿔", 4},
      {"사슴뿔", 5},
      {"안테나", 1},
      {"유니콘", 7},
      {"없음", 1},
  }};
};

}  // namespace sodam
