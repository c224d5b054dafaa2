#include "support/json.h"

#include <cmath>
#include <limits>
#include <utility>

namespace sodam {

std::optional<nlohmann::json> parseJson(std::string_view text) {
  auto parsed =
      nlohmann::json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false);
  if (parsed.is_discarded()) return std::nullopt;
  return parsed;
}

namespace {
template <class Int>
std::optional<Int> wholeNumber(const nlohmann::json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (!std::in_range<Int>(number)) return std::nullopt;
    return static_cast<Int>(number);
  }
  if (value.is_number_integer()) {
    const auto number = value.get<std::int64_t>();
    if (!std::in_range<Int>(number)) return std::nullopt;
    return static_cast<Int>(number);
  }
  if (value.is_number_float()) {
    const double number = value.get<double>();
    constexpr auto lowest = static_cast<double>(std::numeric_limits<Int>::lowest());
    // The largest int64 is no double; 2^63 itself is out of range.
    constexpr auto beyond = -lowest;
    if (std::trunc(number) != number || number < lowest || number >= beyond) return std::nullopt;
    return static_cast<Int>(number);
  }
  return std::nullopt;
}
}  // namespace

template <>
std::optional<double> jsonAs<double>(const nlohmann::json& value) {
  if (!value.is_number()) return std::nullopt;
  return value.get<double>();
}

template <>
std::optional<int> jsonAs<int>(const nlohmann::json& value) {
  return wholeNumber<int>(value);
}

template <>
std::optional<std::int64_t> jsonAs<std::int64_t>(const nlohmann::json& value) {
  return wholeNumber<std::int64_t>(value);
}

template <>
std::optional<bool> jsonAs<bool>(const nlohmann::json& value) {
  if (!value.is_boolean()) return std::nullopt;
  return value.get<bool>();
}

template <>
std::optional<std::string> jsonAs<std::string>(const nlohmann::json& value) {
  if (!value.is_string()) return std::nullopt;
  return value.get<std::string>();
}

template <>
std::optional<Date> jsonAs<Date>(const nlohmann::json& value) {
  const auto seconds = jsonAs<double>(value);
  if (!seconds) return std::nullopt;
  return Date{*seconds};
}

const nlohmann::json& jsonField(const nlohmann::json& object, const char* key) {
  static const nlohmann::json null;
  if (!object.is_object()) return null;
  const auto found = object.find(key);
  return found == object.end() ? null : *found;
}

}  // namespace sodam
