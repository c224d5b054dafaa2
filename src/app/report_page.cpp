#include "app/report_page.h"

#include <algorithm>
#include <cmath>

#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {

// A gap between today and the days before it that is worth a sentence.
constexpr double trendPoints = 5;
// A sitting span long enough to be worth a sentence.
constexpr double longSittingMinutes = 50;

// The subject particle the word's last syllable takes: "이" after a final
// consonant, "가" after a vowel.
std::string withSubject(std::string_view word) {
  if (word.size() >= 3) {
    const auto* tail = reinterpret_cast<const unsigned char*>(word.data() + word.size() - 3);
    const unsigned code = (tail[0] & 0x0Fu) << 12 | (tail[1] & 0x3Fu) << 6 | (tail[2] & 0x3Fu);
    if ((tail[0] & 0xF0u) == 0xE0u && code >= 0xAC00 && code <= 0xD7A3) {
      return std::string(word) + ((code - 0xAC00) % 28 == 0 ? "가" : "이");
    }
  }
  return std::string(word) + "이";
}

ReportDay reportDay(const PageRecords& records, const PostureLog::Day& posture) {
  ReportDay day{posture.date, posture.checks, posture.good, posture.alerts};
  if (auto work = records.workDay(posture.date)) {
    day.seatedMinutes = work->seated();
    day.breaks = work->breaks();
    day.longestMinutes = work->longest();
  }
  return day;
}

// Today against the other days of the week that had enough checks.
std::optional<std::string> trendInsight(const ReportPage& page) {
  const auto today = page.today.goodShare();
  if (!today || page.today.checks < ReportPage::telling) return std::nullopt;
  double sum = 0;
  int days = 0;
  for (std::size_t i = 0; i + 1 < page.week.size(); ++i) {
    const auto share = page.week[i].goodShare();
    if (!share || page.week[i].checks < ReportPage::telling) continue;
    sum += *share;
    ++days;
  }
  if (days == 0) return std::nullopt;
  const double points = std::round((*today - sum / days) * 100);
  if (std::abs(points) < trendPoints) return std::nullopt;
  return format("오늘 바른 자세는 지난 며칠보다 %.0f%%p %s", std::abs(points),
                points > 0 ? "높아요" : "낮아요");
}

// The one hour with the best share among those with enough checks, and the
// one hour with the most alerts; a tie names no hour.
void hourInsights(const ReportPage& page, std::vector<std::string>& out) {
  std::optional<int> best;
  std::optional<int> worst;
  double bestShare = -1;
  double lowestShare = 2;
  int mostBad = 0;
  bool bestTied = false;
  bool worstTied = false;
  for (const auto& hour : page.hours) {
    const int checks = hour.good + hour.bad;
    if (checks >= ReportPage::telling) {
      const double share = static_cast<double>(hour.good) / checks;
      bestTied = share == bestShare || (bestTied && share < bestShare);
      if (share > bestShare) best = hour.hour;
      bestShare = std::max(bestShare, share);
      lowestShare = std::min(lowestShare, share);
    }
    if (hour.bad > 0) {
      worstTied = hour.bad == mostBad || (worstTied && hour.bad < mostBad);
      if (hour.bad > mostBad) worst = hour.hour;
      mostBad = std::max(mostBad, hour.bad);
    }
  }
  if (best && !bestTied && lowestShare < bestShare) {
    out.push_back("오늘은 " + spokenHour(*best) + "대에 가장 바르게 앉았어요");
  }
  if (worst && !worstTied) {
    out.push_back(spokenHour(*worst) + "대에 자세가 가장 자주 흐트러졌어요");
  }
}

std::vector<std::string> insightsOf(const ReportPage& page) {
  std::vector<std::string> out;
  if (page.today.checks >= ReportPage::telling && page.today.alerts == 0) {
    out.push_back("오늘은 알림 없이 바르게 앉았어요");
  }
  if (auto trend = trendInsight(page)) out.push_back(*trend);
  hourInsights(page, out);
  if (!page.weekIssues.empty()) {
    const auto& top = page.weekIssues.front();
    out.push_back(format("최근 7일 동안 %s 가장 자주 보였어요 (%d번)",
                         withSubject(top.kind.title()).c_str(), top.count));
  }
  if (page.today.longestMinutes >= longSittingMinutes) {
    out.push_back("오늘 가장 길게 이어 앉은 시간은 " + hm(page.today.longestMinutes) + "이에요");
  }
  return out;
}

}  // namespace

std::optional<double> ReportDay::goodShare() const {
  if (checks == 0) return std::nullopt;
  return static_cast<double>(good) / checks;
}

ReportPage ReportPage::make(const PageRecords& records) {
  ReportPage page;
  page.today = reportDay(records, records.log.day(records.now));
  page.hours = records.log.hourly(records.now);
  page.todaysIssues = records.todaysIssues();
  page.corrections = records.todaysCorrections();
  for (const auto& day : records.log.lastDays(weekDays))
    page.week.push_back(reportDay(records, day));
  page.weekIssues = records.log.issueCounts(weekDays);
  page.insights = insightsOf(page);
  return page;
}

bool ReportPage::empty() const {
  return std::all_of(week.begin(), week.end(), [](const ReportDay& day) { return day.empty(); });
}

int ReportPage::weekChecks() const {
  int checks = 0;
  for (const auto& day : week)
    checks += day.checks;
  return checks;
}

std::optional<double> ReportPage::weekGoodShare() const {
  int good = 0;
  for (const auto& day : week)
    good += day.good;
  const int checks = weekChecks();
  if (checks == 0) return std::nullopt;
  return static_cast<double>(good) / checks;
}

double ReportPage::weekSeatedMinutes() const {
  double minutes = 0;
  for (const auto& day : week)
    minutes += day.seatedMinutes;
  return minutes;
}

int ReportPage::weekSeatedDays() const {
  return static_cast<int>(std::count_if(
      week.begin(), week.end(), [](const ReportDay& day) { return day.seatedMinutes > 0; }));
}

std::optional<std::pair<int, int>> ReportPage::checkedHours() const {
  std::optional<std::pair<int, int>> range;
  for (const auto& hour : hours) {
    if (hour.good + hour.bad == 0) continue;
    if (!range) range = std::pair{hour.hour, hour.hour};
    range->second = hour.hour;
  }
  return range;
}

std::pair<int, int> ReportPage::chartHours() const {
  constexpr int firstHour = 9;
  constexpr int lastHour = 18;
  const auto checked = checkedHours();
  if (!checked) return {firstHour, lastHour};
  return {std::min(checked->first, firstHour), std::max(checked->second, lastHour)};
}

double ReportPage::chartMinutes() const {
  double most = fullDayMinutes;
  for (const auto& day : week)
    most = std::max(most, day.seatedMinutes);
  return most;
}

ReportPage::Grade ReportPage::grade(double share) {
  if (share >= goodShare) return Grade::good;
  if (share >= fairShare) return Grade::fair;
  return Grade::poor;
}

std::string percentText(std::optional<double> share) {
  if (!share) return "—";
  return format("%.0f%%", std::round(*share * 100));
}

std::string shortDayLabel(const Calendar& calendar, Date date) {
  const auto c = calendar.components(date);
  return format("%d/%d %s", c.month, c.day, Fmt::weekday(date, calendar).c_str());
}

std::string longDayLabel(const Calendar& calendar, Date date) {
  const auto c = calendar.components(date);
  return format("%d월 %d일 %s요일", c.month, c.day, Fmt::weekday(date, calendar).c_str());
}

std::string spokenHour(int hour) {
  return Fmt::hour(hour);
}

}  // namespace sodam
