#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari desk [--kind K] [--height CM] [FIELD=VALUE...] [--svg FILE]`:
// the side view of a desk setup, from the default setup of the kind with the
// fields given: its key points and measures, the rules it keeps and breaks
// with their tips, and with --svg the view drawn as an SVG file. A kind, a
// field or a value that fits nothing is told with what fits, exit status 2.
int runDesk(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
