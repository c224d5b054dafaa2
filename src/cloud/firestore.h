#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "cloud/cloud_config.h"
#include "cloud/cloud_error.h"
#include "cloud/http_client.h"
#include "support/date.h"

namespace sodam {

class CloudAuth;

// A small client of the hosted document database's REST interface (v1): no
// cache, no listeners, every call a plain request with the user's ID token.
// It keeps no state of its own. Calls begin on the main thread and answer on
// it; a signed-out user gets `signedOut` before any request is made.
class Firestore {
 public:
  struct Value;
  using Array = std::vector<Value>;
  using Fields = std::map<std::string, Value>;

  // One value of the database's small universe. Null stands for "nothing":
  // decoding leaves such values out of arrays and maps.
  struct Value {
    using Data =
        std::variant<std::monostate, bool, std::int64_t, double, std::string, Date, Array, Fields>;
    Data data;

    Value() = default;
    Value(bool b) : data(b) {}               // NOLINT: values read best written plainly
    Value(int i) : data(std::int64_t{i}) {}  // NOLINT
    Value(long i) : data(static_cast<std::int64_t>(i)) {}       // NOLINT
    Value(long long i) : data(static_cast<std::int64_t>(i)) {}  // NOLINT
    Value(double d) : data(d) {}                                // NOLINT
    Value(std::string s) : data(std::move(s)) {}                // NOLINT
    Value(const char* s) : data(std::string(s)) {}              // NOLINT
    Value(Date d) : data(d) {}                                  // NOLINT
    Value(Array a) : data(std::move(a)) {}                      // NOLINT
    Value(Fields f) : data(std::move(f)) {}                     // NOLINT

    bool isNull() const { return std::holds_alternative<std::monostate>(data); }
    // Each reads its own type only; nothing otherwise.
    std::optional<bool> boolean() const;
    std::optional<std::int64_t> integer() const;
    std::optional<double> real() const;
    std::optional<std::string> string() const;
    std::optional<Date> date() const;
    const Array* array() const;
    const Fields* fields() const;
    // Lenient numbers: an integer accepts a double (truncated), a double
    // accepts an integer.
    std::optional<std::int64_t> wholeNumber() const;
    std::optional<double> number() const;

    bool operator==(const Value&) const = default;
  };

  struct Doc {
    std::string path;  // below the documents root, such as "groups/abc"
    Fields fields;
    // The last component of the path; empty when it has none.
    std::string id() const;
    bool operator==(const Doc&) const = default;
  };

  // One write of a commit; all writes of a commit are atomic on the server.
  struct Write {
    enum class Kind { set, update, erase, arrayUnion, arrayRemove };
    Kind kind = Kind::set;
    std::string path;
    Fields fields;                  // set, update
    std::vector<std::string> mask;  // update: the field paths written
    std::string field;              // arrayUnion, arrayRemove
    Array values;                   // arrayUnion, arrayRemove

    // Replaces the whole document, or makes it.
    static Write set(std::string path, Fields fields);
    // Writes the masked fields of a document that must exist.
    static Write update(std::string path, Fields fields, std::vector<std::string> mask);
    static Write erase(std::string path);
    // Adds the values the array lacks / takes every copy of the values out.
    static Write arrayUnion(std::string path, std::string field, Array values);
    static Write arrayRemove(std::string path, std::string field, Array values);
    bool operator==(const Write&) const = default;
  };

  template <class T>
  using Reply = std::function<void(CloudResult<T>)>;

  static constexpr double timeoutSeconds = 15;
  static constexpr int pageSize = 100;

  // The hosts come from `auth`'s configuration.
  Firestore(CloudAuth& auth, HttpClient& http);

  // A missing document gives nothing.
  void get(const std::string& path, Reply<std::optional<Doc>> done);
  // Every document of a collection, page by page; a missing collection is empty.
  void list(const std::string& path, Reply<std::vector<Doc>> done);
  // The documents of `collection` whose array `field` holds `value`.
  void whereContains(const std::string& collection, const std::string& field,
                     const std::string& value, Reply<std::vector<Doc>> done);
  void commit(std::vector<Write> writes, CloudDone done);

  // The value coding of the REST interface, both ways.
  static nlohmann::json encode(const Value& value);
  static std::optional<Value> decode(const nlohmann::json& json);
  static nlohmann::json encodeFields(const Fields& fields);
  static Fields decodeFields(const nlohmann::json& fields);
  // A document object ({name, fields}); nothing without a string name.
  static std::optional<Doc> decodeDocument(const nlohmann::json& json);
  // The JSON of one write in a commit, with names below `documentsName`.
  static nlohmann::json encodeWrite(const Write& write, const std::string& documentsName);

 private:
  void call(const std::string& method, const std::string& url, std::optional<nlohmann::json> body,
            std::function<void(std::optional<CloudError>, const HttpResponse&)> done);
  void listPage(std::string first, std::string url, std::vector<Doc> gathered,
                Reply<std::vector<Doc>> done);

  CloudAuth& auth_;
  HttpClient& http_;
};

// Timestamps as the database writes them: ISO 8601 in UTC.
std::string isoTimestamp(Date date);
// With or without fractional seconds; nothing for other text.
std::optional<Date> parseIsoTimestamp(const std::string& text);

}  // namespace sodam
