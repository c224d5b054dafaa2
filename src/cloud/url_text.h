#pragma once
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace sodam {

// Percent-encoding as the cloud calls need it: only ASCII letters and digits
// stay plain, so a token survives any form or query it travels in.
std::string percentEncode(std::string_view text);
// Nothing when a "%" is not followed by two hexadecimal digits.
std::optional<std::string> percentDecode(std::string_view text);
// A percent-encoded query ("a=1&b=%20"): later names overwrite earlier ones,
// an item without "=" has the empty value. Nothing when an item doesn't decode.
std::optional<std::map<std::string, std::string>> parseQuery(std::string_view query);

}  // namespace sodam
