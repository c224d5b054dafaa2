#pragma once

// The key-value settings every persisting component writes through. Any
// thread may call it: the implementations guard their own state.

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "support/date.h"

namespace sodam {

using Bytes = std::vector<std::uint8_t>;
using IntDictionary = std::map<std::string, std::int64_t, std::less<>>;

// One stored value, of one of the kinds the platforms' defaults know.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string,
                                   std::vector<std::string>, Date, Bytes, IntDictionary>;

// A typed read: the value, or why there is none. Reading patterns differ in
// what they make of a key that holds something of another type.
template <class T>
struct Lookup {
  std::optional<T> value;
  bool wrongType = false;

  bool absent() const { return !value && !wrongType; }
  T valueOr(T fallback) const { return value ? *value : std::move(fallback); }
};

class Defaults {
 public:
  virtual ~Defaults() = default;

  virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
  virtual void set(std::string_view key, DefaultsValue value) = 0;
  virtual void remove(std::string_view key) = 0;

  Lookup<bool> boolean(std::string_view key) const;
  // A double that is a whole number in range reads as an integer too.
  Lookup<std::int64_t> integer(std::string_view key) const;
  // An integer reads as a double too.
  Lookup<double> real(std::string_view key) const;
  Lookup<std::string> string(std::string_view key) const;
  Lookup<std::vector<std::string>> strings(std::string_view key) const;
  Lookup<Date> date(std::string_view key) const;
  Lookup<Bytes> data(std::string_view key) const;
  Lookup<IntDictionary> dictionary(std::string_view key) const;

  void setBool(std::string_view key, bool value) { set(key, value); }
  void setInteger(std::string_view key, std::int64_t value) { set(key, value); }
  void setDouble(std::string_view key, double value) { set(key, value); }
  void setString(std::string_view key, std::string value) { set(key, std::move(value)); }
  void setStrings(std::string_view key, std::vector<std::string> value) {
    set(key, std::move(value));
  }
  void setDate(std::string_view key, Date value) { set(key, value); }
  void setData(std::string_view key, Bytes value) { set(key, std::move(value)); }
  void setDictionary(std::string_view key, IntDictionary value) { set(key, std::move(value)); }

  // JSON data: a record as UTF-8 JSON text in a data value. Nothing when the
  // key is absent, holds no data or data that is not JSON.
  std::optional<nlohmann::json> jsonData(std::string_view key) const;
  // Writes the record; a record JSON cannot hold (a number that is not finite)
  // clears the key instead, so a failed encoding leaves no stale copy.
  void setJsonData(std::string_view key, const nlohmann::json& value);
};

// The UTF-8 JSON text of a record; nothing when a number is not finite.
std::optional<Bytes> encodeJsonData(const nlohmann::json& value);

// Defaults that live only as long as the object: tests and previews.
class MemoryDefaults final : public Defaults {
 public:
  std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  bool contains(std::string_view key) const;
  // How many writes (set or remove) reached the store.
  int writes() const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, DefaultsValue, std::less<>> values_;
  int writes_ = 0;
};

}  // namespace sodam
