#include "platform/sensitivity.h"

#include <array>

namespace sodam {

namespace {
struct SensitivityText {
  double factor;
  std::string_view title;
};
constexpr std::array<SensitivityText, 3> sensitivities{{
    {0.75, "예민하게"},
    {1.0, "보통"},
    {1.35, "여유 있게"},
}};
}  // namespace

std::optional<Sensitivity> Sensitivity::fromRaw(int raw) {
  if (raw < strict || raw > relaxed) return std::nullopt;
  return Sensitivity(static_cast<Value>(raw));
}

double Sensitivity::factor() const {
  return sensitivities[value_].factor;
}

std::string_view Sensitivity::title() const {
  return sensitivities[value_].title;
}

}  // namespace sodam
