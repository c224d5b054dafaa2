// The Linux entry of sodamjari: the same application core as on the Mac,
// run in virtual time with a virtual sitter before the camera.
#include <iostream>
#include <string>
#include <vector>

#include "linux/camera_command.h"
#include "linux/companion_command.h"
#include "linux/desk_command.h"
#include "linux/focus_command.h"
#include "linux/group_command.h"
#include "linux/group_social_command.h"
#include "linux/health_command.h"
#include "linux/linux_camera_sources.h"
#include "linux/report_command.h"
#include "linux/settings_command.h"
#include "linux/simulate_command.h"
#include "linux/stretch_command.h"
#include "support/utf8.h"

namespace {
constexpr const char* logHelperFlag = "--camera-log-helper";

void printUsage(std::ostream& out) {
  out << "usage: sodamjari simulate [SCENARIO] [options]   run a day in virtual time\n"
         "       sodamjari simulate --help                 the options\n"
         "       sodamjari report [today|week] [--html FILE]   the report of the records\n"
         "       sodamjari settings [list | get KEY | set KEY VALUE]\n"
         "       sodamjari stretch [ID...] [options]       a stretch routine with the sitter\n"
         "       sodamjari companion [--data-dir DIR]      도란이's page: level, points, lines\n"
         "       sodamjari focus [--data-dir DIR]          the focus modes and today's sessions\n"
         "       sodamjari health [--data-dir DIR]         the habits of the last seven days\n"
         "       sodamjari consult AREA [SIDE] FEELING WHEN [--ask Q]   the consult's answer\n"
         "       sodamjari desk [--kind K] [--height CM] [FIELD=VALUE...] [--svg FILE]\n"
         "       sodamjari group signin [google|apple] | signout | create NAME | join CODE |\n"
         "                       leave [CODE] | list | status   the study groups\n"
         "       sodamjari camera [--data-dir DIR]         other programs' camera use\n";
}
}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  for (const auto& arg : args) {
    if (arg == logHelperFlag) return sodam::runLinuxLogHelper();
  }
  if (args.empty() || args.front() == "--help" || args.front() == "-h") {
    printUsage(args.empty() ? std::cerr : std::cout);
    return args.empty() ? 2 : 0;
  }
  if (args.front() == "simulate") {
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (!rest.empty() && (rest.front() == "--help" || rest.front() == "-h")) {
      std::cout << sodam::simulateUsage() << "\n";
      return 0;
    }
    return sodam::runSimulate(rest, std::cout, std::cerr, sodam::Confined::yes);
  }
  const std::vector<std::string> rest(args.begin() + 1, args.end());
  if (args.front() == "camera")
    return sodam::runCamera(rest, std::cout, std::cerr, sodam::Confined::yes);
  if (args.front() == "report") return sodam::runReport(rest, std::cout, std::cerr);
  if (args.front() == "settings") return sodam::runSettings(rest, std::cout, std::cerr);
  if (args.front() == "stretch") return sodam::runStretch(rest, std::cout, std::cerr);
  if (args.front() == "companion") return sodam::runCompanion(rest, std::cout, std::cerr);
  if (args.front() == "focus") return sodam::runFocus(rest, std::cout, std::cerr);
  if (args.front() == "health") return sodam::runHealth(rest, std::cout, std::cerr);
  if (args.front() == "consult") return sodam::runConsult(rest, std::cout, std::cerr);
  if (args.front() == "desk") return sodam::runDesk(rest, std::cout, std::cerr);
  if (args.front() == "group")
    return sodam::runGroup(rest, std::cout, std::cerr, sodam::runGroupSocial);
  std::cerr << "sodamjari: unknown command \"" << sodam::utf8::printable(args.front()) << "\"\n";
  printUsage(std::cerr);
  return 2;
}
