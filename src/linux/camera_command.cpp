#include "linux/camera_command.h"

#include <memory>
#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "camerawatch/watch_event.h"
#include "linux/file_defaults.h"
#include "platform/lockdown.h"
#include "platform/store.h"
#include "support/korean_format.h"
#include "support/manual_scheduler.h"

namespace sodam {

namespace {

const char* usage = "usage: sodamjari camera [--data-dir DIR]";

std::optional<std::filesystem::path> dataDirectory(const std::vector<std::string>& args,
                                                   std::ostream& err) {
  std::optional<std::filesystem::path> directory;
  for (std::size_t i = 0; i < args.size(); ++i) {
    std::string problem;
    if (args[i] != "--data-dir") {
      problem = "unknown argument " + args[i];
    } else if (i + 1 >= args.size() || args[i + 1].empty()) {
      problem = "--data-dir needs a folder";
    } else {
      directory = args[++i];
      continue;
    }
    err << "sodamjari camera: " << problem << "\n" << usage << "\n";
    return std::nullopt;
  }
  if (!directory) directory = FileDefaults::defaultDirectory();
  if (!directory) {
    err << "sodamjari camera: no settings folder: set HOME or XDG_CONFIG_HOME, or give "
           "--data-dir\n";
  }
  return directory;
}

Calendar localCalendar() {
  if (auto zone = TimeZone::load("/etc/localtime")) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

void printRecord(const std::vector<WatchEvent>& events, const Calendar& calendar,
                 std::ostream& out) {
  if (events.empty()) {
    out << "기록이 없어요\n";
    return;
  }
  for (const auto& event : events) {
    out << Fmt::full(event.time, calendar) << " · " << event.app << " · " << event.summary()
        << "\n";
    if (!event.path.empty()) out << "    " << event.path << "\n";
  }
}

}  // namespace

int runCamera(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
              Confined confined) {
  const auto directory = dataDirectory(args, err);
  if (!directory) return 2;
  std::unique_ptr<ProductRun> product;
  ManualClock lockClock;
  ManualScheduler lockScheduler(lockClock);
  std::unique_ptr<Lockdown> lock;
  if (confined == Confined::yes) {
    product = std::make_unique<ProductRun>(*directory);
    lock = Lockdown::engage(product->confinement(), lockScheduler);
    product->host().connect();
  }
  FileDefaults defaults(*directory);
  const Calendar calendar = localCalendar();
  const SystemClock clock;
  const Store store(defaults, clock, calendar);
  out << "소담자리 카메라 기록 · 기록: " << directory->string() << "\n";
  printRecord(watchEventsFromJson(store.watchEvents()), calendar, out);
  if (product) out << product->host().nowLine() << "\n";
  out.flush();
  return 0;
}

}  // namespace sodam
