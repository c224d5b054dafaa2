#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari focus [--data-dir DIR]`: the focus presets with the active one
// marked, today's focus sessions and the habits the focus coach counted,
// from the same store as the other commands. A folder without a store shows
// the default presets and is left untouched. Bad arguments give status 2, a
// store that can't be read status 1.
int runFocus(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
