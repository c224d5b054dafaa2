#include "mac/cf_values.h"

namespace sodam::cf {

namespace {

template <class Ref>
Ref valueOf(CFDictionaryRef dictionary, CFStringRef key, CFTypeID type) {
  if (!dictionary) return nullptr;
  CFTypeRef value = CFDictionaryGetValue(dictionary, key);
  if (!value || CFGetTypeID(value) != type) return nullptr;
  return static_cast<Ref>(value);
}

CFNumberRef number(CFDictionaryRef dictionary, CFStringRef key) {
  return valueOf<CFNumberRef>(dictionary, key, CFNumberGetTypeID());
}

}  // namespace

std::optional<std::int64_t> integer(CFDictionaryRef dictionary, CFStringRef key) {
  CFNumberRef value = number(dictionary, key);
  if (!value || CFNumberIsFloatType(value)) return std::nullopt;
  std::int64_t result = 0;
  if (!CFNumberGetValue(value, kCFNumberSInt64Type, &result)) return std::nullopt;
  return result;
}

std::optional<double> real(CFDictionaryRef dictionary, CFStringRef key) {
  CFNumberRef value = number(dictionary, key);
  if (!value) return std::nullopt;
  double result = 0;
  CFNumberGetValue(value, kCFNumberDoubleType, &result);
  return result;
}

std::optional<bool> boolean(CFDictionaryRef dictionary, CFStringRef key) {
  auto value = valueOf<CFBooleanRef>(dictionary, key, CFBooleanGetTypeID());
  if (!value) return std::nullopt;
  return CFBooleanGetValue(value);
}

CFDictionaryRef dictionary(CFDictionaryRef dictionary, CFStringRef key) {
  return valueOf<CFDictionaryRef>(dictionary, key, CFDictionaryGetTypeID());
}

}  // namespace sodam::cf
