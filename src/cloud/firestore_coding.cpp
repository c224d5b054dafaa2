#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "cloud/firestore.h"
#include "support/calendar.h"
#include "support/json.h"
#include "support/text.h"

namespace sodam {

using json = nlohmann::json;

namespace {

bool digitsAt(const std::string& text, std::size_t at, std::size_t count, int& out) {
  if (at + count > text.size()) return false;
  out = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    out = out * 10 + (text[i] - '0');
  }
  return true;
}

// The zone behind the time: "Z" or "+hh:mm"/"-hh:mm", as seconds east of UTC.
std::optional<int> zoneOffset(const std::string& text, std::size_t at) {
  if (at + 1 == text.size() && text[at] == 'Z') return 0;
  int hours = 0, minutes = 0;
  if (at + 6 != text.size() || (text[at] != '+' && text[at] != '-') || text[at + 3] != ':' ||
      !digitsAt(text, at + 1, 2, hours) || !digitsAt(text, at + 4, 2, minutes))
    return std::nullopt;
  const int seconds = hours * 3600 + minutes * 60;
  return text[at] == '-' ? -seconds : seconds;
}

std::optional<Date> parseTimestamp(const std::string& text, bool fraction) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (!digitsAt(text, 0, 4, year) || text.size() < 20 || text[4] != '-' ||
      !digitsAt(text, 5, 2, month) || text[7] != '-' || !digitsAt(text, 8, 2, day) ||
      text[10] != 'T' || !digitsAt(text, 11, 2, hour) || text[13] != ':' ||
      !digitsAt(text, 14, 2, minute) || text[16] != ':' || !digitsAt(text, 17, 2, second))
    return std::nullopt;
  if (month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) || hour > 23 ||
      minute > 59 || second > 60)
    return std::nullopt;
  std::size_t at = 19;
  double part = 0;
  if (fraction) {
    if (text[at] != '.') return std::nullopt;
    double scale = 0.1;
    const std::size_t first = ++at;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at, scale /= 10)
      part += (text[at] - '0') * scale;
    if (at == first) return std::nullopt;
  }
  const auto offset = zoneOffset(text, at);
  if (!offset) return std::nullopt;
  const double unix = static_cast<double>(daysFromCivil(year, month, day)) * 86400.0 +
                      hour * 3600.0 + minute * 60.0 + second + part - *offset;
  return Date::fromUnix(unix);
}

std::optional<std::int64_t> leadingInteger(const std::string& text) {
  if (text.empty()) return std::nullopt;
  errno = 0;
  char* end = nullptr;
  const long long parsed = std::strtoll(text.c_str(), &end, 10);
  if (errno != 0 || end != text.c_str() + text.size() ||
      std::isspace(static_cast<unsigned char>(text[0])))
    return std::nullopt;
  return static_cast<std::int64_t>(parsed);
}

json encodeArray(const Firestore::Array& array) {
  json values = json::array();
  for (const auto& element : array)
    values.push_back(Firestore::encode(element));
  return {{"values", values}};
}

Firestore::Array decodeArray(const json& array) {
  Firestore::Array values;
  const auto& items = jsonField(array, "values");
  if (!items.is_array()) return values;
  for (const auto& item : items)
    if (auto value = Firestore::decode(item); value && !value->isNull()) values.push_back(*value);
  return values;
}

}  // namespace

std::string isoTimestamp(Date date) {
  const std::int64_t seconds = wholeUnixSeconds(date);
  const std::int64_t days = seconds >= 0 ? seconds / 86400 : (seconds - 86399) / 86400;
  const std::int64_t inDay = seconds - days * 86400;
  const CivilDay civil = civilFromDays(days);
  return format("%04lld-%02d-%02dT%02lld:%02lld:%02lldZ", static_cast<long long>(civil.year),
                civil.month, civil.day, static_cast<long long>(inDay / 3600),
                static_cast<long long>(inDay / 60 % 60), static_cast<long long>(inDay % 60));
}

std::optional<Date> parseIsoTimestamp(const std::string& text) {
  if (auto withFraction = parseTimestamp(text, true)) return withFraction;
  return parseTimestamp(text, false);
}

json Firestore::encode(const Value& value) {
  const auto& data = value.data;
  if (auto b = std::get_if<bool>(&data)) return {{"booleanValue", *b}};
  if (auto i = std::get_if<std::int64_t>(&data))
    return {{"integerValue", format("%lld", static_cast<long long>(*i))}};
  if (auto d = std::get_if<double>(&data)) {
    // JSON has no words for these; the database's own coding would refuse them.
    if (!std::isfinite(*d)) return {{"nullValue", nullptr}};
    return {{"doubleValue", *d}};
  }
  if (auto s = std::get_if<std::string>(&data)) return {{"stringValue", *s}};
  if (auto t = std::get_if<Date>(&data)) return {{"timestampValue", isoTimestamp(*t)}};
  if (auto a = std::get_if<Array>(&data)) return {{"arrayValue", encodeArray(*a)}};
  if (auto f = std::get_if<Fields>(&data)) return {{"mapValue", {{"fields", encodeFields(*f)}}}};
  return {{"nullValue", nullptr}};
}

json Firestore::encodeFields(const Fields& fields) {
  json encoded = json::object();
  for (const auto& [key, value] : fields)
    encoded[key] = encode(value);
  return encoded;
}

std::optional<Firestore::Value> Firestore::decode(const json& value) {
  if (!value.is_object()) return std::nullopt;
  if (auto s = value.find("stringValue"); s != value.end() && s->is_string())
    return Value(s->get<std::string>());
  if (auto i = value.find("integerValue"); i != value.end()) {
    if (i->is_string()) return Value(leadingInteger(i->get<std::string>()).value_or(0));
    if (i->is_number_integer()) return Value(i->get<std::int64_t>());
    return Value(0);
  }
  if (auto d = value.find("doubleValue"); d != value.end() && d->is_number())
    return Value(d->get<double>());
  if (auto b = value.find("booleanValue"); b != value.end() && b->is_boolean())
    return Value(b->get<bool>());
  if (auto t = value.find("timestampValue"); t != value.end() && t->is_string())
    if (auto date = parseIsoTimestamp(t->get<std::string>())) return Value(*date);
  if (auto a = value.find("arrayValue"); a != value.end()) return Value(decodeArray(*a));
  if (auto m = value.find("mapValue"); m != value.end())
    return Value(decodeFields(jsonField(*m, "fields")));
  return std::nullopt;
}

Firestore::Fields Firestore::decodeFields(const json& fields) {
  Fields decoded;
  if (!fields.is_object()) return decoded;
  for (const auto& [key, item] : fields.items())
    if (auto value = decode(item); value && !value->isNull()) decoded.emplace(key, *value);
  return decoded;
}

std::optional<Firestore::Doc> Firestore::decodeDocument(const json& document) {
  const auto name = jsonRequired<std::string>(document, "name");
  if (!name) return std::nullopt;
  static const std::string marker = "/documents/";
  const auto at = name->rfind(marker);
  Doc doc;
  doc.path = at == std::string::npos ? std::string() : name->substr(at + marker.size());
  doc.fields = decodeFields(jsonField(document, "fields"));
  return doc;
}

json Firestore::encodeWrite(const Write& write, const std::string& documentsName) {
  const std::string name = documentsName + "/" + write.path;
  auto transform = [&](const char* kind) {
    json change = {{"fieldPath", write.field}, {kind, encodeArray(write.values)}};
    return json{{"transform", {{"document", name}, {"fieldTransforms", json::array({change})}}}};
  };
  switch (write.kind) {
    case Write::Kind::set:
      return {{"update", {{"name", name}, {"fields", encodeFields(write.fields)}}}};
    case Write::Kind::update:
      return {{"update", {{"name", name}, {"fields", encodeFields(write.fields)}}},
              {"updateMask", {{"fieldPaths", write.mask}}},
              {"currentDocument", {{"exists", true}}}};
    case Write::Kind::erase:
      return {{"delete", name}};
    case Write::Kind::arrayUnion:
      return transform("appendMissingElements");
    case Write::Kind::arrayRemove:
      return transform("removeAllFromArray");
  }
  return json::object();
}

}  // namespace sodam
