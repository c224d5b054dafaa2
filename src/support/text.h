#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace sodam {

// printf-style formatting into a string (libc++ 16 has no std::format).
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));

// Replaces each "{name}" in a designed sentence with its value; names
// without a value are left as they are.
std::string fill(std::string_view pattern,
                 std::initializer_list<std::pair<std::string_view, std::string_view>> values);

}  // namespace sodam
