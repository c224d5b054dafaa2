#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "focus/use_mode.h"
#include "focus/watch_habit.h"

namespace sodam {

// One way of working that the user picks from the menu or the focus page:
// what is watched, whether the stand-up nudge comes, whether the state is
// shared, and the focus goal. Stored as JSON under these field names.
struct FocusPreset {
  std::string id;  // a UUID string
  std::string name;
  std::string symbol;
  int tint = 0;  // an index into the views' list of preset colours
  UseMode mode = UseMode::laptop;
  bool posture = true;
  std::vector<WatchHabit> habits;  // pickable habits only
  bool stretch = true;
  bool share = true;
  int goal = 0;  // minutes; 0 for none

  // "자세만 확인" and "나의 집중코치". Their ids are fixed, so the stored
  // active id still finds them after a restart.
  static const std::vector<FocusPreset>& defaults();
  bool watches(WatchHabit habit) const;

  // Every field is required; habits that are not pickable are dropped, so
  // a preset stored before the list changed keeps what it still may choose.
  static std::optional<FocusPreset> fromJson(const nlohmann::json& json);
  nlohmann::json toJson() const;

  bool operator==(const FocusPreset&) const = default;
};

}  // namespace sodam
