#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari settings [list | get KEY | set KEY VALUE]`: the settings the
// settings page changes, over the same store as the other commands. `list`
// (the default) shows every setting with its value and what it takes; a
// folder without a store shows the defaults and is left untouched until a
// `set`. An unknown key or a value a setting does not take is told on `err`
// with exit status 2; a store that can't be read with status 1.
int runSettings(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
