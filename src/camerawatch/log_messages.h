#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "camerawatch/camera_record.h"

namespace sodam {

// The pieces the camera watch reads out of the system log's messages. Each
// reads like a small regular expression, written out by hand so that a huge
// or hostile message costs a single pass and never a deep recursion.

// The first "msgID=" followed by at least one character that is neither a
// comma nor white space: those characters.
std::optional<std::string> messageId(std::string_view message);

// The digits of the first "authValue=" that has any.
std::optional<std::string> authValue(std::string_view message);

// The permission daemon's answer in an "authValue": 0 refused, 2 and 3
// allowed, anything else no answer.
std::optional<bool> authAnswer(std::string_view message);

// One process named inside a permission message.
struct LogParty {
  std::string identifier;
  std::int64_t pid = 0;
  std::string path;

  bool operator==(const LogParty&) const = default;
};

// The party after "{role}={TCCDProcess: ", up to the first "}" after it:
// its "identifier=" up to a comma, its first "pid=" digits and its
// "binary_path=" to the end of that part. Nothing without such a part.
std::optional<LogParty> logParty(std::string_view message, std::string_view role);

// Every "[cam] {name} ({id})" in the menu-bar indicator's message, in message
// order: the name as short as can be, the id without blanks or parentheses.
// None means that nobody is shown.
std::vector<CameraUser> cams(std::string_view message);

}  // namespace sodam
