#pragma once
#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari group signin [google|apple] | signout [--data-dir DIR]`: the
// cloud session of the study groups, against the hosts the build was
// configured with.
int runGroup(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
