#include <Foundation/Foundation.h>
#include <Security/Security.h>

#include "mac/mac_cloud.h"

namespace sodam {

namespace {

NSMutableDictionary* itemQuery(const std::string& account) {
  return [@{
    (__bridge id)kSecClass : (__bridge id)kSecClassGenericPassword,
    (__bridge id)kSecAttrService : @(Keychain::service),
    (__bridge id)kSecAttrAccount : @(account.c_str()),
  } mutableCopy];
}

NSData* dataOf(const std::string& bytes) {
  return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

}  // namespace

std::optional<std::string> MacKeychain::read(const std::string& account) {
  NSMutableDictionary* query = itemQuery(account);
  query[(__bridge id)kSecReturnData] = @YES;
  query[(__bridge id)kSecMatchLimit] = (__bridge id)kSecMatchLimitOne;
  CFTypeRef found = nullptr;
  if (SecItemCopyMatching((__bridge CFDictionaryRef)query, &found) != errSecSuccess || !found)
    return std::nullopt;
  NSData* data = (__bridge_transfer NSData*)found;
  if (![data isKindOfClass:[NSData class]]) return std::nullopt;
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

void MacKeychain::write(const std::string& account, const std::string& bytes) {
  NSDictionary* change = @{(__bridge id)kSecValueData : dataOf(bytes)};
  const OSStatus updated =
      SecItemUpdate((__bridge CFDictionaryRef)itemQuery(account), (__bridge CFDictionaryRef)change);
  if (updated != errSecItemNotFound) return;  // written, or a failure that stays silent
  NSMutableDictionary* item = itemQuery(account);
  item[(__bridge id)kSecValueData] = dataOf(bytes);
  item[(__bridge id)kSecAttrAccessible] =
      (__bridge id)kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly;
  SecItemAdd((__bridge CFDictionaryRef)item, nullptr);
}

void MacKeychain::remove(const std::string& account) {
  SecItemDelete((__bridge CFDictionaryRef)itemQuery(account));
}

}  // namespace sodam
