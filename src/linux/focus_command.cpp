#include "linux/focus_command.h"

#include <iostream>

#include "app/focus_page.h"
#include "linux/record_store.h"
#include "platform/defaults.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

const char* usage = "usage: sodamjari focus [--data-dir DIR]";

// "today" is the day of the newest record when a simulation wrote days
// ahead of the machine's clock.
Date today(const FocusCenter& focus) {
  Date now = SystemClock().now();
  for (const auto& record : focus.records()) {
    if (now < record.end) now = record.end;
  }
  return now;
}

void print(const FocusPage& page, std::ostream& out) {
  out << "집중 모드\n";
  for (const auto& preset : page.presets)
    out << (preset.active ? "  ● " : "  ○ ") << preset.name << " — " << preset.detail << "\n";
  out << page.todayTotal << "\n";
  if (page.records.empty() && !page.session) out << "  오늘은 아직 집중 기록이 없어요\n";
  for (const auto& record : page.records) {
    out << "  " << record.time << " · " << record.preset << " · " << record.focused;
    if (!record.habits.empty()) out << " · " << record.habits;
    out << "\n";
  }
  if (page.session) out << "  " << page.session->started << " · " << page.session->focused << "\n";
  std::string habits;
  for (const auto& count : page.todayHabits)
    habits += (habits.empty() ? "" : " · ") + count.title + format(" %d번", count.count);
  out << "습관: " << (habits.empty() ? "없음" : habits) << "\n";
}

}  // namespace

int runFocus(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << usage << "\n";
    return 0;
  }
  std::optional<std::string> dataDir;
  if (auto problem = readDataDirOnly(args, dataDir)) {
    err << "sodamjari focus: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  RecordStore store = RecordStore::open(dataDir, false);
  if (const int status = store.complain("focus", err)) return status;
  MemoryDefaults nothing;
  Defaults& defaults = store.defaults ? static_cast<Defaults&>(*store.defaults) : nothing;
  const Calendar calendar = localCalendar();
  ManualClock clock;
  const FocusCenter focus(defaults, clock, calendar);
  clock.set(today(focus));
  print(FocusPage::make(focus, nullptr, calendar, clock.now()), out);
  return 0;
}

}  // namespace sodam
