#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari report [today|week] [--data-dir DIR] [--html FILE]`: the
// report page of the records in the folder, printed for the terminal, and
// with --html written as one self-contained HTML file as well. The report
// is read at the present moment, or at the newest record when a simulation
// has run ahead of the clock. Bad input is told on `err` with exit status 2,
// a folder with no records says so with status 0, a store that can't be
// read says why with status 1.
int runReport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
