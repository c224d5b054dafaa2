#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sodam {

// `sodamjari stretch [ID…] [--follower good|poor|absent] [--data-dir DIR]`:
// a coach session of these stretches, or of the day's routine without any,
// with the virtual sitter in front of the camera, told as it goes and summed
// up at the end; the finished routine is written to the records. Bad input is
// told on `err` with exit status 2 before anything is written.
const char* stretchUsage();

int runStretch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace sodam
