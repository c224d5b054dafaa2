#include "mac/mac_defaults.h"

#import <Foundation/Foundation.h>

namespace sodam {

namespace {

NSUserDefaults* store() {
  return NSUserDefaults.standardUserDefaults;
}

NSString* toString(std::string_view text) {
  return [[NSString alloc] initWithBytes:text.data()
                                  length:text.size()
                                encoding:NSUTF8StringEncoding];
}

std::string fromString(NSString* text) {
  const char* utf8 = text.UTF8String;
  return utf8 ? std::string(utf8) : std::string();
}

// Booleans are numbers to Foundation; the CoreFoundation type tells them apart.
bool isBoolean(NSNumber* number) {
  return CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID();
}

bool isInteger(NSNumber* number) {
  return !CFNumberIsFloatType((__bridge CFNumberRef)number);
}

DefaultsValue fromNumber(NSNumber* number) {
  if (isBoolean(number)) return static_cast<bool>(number.boolValue);
  if (isInteger(number)) return static_cast<std::int64_t>(number.longLongValue);
  return number.doubleValue;
}

std::optional<DefaultsValue> fromArray(NSArray* array) {
  std::vector<std::string> strings;
  strings.reserve(array.count);
  for (id element in array) {
    if (![element isKindOfClass:NSString.class]) return std::nullopt;
    strings.push_back(fromString(element));
  }
  return strings;
}

std::optional<DefaultsValue> fromDictionary(NSDictionary* dictionary) {
  IntDictionary values;
  for (id key in dictionary) {
    id value = dictionary[key];
    if (![key isKindOfClass:NSString.class] || ![value isKindOfClass:NSNumber.class]) {
      return std::nullopt;
    }
    if (isBoolean(value) || !isInteger(value)) return std::nullopt;
    values[fromString(key)] = [value longLongValue];
  }
  return values;
}

Bytes fromData(NSData* data) {
  const auto* bytes = static_cast<const std::uint8_t*>(data.bytes);
  return Bytes(bytes, bytes + data.length);
}

std::optional<DefaultsValue> fromObject(id object) {
  if ([object isKindOfClass:NSNumber.class]) return fromNumber(object);
  if ([object isKindOfClass:NSString.class]) return fromString(object);
  if ([object isKindOfClass:NSDate.class]) {
    return Date{[object timeIntervalSinceReferenceDate]};
  }
  if ([object isKindOfClass:NSData.class]) return fromData(object);
  if ([object isKindOfClass:NSArray.class]) return fromArray(object);
  if ([object isKindOfClass:NSDictionary.class]) return fromDictionary(object);
  return std::nullopt;
}

// Each value kind as the property-list object the defaults store; nil when a
// string in it is not UTF-8.
id toObject(bool value) {
  return @(value);
}

id toObject(std::int64_t value) {
  return @(static_cast<long long>(value));
}

id toObject(double value) {
  return @(value);
}

id toObject(const std::string& value) {
  return toString(value);
}

id toObject(Date value) {
  return [NSDate dateWithTimeIntervalSinceReferenceDate:value.sinceReference];
}

id toObject(const Bytes& value) {
  return [NSData dataWithBytes:value.data() length:value.size()];
}

id toObject(const std::vector<std::string>& value) {
  NSMutableArray* array = [NSMutableArray arrayWithCapacity:value.size()];
  for (const auto& text : value) {
    NSString* element = toString(text);
    if (!element) return nil;
    [array addObject:element];
  }
  return array;
}

id toObject(const IntDictionary& value) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithCapacity:value.size()];
  for (const auto& [key, number] : value) {
    NSString* name = toString(key);
    if (!name) return nil;
    dictionary[name] = @(static_cast<long long>(number));
  }
  return dictionary;
}

}  // namespace

std::optional<DefaultsValue> MacDefaults::object(std::string_view key) const {
  @autoreleasepool {
    id object = [store() objectForKey:toString(key)];
    if (!object) return std::nullopt;
    return fromObject(object);
  }
}

void MacDefaults::set(std::string_view key, DefaultsValue value) {
  @autoreleasepool {
    id object =
        std::visit([](const auto& alternative) -> id { return toObject(alternative); }, value);
    // A value with a string that is not UTF-8 has no object; writing nil
    // removes the key, so no stale value outlives a failed write.
    [store() setObject:object forKey:toString(key)];
  }
}

void MacDefaults::remove(std::string_view key) {
  @autoreleasepool {
    [store() removeObjectForKey:toString(key)];
  }
}

}  // namespace sodam
