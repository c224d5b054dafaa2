#include "linux/camera_command.h"

#include <memory>
#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "camerawatch/watch_event.h"
#include "linux/record_store.h"
#include "platform/defaults.h"
#include "platform/lockdown.h"
#include "platform/store.h"
#include "support/korean_format.h"
#include "support/manual_scheduler.h"
#include "support/utf8.h"

namespace sodam {

namespace {

const char* usage = "usage: sodamjari camera [--data-dir DIR]";

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
  std::optional<std::string> dataDir;
  if (auto problem = readDataDirOnly(args, dataDir)) {
    err << "sodamjari camera: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  RecordStore records = RecordStore::open(dataDir, false);
  if (const int status = records.complain("camera", err)) return status;
  std::unique_ptr<ProductRun> product;
  ManualClock lockClock;
  ManualScheduler lockScheduler(lockClock);
  std::unique_ptr<Lockdown> lock;
  if (confined == Confined::yes) {
    product = std::make_unique<ProductRun>(records.directory);
    lock = Lockdown::engage(product->confinement(), lockScheduler);
    product->host().connect();
  }
  MemoryDefaults nothing;
  Defaults& defaults = records.defaults ? static_cast<Defaults&>(*records.defaults) : nothing;
  const Calendar calendar = localCalendar();
  const SystemClock clock;
  const Store store(defaults, clock, calendar);
  out << "소담자리 카메라 기록 · 기록: " << records.directory.string() << "\n";
  printRecord(watchEventsFromJson(store.watchEvents()), calendar, out);
  if (product) out << product->host().nowLine() << "\n";
  out.flush();
  return 0;
}

}  // namespace sodam
