#include "companion/mate_state.h"

#include <array>

namespace sodam {

namespace {
struct Row {
  std::string_view raw, title, symbol;
};
constexpr std::array<Row, 9> rows{{
    {"focus", "집중하는 중", "flame.fill"},
    {"desk", "자리에 있어요", "person.fill"},
    {"away", "자리 비움", "figure.walk"},
    {"phone", "휴대폰 보는 중", "iphone"},
    {"turtle", "거북목 됐어요", "tortoise.fill"},
    {"slouch", "구부정해요", "arrow.down.right"},
    {"drowsy", "꾸벅꾸벅 조는 중", "moon.zzz.fill"},
    {"stretch", "스트레칭 중", "figure.cooldown"},
    {"offline", "꺼져 있어요", "power"},
}};
}  // namespace

MateState MateState::fromRaw(std::string_view raw) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].raw == raw) return MateState(static_cast<Value>(i));
  }
  return MateState(offline);
}

std::string_view MateState::raw() const {
  return rows[value_].raw;
}
std::string_view MateState::title() const {
  return rows[value_].title;
}
std::string_view MateState::symbol() const {
  return rows[value_].symbol;
}

}  // namespace sodam
