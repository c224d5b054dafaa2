#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "support/date.h"

namespace sodam {

// One entry of the record of other applications' camera use.
struct WatchEvent {
  enum class Kind {
    cameraOn,  // a camera really ran
    request,   // an application asked for the camera
    check,     // an application checked the right without asking
  };

  // The marker of a name still being looked for, and of one never found.
  static constexpr std::string_view checking = "확인 중";
  static constexpr std::string_view unknown = "알 수 없음";

  // A new UUID for a camera use; "r:{key}" for an event from a record.
  std::string id;
  Kind kind = Kind::cameraOn;
  Date time;
  // When the camera went off; absent while it runs. A date before `time`
  // means the end isn't known.
  std::optional<Date> end;
  // A display name, several joined by ", ", or one of the markers.
  std::string app;
  std::string path;
  std::optional<bool> allowed;            // a request's answer
  int count = 1;                          // how many like events this one stands for
  std::optional<std::string> suspicious;  // the reason to warn, for the user

  bool operator==(const WatchEvent&) const = default;

  // The event's line: what happened, how often, and the warning.
  std::string summary() const;
};

std::string_view kindName(WatchEvent::Kind kind);

// The stored form: keys as the fields are named, the kind by its name,
// absent values left out. An event that can't be read is nothing.
nlohmann::json toJson(const WatchEvent& event);
std::optional<WatchEvent> watchEventFromJson(const nlohmann::json& value);
// The whole stored array; unreadable events are left out.
std::vector<WatchEvent> watchEventsFromJson(const nlohmann::json& value);

}  // namespace sodam
