#pragma once

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
inline constexpr int pillEarsCount = 13;

// A stored value that is no case reads as the default, the cat's ears.
constexpr PillEars pillEarsFrom(int raw) {
  return raw >= 0 && raw < pillEarsCount ? static_cast<PillEars>(raw) : PillEars::cat;
}

}  // namespace sodam
