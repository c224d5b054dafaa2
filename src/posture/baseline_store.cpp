#include "posture/baseline_store.h"

#include <nlohmann/json.hpp>

#include "platform/store.h"

namespace sodam {

std::optional<Baseline> BaselineStore::read(const Defaults& defaults) {
  auto json = defaults.jsonData(StoreKey::baseline);
  if (!json) return std::nullopt;
  auto decoded = Baseline::fromJson(*json);
  // A change of format sends the user back to learning; nothing is migrated.
  if (!decoded || decoded->version != Baseline::currentVersion) return std::nullopt;
  return decoded;
}

void BaselineStore::write(Defaults& defaults, const std::optional<Baseline>& baseline) {
  if (!baseline) {
    defaults.remove(StoreKey::baseline);
    return;
  }
  defaults.setJsonData(StoreKey::baseline, baseline->toJson());
}

}  // namespace sodam
