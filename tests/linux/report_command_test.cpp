#include "linux/report_command.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "linux/report_text.h"
#include "linux/settings_command.h"
#include "linux/simulate_command.h"
#include "support/utf8.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

int count(const std::string& text, const std::string& part) {
  int found = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++found;
  return found;
}

// The elements that close themselves or never close, and the element
// nesting every other tag makes, which must come out even. A scanner, not
// <regex>: GCC 12 warns falsely inside <regex> when optimising with
// sanitizers (GCC bug 105616).
bool tagsBalance(const std::string& html, std::string& trouble) {
  static const std::set<std::string> voids = {"meta", "br", "img", "link", "input", "hr"};
  std::vector<std::string> open;
  for (auto at = html.find('<'); at != std::string::npos; at = html.find('<', at + 1)) {
    const auto end = html.find('>', at);
    if (end == std::string::npos) break;
    std::string_view tag(html.data() + at + 1, end - at - 1);
    const bool closing = tag.starts_with('/');
    if (closing) tag.remove_prefix(1);
    std::size_t length = 0;
    while (length < tag.size() && std::isalnum(static_cast<unsigned char>(tag[length])))
      ++length;
    if (length == 0 || !std::isalpha(static_cast<unsigned char>(tag.front()))) continue;
    const std::string name(tag.substr(0, length));
    if (tag.ends_with('/') || voids.count(name)) continue;
    if (!closing) {
      open.push_back(name);
    } else if (open.empty() || open.back() != name) {
      trouble = "</" + name + "> closes " + (open.empty() ? "nothing" : "<" + open.back() + ">");
      return false;
    } else {
      open.pop_back();
    }
  }
  if (!open.empty()) trouble = "<" + open.back() + "> never closes";
  return open.empty();
}

// An event handler attribute: white space, "on", small letters, "=".
bool hasEventHandler(const std::string& html) {
  for (auto at = html.find("on"); at != std::string::npos; at = html.find("on", at + 1)) {
    if (at == 0 || !std::isspace(static_cast<unsigned char>(html[at - 1]))) continue;
    auto end = at + 2;
    while (end < html.size() && html[end] >= 'a' && html[end] <= 'z')
      ++end;
    if (end > at + 2 && end < html.size() && html[end] == '=') return true;
  }
  return false;
}

// The svg elements of the document, in order.
std::vector<std::string> charts(const std::string& html) {
  std::vector<std::string> found;
  for (auto at = html.find("<svg"); at != std::string::npos; at = html.find("<svg", at + 1))
    found.push_back(html.substr(at, html.find("</svg>", at) - at));
  return found;
}

struct Commands : ::testing::Test {
  fs::path root =
      fs::temp_directory_path() /
      ("sodam-report-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
       ::testing::UnitTest::GetInstance()->current_test_info()->name());
  fs::path data = root / "data";
  std::ostringstream out;
  std::ostringstream err;

  void SetUp() override { fs::create_directories(root); }
  void TearDown() override { fs::remove_all(root); }

  using Command = int (*)(const std::vector<std::string>&, std::ostream&, std::ostream&);
  int run(Command command, std::vector<std::string> args) {
    out.str("");
    err.str("");
    return command(args, out, err);
  }
};

TEST_F(Commands, TheReportOfASimulatedWorkdayIsOneSelfContainedPage) {
  ASSERT_EQ(run(runSimulate, {"workday", "--data-dir", data.string()}), 0) << err.str();
  const fs::path file = root / "report.html";
  ASSERT_EQ(run(runReport, {"--data-dir", data.string(), "--html", file.string()}), 0) << err.str();
  EXPECT_NE(out.str().find("시간대별 바른 자세"), std::string::npos);
  EXPECT_NE(out.str().find("리포트를 저장했어요: " + file.string()), std::string::npos);

  std::ifstream stream(file);
  const std::string html((std::istreambuf_iterator<char>(stream)), {});
  EXPECT_EQ(html.rfind("<!DOCTYPE html>\n<html lang=\"ko\">", 0), 0u);
  EXPECT_NE(html.find("<meta charset=\"utf-8\">"), std::string::npos);
  std::string trouble;
  EXPECT_TRUE(tagsBalance(html, trouble)) << trouble;
  // Nothing is fetched and nothing runs: it opens the same with no network.
  for (const char* outside : {"<script", "<link", "<img", "<iframe", "src=", "href=", "url(",
                              "@import", "http:", "https:"}) {
    EXPECT_EQ(count(html, outside), 0) << outside;
  }
  EXPECT_FALSE(hasEventHandler(html));

  const auto svgs = charts(html);
  ASSERT_EQ(svgs.size(), 4u);
  for (const auto& svg : svgs) {
    EXPECT_NE(svg.find("role=\"img\""), std::string::npos);
    EXPECT_NE(svg.find("aria-label=\""), std::string::npos);
  }
  // The day runs from 08:55 to 18:45: one column for each hour 8 to 18,
  // one for each of seven days, one row for each issue the alerts named.
  EXPECT_EQ(count(svgs[0], "<rect"), 11);
  EXPECT_EQ(count(svgs[1], "<rect"), 7);
  EXPECT_EQ(count(svgs[1], "class=\"bar empty\""), 6);
  EXPECT_EQ(count(svgs[2], "<rect"), 7);
  EXPECT_EQ(count(svgs[3], "class=\"bar coral\""), 2);
  EXPECT_NE(svgs[3].find("거북목"), std::string::npos);
  EXPECT_GE(count(html, "<li>"), 1);
}

TEST_F(Commands, NoRecordsIsNotAnErrorButAStoreThatCantBeReadIs) {
  EXPECT_EQ(run(runReport, {"week", "--data-dir", data.string()}), 0);
  EXPECT_EQ(out.str(), "아직 기록이 없어요\n");
  EXPECT_FALSE(fs::exists(data)) << "reading made the folder";

  fs::create_directories(data);
  std::ofstream(data / "settings.db") << "{\"enabled\": tru";
  EXPECT_EQ(run(runReport, {"--data-dir", data.string()}), 1);
  EXPECT_NE(err.str().find("기록 파일이 망가져 읽을 수 없어요"), std::string::npos) << err.str();
  EXPECT_TRUE(out.str().empty());
  // The damaged document was put aside whole, for the user to look at.
  EXPECT_TRUE(fs::exists(data / "settings.db.damaged-1"));
  std::ofstream(data / "settings.db") << "[]";
  EXPECT_EQ(run(runSettings, {"list", "--data-dir", data.string()}), 1);

  for (const auto& args : std::vector<std::vector<std::string>>{
           {"month"}, {"today", "week"}, {"--html"}, {"--colour", "red"}}) {
    EXPECT_EQ(run(runReport, args), 2) << args.front();
    EXPECT_NE(err.str().find("usage: sodamjari report"), std::string::npos);
  }
}

TEST_F(Commands, SettingsChangeWhatTheSettingsPageChangesAndRefuseTheRest) {
  const std::string dir = data.string();
  ASSERT_EQ(run(runSettings, {"--data-dir", dir}), 0);
  EXPECT_NE(out.str().find("checkMode              interval  (interval|live)"), std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("보안 잠금: 보안 잠금을 걸지 못했어요"), std::string::npos);
  EXPECT_FALSE(fs::exists(data)) << "listing made the folder";

  ASSERT_EQ(run(runSettings, {"set", "checkMode", "live", "--data-dir", dir}), 0) << err.str();
  EXPECT_EQ(out.str(), "checkMode = live (실시간)\n");
  ASSERT_EQ(run(runSettings, {"set", "workEndMinutes", "17:45", "--data-dir", dir}), 0);
  ASSERT_EQ(run(runSettings, {"get", "checkMode", "--data-dir", dir}), 0);
  EXPECT_EQ(out.str(), "live\n");
  ASSERT_EQ(run(runSettings, {"get", "workEndMinutes", "--data-dir", dir}), 0);
  EXPECT_EQ(out.str(), "17:45\n");

  struct Refusal {
    std::vector<std::string> args;
    std::string message;
  };
  const Refusal refusals[] = {
      {{"set", "checkMode", "fast"}, "checkMode takes interval|live, not \"fast\""},
      {{"set", "workEndMinutes", "24:00"}, "workEndMinutes takes 00:00-23:59, not \"24:00\""},
      {{"set", "enabled", "1"}, "enabled takes off|on, not \"1\""},
      {{"get", "baseline"}, "unknown setting \"baseline\"; the settings are enabled, checkMode"},
      {{"set", "checkMode"}, "say list, get KEY or set KEY VALUE"},
      {{"remove", "checkMode"}, "say list, get KEY or set KEY VALUE"},
  };
  for (auto refusal : refusals) {
    refusal.args.insert(refusal.args.end(), {"--data-dir", dir});
    EXPECT_EQ(run(runSettings, refusal.args), 2) << refusal.message;
    EXPECT_NE(err.str().find(refusal.message), std::string::npos) << err.str();
  }
  ASSERT_EQ(run(runSettings, {"get", "checkMode", "--data-dir", dir}), 0);
  EXPECT_EQ(out.str(), "live\n");
}

TEST(ReportText, BarsFillInEighthsAndTheColumnsLineUp) {
  EXPECT_EQ(blockBar(0.5, 4), "██  ");
  EXPECT_EQ(blockBar(1.0 / 32, 4), "▏   ");
  EXPECT_EQ(blockBar(1.7, 2), "██");
  EXPECT_EQ(blockBar(0, 3), "   ");

  // A week of two days a day apart, one with records, one without.
  MemoryDefaults defaults;
  Calendar calendar(TimeZone::fixed(9 * 3600));
  ManualClock clock(calendar.date({2026, 6, 3, 9, 0, 0, 0}).value());
  PostureLog log(defaults, clock, calendar);
  for (int i = 0; i < 12; ++i) {
    log.record(i % 4 == 0 ? PostureEntry::Kind::alert : PostureEntry::Kind::good,
               i % 4 == 0 ? std::vector<IssueKind>{IssueKind::headTilt} : std::vector<IssueKind>{});
    clock.advance(i == 5 ? 86'400 - 3600 : 600);
  }
  const std::vector<WorkDay> days;
  const auto page = ReportPage::make({log, days, calendar, clock.now()});
  std::set<std::size_t> percentColumns;
  for (const auto& line : reportLines(page, ReportPage::Span::week, calendar)) {
    const auto at = line.find('%');
    if (at != std::string::npos && line.rfind("  ", 0) == 0) {
      percentColumns.insert(utf8::columns(line.substr(0, at)));
    }
  }
  EXPECT_EQ(percentColumns.size(), 1u) << "the shares stand in one column";
}

}  // namespace
}  // namespace sodam
