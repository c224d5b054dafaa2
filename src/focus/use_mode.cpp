#include "focus/use_mode.h"

#include <array>

namespace sodam {

namespace {
struct Row {
  std::string_view raw, shortTitle, detail, symbol;
};
constexpr std::array<Row, 2> rows{{
    {"laptop", "자세만 확인", "노트북을 쓰는 동안 자세만 살피고, 흐트러지면 알려 줘요",
     "figure.stand"},
    {"watch", "나의 집중코치", "공부하는 모습을 카메라가 지켜보며 휴대폰·졸음·자세를 짚어 줘요",
     "eye.fill"},
}};
}  // namespace

std::optional<UseMode> UseMode::fromRaw(std::string_view raw) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].raw == raw) return UseMode(static_cast<Value>(i));
  }
  return std::nullopt;
}

std::string_view UseMode::raw() const {
  return rows[value_].raw;
}
std::string_view UseMode::shortTitle() const {
  return rows[value_].shortTitle;
}
std::string_view UseMode::detail() const {
  return rows[value_].detail;
}
std::string_view UseMode::symbol() const {
  return rows[value_].symbol;
}

}  // namespace sodam
