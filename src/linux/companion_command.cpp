#include "linux/companion_command.h"

#include <filesystem>
#include <memory>
#include <optional>

#include "companion/dorani.h"
#include "linux/file_defaults.h"
#include "linux/linux_power_source.h"
#include "platform/power.h"
#include "posture/baseline_store.h"
#include "support/manual_scheduler.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari companion [--data-dir DIR]\n"
    "Shows 도란이's page: level, points, today's numbers and what it would say now.";

Calendar localCalendar() {
  if (auto zone = TimeZone::load("/etc/localtime")) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

// The records of the folder; a folder that is not there yet reads as a
// first day and is not made by looking.
std::unique_ptr<Defaults> openRecords(const std::filesystem::path& directory) {
  std::error_code error;
  if (!std::filesystem::is_directory(directory, error)) return std::make_unique<MemoryDefaults>();
  return std::make_unique<FileDefaults>(directory);
}

void printPage(const Dorani& dorani, const Dorani::Watch& watch, std::ostream& out) {
  out << format("도란이 · 레벨 %d '%s' · 함께한 지 %d일째\n", dorani.level(),
                std::string(dorani.title()).c_str(), dorani.days());
  std::string progress = format("모두 %d점", dorani.total());
  if (const auto next = dorani.next()) {
    progress += format(" · '%s'까지 %d점 (%lld%%)", std::string(next->title).c_str(),
                       next->points - dorani.total(), roundedInt(dorani.progress() * 100));
  }
  out << progress << "\n";
  const Dorani::Today today = dorani.todayStats();
  out << format("오늘 %d점 · 확인 %d번 · 바른 자세 %d번 · 바로잡음 %d번 · 다른 곳 %d번 · 쉼 %d번\n",
                dorani.today(), today.checks, today.good, today.corrected, today.away, today.rests);
  out << "지금 할 말:\n";
  for (const auto& line : dorani.lines(watch)) {
    out << "  (" << PillEyes::name(line.mood) << ") " << line.text << "\n";
  }
}

}  // namespace

const char* companionUsage() {
  return usage;
}

int runCompanion(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::optional<std::filesystem::path> directory;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--help" || args[i] == "-h") {
      out << usage << "\n";
      return 0;
    }
    if (args[i] == "--data-dir" && i + 1 < args.size()) {
      directory = args[++i];
      continue;
    }
    err << "sodamjari companion: "
        << (args[i] == "--data-dir" ? "--data-dir needs a value" : "unknown option " + args[i])
        << "\n"
        << usage << "\n";
    return 2;
  }
  if (!directory) directory = FileDefaults::defaultDirectory();
  if (!directory) {
    err << "sodamjari companion: no settings folder: set HOME or XDG_CONFIG_HOME, or give "
           "--data-dir\n";
    return 2;
  }
  auto defaults = openRecords(*directory);
  // The moment of looking, held still while the page is read; the tracker's
  // timer is never started, so its scheduler never runs.
  ManualClock clock(SystemClock().now());
  const Calendar calendar = localCalendar();
  ManualScheduler scheduler(clock);
  Store store(*defaults, clock, calendar);
  LinuxPowerSource source;
  Power power(source);
  const PostureLog log(*defaults, clock, calendar);
  const WorkLife work(*defaults, store, power, scheduler, clock, calendar);
  const Dorani dorani({*defaults, store, log, work, clock, calendar, {}});
  // Nothing watches the posture in this process: no alert is up.
  const Dorani::Watch watch{BaselineStore::read(*defaults).has_value(), store.enabled(),
                            std::nullopt};
  printPage(dorani, watch, out);
  return 0;
}

}  // namespace sodam
