#include "linux/companion_command.h"

#include <memory>
#include <optional>

#include "companion/dorani.h"
#include "linux/linux_power_source.h"
#include "linux/record_store.h"
#include "platform/power.h"
#include "posture/baseline_store.h"
#include "support/manual_scheduler.h"
#include "support/numeric.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari companion [--data-dir DIR]\n"
    "Shows 도란이's page: level, points, today's numbers and what it would say now.";

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

// The problem with the arguments, if any.
}  // namespace

const char* companionUsage() {
  return usage;
}

int runCompanion(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << usage << "\n";
    return 0;
  }
  std::optional<std::string> dataDir;
  if (auto problem = readDataDirOnly(args, dataDir)) {
    err << "sodamjari companion: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  RecordStore store = RecordStore::open(dataDir, false);
  if (const int status = store.complain("companion", err)) return status;
  // A folder without records meets the companion for the first time, and
  // is not made by looking.
  MemoryDefaults firstMeeting;
  Defaults& defaults = store.defaults ? static_cast<Defaults&>(*store.defaults) : firstMeeting;

  const Calendar calendar = localCalendar();
  ManualClock clock(SystemClock().now());
  ManualScheduler scheduler(clock);  // the tracker's timer is never started
  Store settings(defaults, clock, calendar);
  LinuxPowerSource source;
  Power power(source);
  const PostureLog log(defaults, clock, calendar);
  const WorkLife work(defaults, settings, power, scheduler, clock, calendar);
  if (auto newest = newestRecord(log, work.days()); newest && clock.now() < *newest) {
    clock.set(*newest);
  }
  const Dorani dorani({defaults, settings, log, work, clock, calendar, {}});
  // Nothing watches the posture in this process: no alert is up.
  const Dorani::Watch watch{BaselineStore::read(defaults).has_value(), settings.enabled(),
                            std::nullopt};
  printPage(dorani, watch, out);
  return 0;
}

}  // namespace sodam
