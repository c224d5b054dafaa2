#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "linux/product_run.h"

namespace sodam {

// `sodamjari camera [--data-dir DIR]`: the record of other programs' camera
// use, newest first, with this machine's camera now. Bad input is told on
// `err` with exit status 2.
int runCamera(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
              Confined confined = Confined::no);

}  // namespace sodam
