// Days and the companion in the simulation: the transcript tells each new
// day of a run over several and each level 도란이 reaches; the summary ends
// with its points and, for a week, a row a day and the week's insights.
#include "companion/insights.h"
#include "sim/simulation.h"
#include "support/korean_format.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {
std::string dayLabel(Date day, const Calendar& calendar) {
  const auto c = calendar.components(day);
  return format("%d월 %d일 (%s)", c.month, c.day, Fmt::weekday(day, calendar).c_str());
}
}  // namespace

// Each day's records reach the store by the start of the next, and a run
// over several days names each day as it begins.
void Simulation::watchTheDay() {
  const Date today = calendar_.startOfDay(clock_.now());
  if (shownDay_ == today) return;
  if (shownDay_) defaults_.flush();
  shownDay_ = today;
  if (scenario_.days > 1) transcript_.say("── " + dayLabel(today, calendar_) + " ──");
}

void Simulation::watchTheCompanion() {
  const Dorani& dorani = app_->dorani();
  const int level = dorani.level();
  if (shownLevel_ != 0 && level > shownLevel_) {
    transcript_.say(format("(도란이가 레벨 %d '%s'가 됐어요 · 모두 %d점)", level,
                           std::string(dorani.title()).c_str(), dorani.total()));
  }
  shownLevel_ = level;
}

void Simulation::summarizeCompanion(SimulationSummary& s) const {
  AppDelegate& app = *app_;
  Dorani& dorani = app.dorani();
  dorani.refresh();
  s.companion.today = dorani.today();
  s.companion.total = dorani.total();
  s.companion.level = dorani.level();
  s.companion.title = std::string(dorani.title());
  if (const auto next = dorani.next()) {
    s.companion.nextTitle = std::string(next->title);
    s.companion.pointsToNext = next->points - dorani.total();
  }
  if (scenario_.days < 2) return;
  for (int day = 0; day < scenario_.days; ++day) {
    const Date start = dayStart(day);
    const auto logged = app.log().day(start);
    const auto worked = app.work().day(start);
    const auto banked = dorani.banked().find(dorani.dayKey(start));
    s.days.push_back({dayLabel(start, calendar_), logged.checks, logged.ratio(),
                      worked ? worked->seated() : 0,
                      banked == dorani.banked().end() ? 0 : banked->second});
  }
  for (const auto& line : Insights::lines(app.work(), app.log(), clock_.now(), calendar_))
    s.insights.push_back(line.text);
}

void SimulationSummary::addCompanionLines(std::vector<std::string>& out) const {
  std::string line = format("도란이 오늘 %d점 · 모두 %d점 · 레벨 %d '%s'", companion.today,
                            companion.total, companion.level, companion.title.c_str());
  if (companion.nextTitle) {
    line += format(" · '%s'까지 %d점", companion.nextTitle->c_str(), companion.pointsToNext);
  }
  out.push_back(line);
  if (days.empty()) return;
  out.push_back("── 한 주 ──");
  for (const auto& day : days) {
    std::string row = day.label + format(" 확인 %d번", day.checks);
    if (day.goodShare) row += format(" · 바른 자세 %lld%%", roundedInt(*day.goodShare * 100));
    row += " · 앉은 시간 " + hm(day.seatedMinutes) + format(" · 도란이 %d점", day.points);
    out.push_back(row);
  }
  for (const auto& insight : insights)
    out.push_back("· " + insight);
}

}  // namespace sodam
