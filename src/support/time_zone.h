#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/date.h"

namespace sodam {

// A time zone: the offset from UTC at every moment. Made from a TZif file
// (the system's zone database on both platforms), a POSIX TZ rule such as
// "EST5EDT,M3.2.0,M11.1.0", or a fixed offset.
class TimeZone {
 public:
  struct Rules;

  static TimeZone utc();
  static TimeZone fixed(int secondsEastOfUtc);
  static std::optional<TimeZone> fromPosixRule(std::string_view rule);
  static std::optional<TimeZone> fromTzif(std::string_view bytes, std::string name = "");
  // Reads a TZif file; nothing when it is missing or damaged.
  static std::optional<TimeZone> load(const std::string& path, std::string name = "");

  int offsetAt(Date date) const;  // seconds east of UTC
  const std::string& name() const;

 private:
  explicit TimeZone(std::shared_ptr<const Rules> rules) : rules_(std::move(rules)) {}
  std::shared_ptr<const Rules> rules_;
};

}  // namespace sodam
