#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari companion [--data-dir DIR]`: what 도란이's page shows now, from
// the records in the data folder: level and progress, today's numbers and
// the lines it would say. Returns the exit status.
int runCompanion(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
const char* companionUsage();

}  // namespace sodam
