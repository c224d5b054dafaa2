#include "linux/stored_value.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "support/json.h"

namespace sodam::stored {

namespace {

using nlohmann::json;

std::string dumped(const json& value) {
  // Replacing bad UTF-8 keeps dump from throwing; the strings we store are text.
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<std::vector<std::string>> stringsOf(std::string_view text) {
  auto parsed = parseJson(text);
  if (!parsed || !parsed->is_array()) return std::nullopt;
  std::vector<std::string> strings;
  for (const auto& element : *parsed) {
    if (!element.is_string()) return std::nullopt;
    strings.push_back(element.get<std::string>());
  }
  return strings;
}

std::optional<IntDictionary> dictionaryOf(std::string_view text) {
  auto parsed = parseJson(text);
  if (!parsed || !parsed->is_object()) return std::nullopt;
  IntDictionary dictionary;
  for (const auto& [name, number] : parsed->items()) {
    auto whole = jsonAs<std::int64_t>(number);
    if (!whole || !number.is_number_integer()) return std::nullopt;
    dictionary.emplace(name, *whole);
  }
  return dictionary;
}

struct Encoder {
  std::optional<Row> operator()(bool v) const { return Row{"bool", std::int64_t{v ? 1 : 0}}; }
  std::optional<Row> operator()(std::int64_t v) const { return Row{"integer", v}; }
  std::optional<Row> operator()(double v) const {
    if (!std::isfinite(v)) return std::nullopt;
    return Row{"double", v};
  }
  std::optional<Row> operator()(const std::string& v) const { return Row{"string", v}; }
  std::optional<Row> operator()(const std::vector<std::string>& v) const {
    return Row{"strings", dumped(json(v))};
  }
  std::optional<Row> operator()(Date v) const {
    if (!std::isfinite(v.sinceReference)) return std::nullopt;
    return Row{"date", v.sinceReference};
  }
  std::optional<Row> operator()(const Bytes& v) const { return Row{"data", v}; }
  std::optional<Row> operator()(const IntDictionary& v) const {
    json object = json::object();
    for (const auto& [name, number] : v)
      object[name] = number;
    return Row{"dictionary", dumped(object)};
  }
};

template <class T>
const T* as(const Row& row) {
  return std::get_if<T>(&row.value);
}

}  // namespace

bool representable(const DefaultsValue& value) {
  if (auto v = std::get_if<double>(&value)) return std::isfinite(*v);
  if (auto v = std::get_if<Date>(&value)) return std::isfinite(v->sinceReference);
  return true;
}

std::optional<Row> rowOf(const DefaultsValue& value) {
  return std::visit(Encoder{}, value);
}

std::optional<DefaultsValue> valueOf(const Row& row) {
  const std::string& type = row.type;
  if (type == "bool") {
    if (auto v = as<std::int64_t>(row); v && (*v == 0 || *v == 1)) return *v == 1;
  } else if (type == "integer") {
    if (auto v = as<std::int64_t>(row)) return *v;
  } else if (type == "double") {
    if (auto v = as<double>(row)) return *v;
  } else if (type == "string") {
    if (auto v = as<std::string>(row)) return *v;
  } else if (type == "strings") {
    if (auto v = as<std::string>(row)) {
      if (auto strings = stringsOf(*v)) return std::move(*strings);
    }
  } else if (type == "date") {
    if (auto v = as<double>(row)) return Date{*v};
  } else if (type == "data") {
    if (auto v = as<Bytes>(row)) return *v;
  } else if (type == "dictionary") {
    if (auto v = as<std::string>(row)) {
      if (auto dictionary = dictionaryOf(*v)) return std::move(*dictionary);
    }
  }
  return std::nullopt;
}

}  // namespace sodam::stored
