#include "cloud/firestore.h"

namespace sodam {

namespace {

template <class T>
std::optional<T> held(const Firestore::Value::Data& data) {
  if (auto value = std::get_if<T>(&data)) return *value;
  return std::nullopt;
}

}  // namespace

std::optional<bool> Firestore::Value::boolean() const {
  return held<bool>(data);
}

std::optional<std::int64_t> Firestore::Value::integer() const {
  return held<std::int64_t>(data);
}

std::optional<double> Firestore::Value::real() const {
  return held<double>(data);
}

std::optional<std::string> Firestore::Value::string() const {
  return held<std::string>(data);
}

std::optional<Date> Firestore::Value::date() const {
  return held<Date>(data);
}

const Firestore::Array* Firestore::Value::array() const {
  return std::get_if<Array>(&data);
}

const Firestore::Fields* Firestore::Value::fields() const {
  return std::get_if<Fields>(&data);
}

std::optional<std::int64_t> Firestore::Value::wholeNumber() const {
  if (auto whole = integer()) return whole;
  // A double beyond the integers' range has no whole number to give.
  if (auto d = real(); d && *d > -9.2e18 && *d < 9.2e18) return static_cast<std::int64_t>(*d);
  return std::nullopt;
}

std::optional<double> Firestore::Value::number() const {
  if (auto d = real()) return d;
  if (auto whole = integer()) return static_cast<double>(*whole);
  return std::nullopt;
}

std::string Firestore::Doc::id() const {
  const auto end = path.find_last_not_of('/');
  if (end == std::string::npos) return {};
  const auto slash = path.rfind('/', end);
  const auto start = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(start, end + 1 - start);
}

Firestore::Write Firestore::Write::set(std::string path, Fields fields) {
  Write write;
  write.kind = Kind::set;
  write.path = std::move(path);
  write.fields = std::move(fields);
  return write;
}

Firestore::Write Firestore::Write::update(std::string path, Fields fields,
                                          std::vector<std::string> mask) {
  Write write = set(std::move(path), std::move(fields));
  write.kind = Kind::update;
  write.mask = std::move(mask);
  return write;
}

Firestore::Write Firestore::Write::erase(std::string path) {
  Write write;
  write.kind = Kind::erase;
  write.path = std::move(path);
  return write;
}

Firestore::Write Firestore::Write::arrayUnion(std::string path, std::string field, Array values) {
  Write write;
  write.kind = Kind::arrayUnion;
  write.path = std::move(path);
  write.field = std::move(field);
  write.values = std::move(values);
  return write;
}

Firestore::Write Firestore::Write::arrayRemove(std::string path, std::string field, Array values) {
  Write write = arrayUnion(std::move(path), std::move(field), std::move(values));
  write.kind = Kind::arrayRemove;
  return write;
}

}  // namespace sodam
