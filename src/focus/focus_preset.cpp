#include "focus/focus_preset.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "support/json.h"

namespace sodam {

using nlohmann::json;

const std::vector<FocusPreset>& FocusPreset::defaults() {
  static const std::vector<FocusPreset> presets{
      {"4F1C2B1A-3D4E-4F50-8A6B-7C8D9E0F1A01",
       "자세만 확인",
       "figure.stand",
       0,
       UseMode::laptop,
       true,
       {},
       true,
       true,
       0},
      {"4F1C2B1A-3D4E-4F50-8A6B-7C8D9E0F1A02",
       "나의 집중코치",
       "eye.fill",
       1,
       UseMode::watch,
       true,
       {WatchHabit::phone, WatchHabit::drowsy, WatchHabit::chinRest},
       true,
       true,
       50},
  };
  return presets;
}

bool FocusPreset::watches(WatchHabit habit) const {
  return std::find(habits.begin(), habits.end(), habit) != habits.end();
}

std::optional<FocusPreset> FocusPreset::fromJson(const json& object) {
  auto id = jsonRequired<std::string>(object, "id");
  auto name = jsonRequired<std::string>(object, "name");
  auto symbol = jsonRequired<std::string>(object, "symbol");
  auto tint = jsonRequired<int>(object, "tint");
  auto modeRaw = jsonRequired<std::string>(object, "mode");
  auto posture = jsonRequired<bool>(object, "posture");
  auto stretch = jsonRequired<bool>(object, "stretch");
  auto share = jsonRequired<bool>(object, "share");
  auto goal = jsonRequired<int>(object, "goal");
  const json& habits = jsonField(object, "habits");
  const auto mode = modeRaw ? UseMode::fromRaw(*modeRaw) : std::nullopt;
  if (!id || !name || !symbol || !tint || !mode || !posture || !stretch || !share || !goal ||
      !habits.is_array()) {
    return std::nullopt;
  }
  FocusPreset preset{*id, *name, *symbol, *tint, *mode, *posture, {}, *stretch, *share, *goal};
  for (const auto& element : habits) {
    const auto raw = jsonAs<std::string>(element);
    if (!raw) return std::nullopt;
    const auto habit = WatchHabit::fromRaw(*raw);
    if (habit && habit->isPickable() && !preset.watches(*habit)) preset.habits.push_back(*habit);
  }
  return preset;
}

json FocusPreset::toJson() const {
  json object = json::object();
  jsonPut(object, "id", id);
  jsonPut(object, "name", name);
  jsonPut(object, "symbol", symbol);
  jsonPut(object, "tint", tint);
  jsonPut(object, "mode", std::string(mode.raw()));
  jsonPut(object, "posture", posture);
  json list = json::array();
  for (WatchHabit habit : habits)
    list.push_back(std::string(habit.raw()));
  object["habits"] = std::move(list);
  jsonPut(object, "stretch", stretch);
  jsonPut(object, "share", share);
  jsonPut(object, "goal", goal);
  return object;
}

}  // namespace sodam
