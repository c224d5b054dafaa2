#pragma once
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace sodam {

// The signed-in person as the token service knows them. Kept in the keychain
// as JSON with the keys uid, name, provider and email (left out when absent).
struct CloudUser {
  std::string uid;
  std::string name;      // at most 12 characters
  std::string provider;  // "google" or "apple"
  std::optional<std::string> email;

  bool operator==(const CloudUser&) const = default;

  // Characters of a display name that are kept.
  static constexpr std::size_t nameLimit = 12;
};

nlohmann::json toJson(const CloudUser& user);
// Nothing when a required key is missing or of another type.
std::optional<CloudUser> cloudUserFromJson(const nlohmann::json& json);

}  // namespace sodam
