#pragma once
#include <filesystem>

#include <nlohmann/json.hpp>

#include "cloud/keychain.h"

namespace sodam {

// The keychain on a Linux machine without a secret service: one JSON file in
// the data directory that only its owner may read or write (mode 0600),
// replaced whole on each write.
class FileKeychain final : public Keychain {
 public:
  static constexpr const char* fileName = "keychain.json";
  explicit FileKeychain(std::filesystem::path directory) : path_(directory / fileName) {}

  std::optional<std::string> read(const std::string& account) override;
  void write(const std::string& account, const std::string& bytes) override;
  void remove(const std::string& account) override;
  const std::filesystem::path& path() const { return path_; }

 private:
  void save(const nlohmann::json& items) const;
  nlohmann::json load() const;
  std::filesystem::path path_;
};

}  // namespace sodam
