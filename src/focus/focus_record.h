#pragma once

#include <map>
#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "focus/use_mode.h"
#include "support/date.h"

namespace sodam {

// One finished focus session, stored under "focusRecords".
struct FocusRecord {
  std::string id;  // a UUID string
  Date start;
  Date end;
  double focused = 0;  // seconds in the seat
  std::string preset;  // the preset's name when the session ran
  UseMode mode = UseMode::laptop;
  std::map<std::string, int> habits;  // by the habit's raw value

  // Every field is required.
  static std::optional<FocusRecord> fromJson(const nlohmann::json& json);
  nlohmann::json toJson() const;

  bool operator==(const FocusRecord&) const = default;
};

}  // namespace sodam
