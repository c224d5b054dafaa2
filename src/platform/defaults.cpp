#include "platform/defaults.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "support/json.h"

namespace sodam {

namespace {

// Reads one alternative of the stored value; anything else is the wrong type.
template <class T>
Lookup<T> lookup(const std::optional<DefaultsValue>& stored) {
  if (!stored) return {};
  if (const T* value = std::get_if<T>(&*stored)) return {*value, false};
  return {std::nullopt, true};
}

std::optional<std::int64_t> wholeNumber(double value) {
  // 2^63 is the first double past the int64 range.
  constexpr double limit = 9223372036854775808.0;
  if (!std::isfinite(value) || value != std::trunc(value)) return std::nullopt;
  if (value < -limit || value >= limit) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

}  // namespace

Lookup<bool> Defaults::boolean(std::string_view key) const {
  return lookup<bool>(object(key));
}

Lookup<std::int64_t> Defaults::integer(std::string_view key) const {
  auto stored = object(key);
  if (stored) {
    if (const double* real = std::get_if<double>(&*stored)) {
      auto whole = wholeNumber(*real);
      return {whole, !whole};
    }
  }
  return lookup<std::int64_t>(stored);
}

Lookup<double> Defaults::real(std::string_view key) const {
  auto stored = object(key);
  if (stored) {
    if (const std::int64_t* whole = std::get_if<std::int64_t>(&*stored)) {
      return {static_cast<double>(*whole), false};
    }
  }
  return lookup<double>(stored);
}

Lookup<std::string> Defaults::string(std::string_view key) const {
  return lookup<std::string>(object(key));
}

Lookup<std::vector<std::string>> Defaults::strings(std::string_view key) const {
  return lookup<std::vector<std::string>>(object(key));
}

Lookup<Date> Defaults::date(std::string_view key) const {
  return lookup<Date>(object(key));
}

Lookup<Bytes> Defaults::data(std::string_view key) const {
  return lookup<Bytes>(object(key));
}

Lookup<IntDictionary> Defaults::dictionary(std::string_view key) const {
  return lookup<IntDictionary>(object(key));
}

std::optional<nlohmann::json> Defaults::jsonData(std::string_view key) const {
  auto bytes = data(key).value;
  if (!bytes) return std::nullopt;
  return parseJson(std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()));
}

void Defaults::setJsonData(std::string_view key, const nlohmann::json& value) {
  if (auto bytes = encodeJsonData(value)) {
    setData(key, std::move(*bytes));
  } else {
    remove(key);
  }
}

namespace {

bool allFinite(const nlohmann::json& value) {
  if (value.is_number_float()) return std::isfinite(value.get<double>());
  if (value.is_structured()) {
    for (const auto& element : value) {
      if (!allFinite(element)) return false;
    }
  }
  return true;
}

}  // namespace

std::optional<Bytes> encodeJsonData(const nlohmann::json& value) {
  // JSON has no NaN or infinity; a coder that met one would fail.
  if (!allFinite(value)) return std::nullopt;
  std::string text = value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  return Bytes(text.begin(), text.end());
}

std::optional<DefaultsValue> MemoryDefaults::object(std::string_view key) const {
  std::lock_guard lock(mutex_);
  auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void MemoryDefaults::set(std::string_view key, DefaultsValue value) {
  std::lock_guard lock(mutex_);
  ++writes_;
  auto found = values_.find(key);
  if (found == values_.end()) {
    values_.emplace(std::string(key), std::move(value));
  } else {
    found->second = std::move(value);
  }
}

void MemoryDefaults::remove(std::string_view key) {
  std::lock_guard lock(mutex_);
  ++writes_;
  auto found = values_.find(key);
  if (found != values_.end()) values_.erase(found);
}

bool MemoryDefaults::contains(std::string_view key) const {
  std::lock_guard lock(mutex_);
  return values_.find(key) != values_.end();
}

int MemoryDefaults::writes() const {
  std::lock_guard lock(mutex_);
  return writes_;
}

}  // namespace sodam
