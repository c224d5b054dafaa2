#pragma once

#include <cstdint>
#include <string_view>

namespace sodam {

// The views' palette: the accent a pill gives its art, and the colours the
// shells draw with. `white` is the tint of the companion's pills.
enum class Theme { green, red, orange, blue, coral, gray, white };

struct ThemeColor {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const ThemeColor&) const = default;
};

// sRGB values close to the system's own accents in dark mode, so the
// shells of every platform draw the same colours.
constexpr ThemeColor themeColor(Theme tint) {
  switch (tint) {
    case Theme::green:
      return {48, 209, 88};
    case Theme::red:
      return {255, 69, 58};
    case Theme::orange:
      return {255, 159, 10};
    case Theme::blue:
      return {10, 132, 255};
    case Theme::coral:
      return {255, 127, 102};
    case Theme::gray:
      return {142, 142, 147};
    case Theme::white:
      return {255, 255, 255};
  }
  return {255, 255, 255};
}

constexpr std::string_view themeName(Theme tint) {
  switch (tint) {
    case Theme::green:
      return "green";
    case Theme::red:
      return "red";
    case Theme::orange:
      return "orange";
    case Theme::blue:
      return "blue";
    case Theme::coral:
      return "coral";
    case Theme::gray:
      return "gray";
    case Theme::white:
      return "white";
  }
  return "white";
}

}  // namespace sodam
