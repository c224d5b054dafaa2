#include "linux/report_command.h"

#include <fstream>
#include <iostream>

#include "app/report_page.h"
#include "linux/record_store.h"
#include "linux/report_html.h"
#include "linux/report_text.h"
#include "support/utf8.h"
#include "worklife/work_life.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari report [today|week] [--data-dir DIR] [--html FILE]\n"
    "today (the default) shows today hour by hour, week the last seven days;\n"
    "--html also writes the whole report as one HTML file.";

constexpr const char* nothingYet = "아직 기록이 없어요";

struct Request {
  ReportPage::Span span = ReportPage::Span::today;
  std::optional<std::string> dataDir;
  std::optional<std::string> html;
};

// The problem with the arguments, if any.
std::optional<std::string> readArguments(const std::vector<std::string>& args, Request& request) {
  bool spanGiven = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--data-dir") {
      if (auto problem = takeDataDir(args, i, request.dataDir)) return problem;
    } else if (arg == "--html") {
      if (i + 1 >= args.size()) return arg + " needs a value";
      request.html = args[++i];
    } else if ((arg == "today" || arg == "week") && !spanGiven) {
      request.span = arg == "week" ? ReportPage::Span::week : ReportPage::Span::today;
      spanGiven = true;
    } else if (arg.rfind("--", 0) == 0) {
      return "unknown option " + utf8::printable(arg);
    } else {
      return "the report is today or week, not \"" + utf8::printable(arg) + "\"";
    }
  }
  return std::nullopt;
}

bool writeFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  return file && (file << text) && file.flush();
}

}  // namespace

int runReport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << usage << "\n";
    return 0;
  }
  Request request;
  if (auto problem = readArguments(args, request)) {
    err << "sodamjari report: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  RecordStore store = RecordStore::open(request.dataDir, false);
  if (const int status = store.complain("report", err)) return status;
  if (store.state == RecordStore::State::empty) {
    out << nothingYet << "\n";
    return 0;
  }
  const Calendar calendar = localCalendar();
  ManualClock clock(SystemClock().now());
  const PostureLog log(*store.defaults, clock, calendar);
  const std::vector<WorkDay> days = WorkLife::storedDays(*store.defaults);
  if (auto newest = newestRecord(log, days); newest && clock.now() < *newest) clock.set(*newest);
  const ReportPage page = ReportPage::make({log, days, calendar, clock.now()});
  if (page.empty()) {
    out << nothingYet << "\n";
    return 0;
  }
  for (const auto& line : reportLines(page, request.span, calendar))
    out << line << "\n";
  if (request.html) {
    if (!writeFile(*request.html, reportHtml(page, calendar))) {
      err << "sodamjari report: cannot write " << *request.html << "\n";
      return 1;
    }
    out << "\n리포트를 저장했어요: " << *request.html << "\n";
  }
  return 0;
}

}  // namespace sodam
