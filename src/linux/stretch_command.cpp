#include "linux/stretch_command.h"

#include <filesystem>
#include <iostream>
#include <optional>

#include "coach/stretch_library.h"
#include "linux/linux_process_inspector.h"
#include "linux/record_store.h"
#include "linux/sqlite_defaults.h"
#include "sim/simulation.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari stretch [ID...] [--follower good|poor|absent] [--data-dir DIR]\n"
    "ID is a stretch of the library; without one the day's routine runs.";

// A quiet morning at the desk: the sitter in front of the laptop.
constexpr const char* desk = R"(start 10:00
end 23:00
10:00 present=yes distance=55 lid=110 power=mains
)";

struct Request {
  std::vector<Stretch> items;
  std::string follower = "good";
  std::optional<std::string> dataDir;
};

std::string knownIds() {
  std::string ids;
  for (const auto& s : StretchLibrary::all())
    ids += " " + s.id;
  return ids;
}

// Nothing when the arguments hold; otherwise what is wrong.
std::optional<std::string> read(const std::vector<std::string>& args, Request& request) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--data-dir") {
      if (auto problem = takeDataDir(args, i, request.dataDir)) return problem;
    } else if (arg == "--follower") {
      if (i + 1 >= args.size()) return arg + " needs a value";
      const std::string& value = args[++i];
      if (value == "good" || value == "poor" || value == "absent") {
        request.follower = value;
      } else {
        return "--follower is good, poor or absent";
      }
    } else if (arg.rfind("--", 0) == 0) {
      return "unknown option " + utf8::printable(arg);
    } else if (const Stretch* stretch = StretchLibrary::find(arg)) {
      request.items.push_back(*stretch);
    } else {
      return "unknown stretch \"" + utf8::printable(arg) + "\"; the library has" + knownIds();
    }
  }
  return std::nullopt;
}

StretchFollower::Habits habitsOf(const std::string& name) {
  if (name == "poor") return StretchFollower::poor();
  if (name == "absent") return StretchFollower::absentee();
  return StretchFollower::good();
}

}  // namespace

const char* stretchUsage() {
  return usage;
}

int runStretch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Request request;
  if (auto problem = read(args, request)) {
    err << "sodamjari stretch: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  const RecordStore store = RecordStore::open(request.dataDir, true);
  if (const int status = store.complain("stretch", err)) return status;
  SqliteDefaults& defaults = *store.defaults;
  const LinuxProcessInspector process;
  Simulation::Options options;
  options.process = &process;
  options.follower = habitsOf(request.follower);
  const Calendar calendar = localCalendar();
  const Date day = Simulation::dayToSimulate(defaults, calendar, SystemClock().now());
  std::string what = "오늘의 추천 루틴";
  if (!request.items.empty()) {
    what.clear();
    for (const auto& s : request.items)
      what += (what.empty() ? "" : ", ") + s.name;
  }
  out << "소담자리 스트레칭: " << what << " · 따라 하는 사람: " << request.follower
      << " · 기록: " << defaults.path().parent_path().string() << "\n";
  Simulation simulation(
      *Scenario::parse(desk, "stretch").scenario, defaults, calendar, day,
      [&out](const std::string& line) { out << line << "\n"; }, options);
  std::optional<std::vector<Stretch>> items;
  if (!request.items.empty()) items = std::move(request.items);
  const auto summary = simulation.runStretch(std::move(items));
  for (const auto& line : summary)
    out << line << "\n";
  out.flush();
  if (auto failure = defaults.firstFailure()) {
    err << "sodamjari stretch: a write to the settings store failed: " << failure->describe()
        << "\n";
    return 1;
  }
  return summary.empty() ? 1 : 0;
}

}  // namespace sodam
