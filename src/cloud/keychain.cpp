#include "cloud/keychain.h"

namespace sodam {

std::optional<std::string> MemoryKeychain::read(const std::string& account) {
  auto found = items_.find(account);
  if (found == items_.end()) return std::nullopt;
  return found->second;
}

void MemoryKeychain::write(const std::string& account, const std::string& bytes) {
  items_[account] = bytes;
}

}  // namespace sodam
