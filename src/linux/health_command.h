#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari health [--data-dir DIR]`: the health coach's page of the
// stored records: the check-up, today's opinion and each habit of the last
// seven days with its numbers. Read at the present moment, or at the
// newest record when a simulation has run ahead of the clock.
int runHealth(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// `sodamjari consult AREA [SIDE] FEELING WHEN [--data-dir DIR]`: the
// consult's rule answer, read with the habits of the stored records. Each
// value by its Korean words or its case name; SIDE only for an area that
// asks for one. A value that fits nothing is told with the ones that fit,
// exit status 2.
int runConsult(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
