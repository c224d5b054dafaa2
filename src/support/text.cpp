#include "support/text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace sodam {

std::string format(const char* pattern, ...) {
  va_list args;
  va_start(args, pattern);
  va_list copy;
  va_copy(copy, args);
  const int length = std::vsnprintf(nullptr, 0, pattern, copy);
  va_end(copy);
  std::string result;
  if (length > 0) {
    result.resize(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(result.data(), result.size(), pattern, args);
    result.resize(static_cast<std::size_t>(length));
  }
  va_end(args);
  return result;
}

std::string fill(std::string_view pattern,
                 std::initializer_list<std::pair<std::string_view, std::string_view>> values) {
  std::string result;
  result.reserve(pattern.size() + 16);
  std::size_t at = 0;
  while (at < pattern.size()) {
    const auto open = pattern.find('{', at);
    const auto close = open == std::string_view::npos ? open : pattern.find('}', open);
    if (close == std::string_view::npos) break;
    result.append(pattern.substr(at, open - at));
    const auto name = pattern.substr(open + 1, close - open - 1);
    const auto* match = std::find_if(values.begin(), values.end(),
                                     [&](const auto& value) { return value.first == name; });
    if (match != values.end()) {
      result.append(match->second);
    } else {
      result.append(pattern.substr(open, close - open + 1));
    }
    at = close + 1;
  }
  result.append(pattern.substr(at));
  return result;
}

}  // namespace sodam
