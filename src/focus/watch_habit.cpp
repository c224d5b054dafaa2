#include "focus/watch_habit.h"

#include <algorithm>

namespace sodam {

namespace {
struct Row {
  std::string_view raw, title, say;
};
constexpr std::array<Row, WatchHabit::count> rows{{
    {"phone", "휴대폰 보기", "휴대폰은 잠깐 내려놓을까요?"},
    {"drowsy", "꾸벅꾸벅 졸기", "졸리면 일어나서 기지개 한 번 켜요"},
    {"chinRest", "턱 괴기", "턱을 괴고 있어요. 손을 내려놓아요"},
    {"mouth", "손톱 물기·입에 손", "손이 입에 가 있어요"},
    {"away", "자리 자주 비우기", "다시 왔네요. 이어서 해요"},
    {"posture", "고개 숙이기·거북목", "고개가 많이 숙여졌어요. 등을 쭉 펴요"},
}};
}  // namespace

std::optional<WatchHabit> WatchHabit::fromRaw(std::string_view raw) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].raw == raw) return WatchHabit(static_cast<Value>(i));
  }
  return std::nullopt;
}

const std::array<WatchHabit, 5>& WatchHabit::pickable() {
  static constexpr std::array<WatchHabit, 5> habits{phone, drowsy, chinRest, mouth, away};
  return habits;
}

bool WatchHabit::isPickable() const {
  const auto& list = pickable();
  return std::find(list.begin(), list.end(), *this) != list.end();
}

std::string_view WatchHabit::raw() const {
  return rows[value_].raw;
}
std::string_view WatchHabit::title() const {
  return rows[value_].title;
}
std::string_view WatchHabit::say() const {
  return rows[value_].say;
}

}  // namespace sodam
