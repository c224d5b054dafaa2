#pragma once
#include <memory>
#include <string>

#include "cloud/keychain.h"

namespace sodam {

// The keychain over the desktop's secret service (libsecret), loaded at run
// time so that a machine without it still builds and runs. Items carry the
// attributes "service" and "account" of the Mac's keychain items.
class SecretServiceKeychain final : public Keychain {
 public:
  // Nothing when the library is missing, no session bus is set or no secret
  // service answers.
  static std::unique_ptr<SecretServiceKeychain> open();
  ~SecretServiceKeychain() override;

  std::optional<std::string> read(const std::string& account) override;
  void write(const std::string& account, const std::string& bytes) override;
  void remove(const std::string& account) override;

  struct Library;

 private:
  explicit SecretServiceKeychain(std::unique_ptr<Library> library);
  std::unique_ptr<Library> library_;
};

}  // namespace sodam
