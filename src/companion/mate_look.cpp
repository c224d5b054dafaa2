#include "companion/mate_look.h"

#include <array>

#include "platform/store.h"
#include "support/json.h"

namespace sodam {

namespace {
using Field = int MateLook::*;
struct Named {
  const char* key;
  Field field;
};
constexpr std::array<Named, 8> fields{{
    {"skin", &MateLook::skin},
    {"hair", &MateLook::hair},
    {"hairColor", &MateLook::hairColor},
    {"shirt", &MateLook::shirt},
    {"item", &MateLook::item},
    {"eyes", &MateLook::eyes},
    {"top", &MateLook::top},
    {"face", &MateLook::face},
}};

constexpr std::array<MateLook, 3> samples{{
    {1, 2, 0, 3, 1, 0, 0, 1},
    {3, 0, 2, 1, 0, 1, 2, 0},
    {2, 4, 1, 0, 2, 2, 0, 2},
}};
}  // namespace

MateLook MateLook::mine(const Defaults& defaults) {
  const auto json = defaults.jsonData(StoreKey::mateLook);
  if (!json || !json->is_object()) return {};
  MateLook look;
  for (const auto& [key, field] : fields) {
    const auto value = jsonRequired<int>(*json, key);
    if (!value) return {};
    look.*field = *value;
  }
  return look;
}

void MateLook::setMine(Defaults& defaults, const MateLook& look) {
  nlohmann::json json = nlohmann::json::object();
  for (const auto& [key, field] : fields)
    jsonPut(json, key, look.*field);
  defaults.setJsonData(StoreKey::mateLook, json);
}

MateLook MateLook::sample(int n) {
  const int index = ((n % 3) + 3) % 3;
  return samples[static_cast<std::size_t>(index)];
}

MateLook::Dictionary MateLook::dictionary() const {
  Dictionary out;
  for (const auto& [key, field] : fields)
    out[key] = this->*field;
  return out;
}

MateLook MateLook::from(const std::optional<Dictionary>& dictionary) {
  MateLook look;
  if (!dictionary) return look;
  for (const auto& [key, field] : fields) {
    if (auto found = dictionary->find(key); found != dictionary->end()) look.*field = found->second;
  }
  return look;
}

}  // namespace sodam
