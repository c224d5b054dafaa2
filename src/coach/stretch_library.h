#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "coach/stretch.h"
#include "posture/issue_kind.h"

namespace sodam {

// The fixed list of stretches and the choice of the day's routine from the
// posture record. Plain data and pure functions.
namespace StretchLibrary {

// The number of stretches in the day's recommended routine.
inline constexpr int routineCount = 4;
// The home card's title and its line for a routine without a reason.
inline constexpr std::string_view routineTitle = "오늘의 추천 루틴";
inline constexpr std::string_view routineStock = "굳은 목과 등을 깨우는\n3분 루틴";

// The fourteen stretches in the library's order.
const std::vector<Stretch>& all();
// The first stretch with exactly this id.
const Stretch* find(std::string_view id);
// The best-scored stretches for these issue weights, at most two of an area,
// equal scores in the library's order.
std::vector<Stretch> routine(const std::map<IssueKind, double>& weights, int count = routineCount);
// At most two lines that say why: the lines of the two heaviest issues.
std::vector<std::string> reasons(const std::map<IssueKind, double>& weights);
// The seconds a routine takes, both sides of two-sided stretches included.
int totalSeconds(const std::vector<Stretch>& stretches);

}  // namespace StretchLibrary

}  // namespace sodam
