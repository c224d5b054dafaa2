#pragma once

#include <string_view>

#include "health/habit.h"

namespace sodam {

// What a found habit says, from the mean of its values and the share of
// them that lean its way: the titles, the muscles, the why and the release,
// the stretches and the highlights, with its sides in words.
Habit describedHabit(std::string_view id, double avg, double share, Habit::Level level);

}  // namespace sodam
