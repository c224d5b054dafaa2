#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "linux/product_run.h"

namespace sodam {

// `sodamjari simulate [SCENARIO] [--mode interval|live] [--speed N | --realtime]
//  [--data-dir DIR] [--sensitivity strict|normal|relaxed] [--style border|blur]`:
// the whole product for a day in virtual time, settings and records in the
// real settings store. Bad input, and a data folder another run holds, are
// told on `err` with exit status 2 before anything is written; a store that
// cannot be opened, read or written ends the run with status 1, and a stop
// by SIGINT, SIGTERM or SIGHUP with 128 + the signal.
// The options, for --help.
const char* simulateUsage();

// Confined as the product, the camera-log helper is started and the privacy
// lock engaged before the day begins, and this machine's camera is told at
// the end.
int runSimulate(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                Confined confined);
// Unconfined, as inside another program.
inline int runSimulate(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  return runSimulate(args, out, err, Confined::no);
}

}  // namespace sodam
