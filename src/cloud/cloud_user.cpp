#include "cloud/cloud_user.h"

#include "support/json.h"

namespace sodam {

nlohmann::json toJson(const CloudUser& user) {
  nlohmann::json json = nlohmann::json::object();
  jsonPut(json, "uid", user.uid);
  jsonPut(json, "name", user.name);
  jsonPut(json, "provider", user.provider);
  jsonPut(json, "email", user.email);
  return json;
}

std::optional<CloudUser> cloudUserFromJson(const nlohmann::json& json) {
  auto uid = jsonRequired<std::string>(json, "uid");
  auto name = jsonRequired<std::string>(json, "name");
  auto provider = jsonRequired<std::string>(json, "provider");
  CloudUser user;
  if (!uid || !name || !provider || !jsonOptional(json, "email", user.email)) return std::nullopt;
  user.uid = *uid;
  user.name = *name;
  user.provider = *provider;
  return user;
}

}  // namespace sodam
