#pragma once
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace sodam {

// The one error of the cloud layer: what went wrong, with words for the user
// in `text()`. Pages turn it into their own sentences where they have them.
struct CloudError {
  enum class Kind { http, signedOut, bad };

  Kind kind = Kind::bad;
  int status = 0;    // http: the response's status, 0 when no HTTP answer came
  std::string body;  // http: the response's body text; empty when not UTF-8

  static CloudError http(int status, std::string body);
  static CloudError signedOut() { return CloudError{Kind::signedOut, 0, {}}; }
  static CloudError bad() { return CloudError{Kind::bad, 0, {}}; }

  std::string text() const;
  bool operator==(const CloudError&) const = default;
};

// What an asynchronous cloud call delivers: a value or a CloudError. Every
// callback that receives one runs on the main thread.
template <class T>
class CloudResult {
 public:
  CloudResult(T value) : value_(std::move(value)) {}           // NOLINT: implicit on purpose
  CloudResult(CloudError error) : error_(std::move(error)) {}  // NOLINT

  bool ok() const { return !error_.has_value(); }
  const T& value() const { return *value_; }
  T& value() { return *value_; }
  const CloudError& error() const { return *error_; }

 private:
  std::optional<T> value_;
  std::optional<CloudError> error_;
};

// The end of a call that gives nothing back: nothing on success, else the error.
using CloudDone = std::function<void(std::optional<CloudError>)>;

}  // namespace sodam
