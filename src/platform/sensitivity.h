#pragma once

#include <optional>
#include <string_view>

namespace sodam {

// How strictly posture is judged; every threshold is multiplied by factor().
class Sensitivity {
 public:
  enum Value : int { strict = 0, normal = 1, relaxed = 2 };

  constexpr Sensitivity(Value value = normal) : value_(value) {}
  static std::optional<Sensitivity> fromRaw(int raw);
  constexpr operator Value() const { return value_; }
  constexpr int raw() const { return value_; }

  double factor() const;
  std::string_view title() const;

 private:
  Value value_;
};

}  // namespace sodam
