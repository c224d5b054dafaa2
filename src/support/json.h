#pragma once

// Reading and writing the fields of persisted records without exceptions.
// Every record decodes the same way: a required field that is missing, null
// or of another type makes the record unreadable; an optional field that is
// missing or null is absent; an optional field of another type also makes the
// record unreadable, as nothing else in it can be trusted then. Absent values
// are left out when writing. A Date is a JSON number of seconds since
// 2001-01-01 UTC.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "support/date.h"

namespace sodam {

// Parses JSON text; nothing when it is not JSON.
std::optional<nlohmann::json> parseJson(std::string_view text);

// One JSON value as a C++ value, nothing when it holds another type. A double
// reads any number; an integer reads a whole number in range, written with or
// without a fraction.
template <class T>
std::optional<T> jsonAs(const nlohmann::json& value);
template <>
std::optional<double> jsonAs<double>(const nlohmann::json& value);
template <>
std::optional<int> jsonAs<int>(const nlohmann::json& value);
template <>
std::optional<std::int64_t> jsonAs<std::int64_t>(const nlohmann::json& value);
template <>
std::optional<bool> jsonAs<bool>(const nlohmann::json& value);
template <>
std::optional<std::string> jsonAs<std::string>(const nlohmann::json& value);
template <>
std::optional<Date> jsonAs<Date>(const nlohmann::json& value);

// The value under `key`, or null when `object` is no object or lacks the key:
// a missing and a null field read alike.
const nlohmann::json& jsonField(const nlohmann::json& object, const char* key);

// A required field: nothing when missing, null or of another type.
template <class T>
std::optional<T> jsonRequired(const nlohmann::json& object, const char* key) {
  return jsonAs<T>(jsonField(object, key));
}

// An optional field into `out`: false only when the key holds a value of
// another type.
template <class T>
bool jsonOptional(const nlohmann::json& object, const char* key, std::optional<T>& out) {
  const auto& value = jsonField(object, key);
  out = jsonAs<T>(value);
  return out.has_value() || value.is_null();
}

inline nlohmann::json jsonValue(Date date) {
  return date.sinceReference;
}
template <class T>
nlohmann::json jsonValue(const T& value) {
  return value;
}

template <class T>
void jsonPut(nlohmann::json& object, const char* key, const T& value) {
  object[key] = jsonValue(value);
}
// An absent value leaves the key out.
template <class T>
void jsonPut(nlohmann::json& object, const char* key, const std::optional<T>& value) {
  if (value) object[key] = jsonValue(*value);
}

}  // namespace sodam
