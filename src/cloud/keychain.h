#pragma once
#include <map>
#include <optional>
#include <string>

namespace sodam {

// Secrets of the signed-in session, as generic password items of one service.
// Failures are silent: a session whose secrets can't be kept lasts until the
// process ends. Implementations: the macOS keychain, the Linux secret service
// or a private file, and MemoryKeychain.
class Keychain {
 public:
  static constexpr const char* service = "kr.lumenfold.sodamjari";
  static constexpr const char* refreshAccount = "cloudRefresh";  // the refresh token, UTF-8
  static constexpr const char* userAccount = "cloudUser";        // CloudUser as JSON

  virtual ~Keychain() = default;
  virtual std::optional<std::string> read(const std::string& account) = 0;
  virtual void write(const std::string& account, const std::string& bytes) = 0;
  virtual void remove(const std::string& account) = 0;
};

class MemoryKeychain final : public Keychain {
 public:
  std::optional<std::string> read(const std::string& account) override;
  void write(const std::string& account, const std::string& bytes) override;
  void remove(const std::string& account) override { items_.erase(account); }
  const std::map<std::string, std::string>& items() const { return items_; }

 private:
  std::map<std::string, std::string> items_;
};

}  // namespace sodam
