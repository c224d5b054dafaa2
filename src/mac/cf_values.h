#pragma once

// Typed reads out of CoreFoundation dictionaries; pure functions, any thread.

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <optional>

namespace sodam::cf {

// The value under the key when it is an integer number (not a float, not a
// boolean); nothing otherwise.
std::optional<std::int64_t> integer(CFDictionaryRef dictionary, CFStringRef key);
// The value under the key when it is a number of any kind, as a double.
std::optional<double> real(CFDictionaryRef dictionary, CFStringRef key);
// The value under the key when it is a boolean.
std::optional<bool> boolean(CFDictionaryRef dictionary, CFStringRef key);
// The value under the key when it is a dictionary; not retained.
CFDictionaryRef dictionary(CFDictionaryRef dictionary, CFStringRef key);

}  // namespace sodam::cf
