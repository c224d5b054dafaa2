#include "focus/focus_record.h"

#include <nlohmann/json.hpp>

#include "support/json.h"

namespace sodam {

using nlohmann::json;

std::optional<FocusRecord> FocusRecord::fromJson(const json& object) {
  auto id = jsonRequired<std::string>(object, "id");
  auto start = jsonRequired<Date>(object, "start");
  auto end = jsonRequired<Date>(object, "end");
  auto focused = jsonRequired<double>(object, "focused");
  auto preset = jsonRequired<std::string>(object, "preset");
  auto modeRaw = jsonRequired<std::string>(object, "mode");
  const json& habits = jsonField(object, "habits");
  const auto mode = modeRaw ? UseMode::fromRaw(*modeRaw) : std::nullopt;
  if (!id || !start || !end || !focused || !preset || !mode || !habits.is_object()) {
    return std::nullopt;
  }
  FocusRecord record{*id, *start, *end, *focused, *preset, *mode, {}};
  for (const auto& [raw, value] : habits.items()) {
    const auto count = jsonAs<int>(value);
    if (!count) return std::nullopt;
    record.habits[raw] = *count;
  }
  return record;
}

json FocusRecord::toJson() const {
  json object = json::object();
  jsonPut(object, "id", id);
  jsonPut(object, "start", start);
  jsonPut(object, "end", end);
  jsonPut(object, "focused", focused);
  jsonPut(object, "preset", preset);
  jsonPut(object, "mode", std::string(mode.raw()));
  json counts = json::object();
  for (const auto& [raw, count] : habits)
    counts[raw] = count;
  object["habits"] = std::move(counts);
  return object;
}

}  // namespace sodam
