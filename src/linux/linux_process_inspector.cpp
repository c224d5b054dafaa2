#include "linux/linux_process_inspector.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace sodam {

long LinuxProcessInspector::tracerPid(const std::string& status) {
  std::istringstream lines(status);
  std::string line;
  constexpr std::string_view key = "TracerPid:";
  while (std::getline(lines, line)) {
    if (line.compare(0, key.size(), key) != 0) continue;
    return std::strtol(line.c_str() + key.size(), nullptr, 10);
  }
  return 0;
}

bool LinuxProcessInspector::traced() const {
  std::ifstream file(statusPath_);
  std::stringstream text;
  text << file.rdbuf();
  return tracerPid(text.str()) != 0;
}

// The loader reads both at start: a preloaded library, or an auditing one
// that sees every symbol the process binds.
std::string LinuxProcessInspector::injectedLibraries() const {
  std::string found;
  for (const char* name : {"LD_PRELOAD", "LD_AUDIT"}) {
    const char* value = std::getenv(name);
    if (!value || !*value) continue;
    if (!found.empty()) found += ":";
    found += value;
  }
  return found;
}

}  // namespace sodam
