#include "app/doctor_page.h"

#include <algorithm>

#include "coach/stretch_library.h"
#include "support/korean_format.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

constexpr int weekDays = 7;

// The share of good checks over a run of days; nothing without checks.
std::optional<double> goodShare(const std::vector<PostureLog::Day>& days, std::size_t from,
                                std::size_t to) {
  int checks = 0;
  int good = 0;
  for (std::size_t i = from; i < to && i < days.size(); ++i) {
    checks += days[i].checks;
    good += days[i].good;
  }
  if (checks == 0) return std::nullopt;
  return static_cast<double>(good) / checks;
}

std::optional<double> seatedPerDay(const PageRecords& records) {
  double minutes = 0;
  int days = 0;
  for (const auto& day : records.log.lastDays(weekDays)) {
    const auto work = records.workDay(day.date);
    if (!work || work->seated() <= 0) continue;
    minutes += work->seated();
    ++days;
  }
  if (days == 0) return std::nullopt;
  return minutes / days;
}

std::string percent(std::optional<double> share) {
  return share ? format("%lld%%", roundedInt(*share * 100)) : "—";
}

}  // namespace

DoctorPage DoctorPage::make(const PageRecords& records) {
  DoctorPage page;
  const auto& entries = records.log.entries();
  page.report = HabitReport::make(entries, records.now);
  const auto fortnight = records.log.lastDays(2 * weekDays);
  page.checkup.thisWeekGood = goodShare(fortnight, weekDays, 2 * weekDays);
  page.checkup.lastWeekGood = goodShare(fortnight, 0, weekDays);
  page.checkup.habits = static_cast<int>(page.report.habits.size());
  const auto issues = records.log.issueCounts(weekDays);
  if (!issues.empty()) page.checkup.commonestAlert = issues.front().kind;
  page.checkup.seatedMinutesPerDay = seatedPerDay(records);
  for (const auto& habit : page.report.habits) {
    page.cards.push_back({habit, HabitStats::make(habit.id, entries, records.now, records.calendar),
                          HabitStats::prescription(habit.id), HabitStats::fixes(habit.id)});
  }
  return page;
}

std::string DoctorPage::basis() const {
  return format("최근 7일 자세 확인 %d회를 바탕으로 살펴봤어요", report.samples);
}

std::optional<std::pair<std::string, std::string>> DoctorPage::notice() const {
  if (report.samples < HabitReport::fewestSamples) {
    return std::pair<std::string, std::string>{
        "기록이 조금 더 필요해요",
        format("자세 확인이 10번 넘게 쌓이면 알림까지 가지 않는 작은 습관도 찾아 드려요. 지금 "
               "%d번 쌓였어요.",
               report.samples)};
  }
  if (report.habits.empty()) {
    return std::pair<std::string, std::string>{
        "뚜렷한 습관이 없어요",
        "알림 기준에 못 미치는 작은 기울어짐까지 살펴봤는데, 한쪽으로 치우친 습관이 보이지 "
        "않아요."};
  }
  return std::nullopt;
}

std::vector<DoctorPage::Cell> DoctorPage::checkupCells() const {
  const Checkup& c = checkup;
  std::vector<Cell> cells;
  cells.push_back({"이번 주 바른 자세", percent(c.thisWeekGood),
                   c.lastWeekGood ? "지난주 " + percent(c.lastWeekGood) : "지난주 기록 없음"});
  cells.push_back({"찾은 습관", c.habits ? format("%d개", c.habits) : "뚜렷한 습관 없음", ""});
  cells.push_back(
      {"가장 잦은 알림", c.commonestAlert ? std::string(c.commonestAlert->title()) : "없음", ""});
  cells.push_back(
      {"하루 평균 앉은 시간", c.seatedMinutesPerDay ? hm(*c.seatedMinutesPerDay) : "—", ""});
  return cells;
}

std::pair<std::string, std::string> DoctorPage::opinion() const {
  if (report.habits.empty()) {
    return {"지금은 크게 치우친 곳이 없어요",
            "그래도 오래 앉아 있으면 몸은 굳어요. 50분마다 가볍게 풀어 주세요."};
  }
  const Habit& first = report.habits.front();
  return {"가장 먼저 챙길 곳은\n" + (first.tight.empty() ? first.title : first.tight.front()), ""};
}

std::vector<std::string> DoctorPage::routine() const {
  return report.stretchIds(StretchLibrary::routineCount);
}

std::vector<ChartBar> DoctorPage::dailyBars(const Card& card, const Calendar& calendar) {
  double highest = 0;
  for (const auto& day : card.stats.daily)
    highest = std::max(highest, day.value.value_or(0));
  std::vector<ChartBar> bars;
  for (const auto& day : card.stats.daily) {
    ChartBar bar;
    bar.label = shortDayLabel(calendar, day.day);
    bar.tint = levelTint(card.habit.level);
    bar.value = day.value ? format("%.1f", *day.value) : "";
    if (day.value) bar.fill = highest > 0 ? *day.value / highest : 0;
    bar.spoken = bar.label + " 평균 " + amount(day.value, card.stats.unit);
    bar.stressed = &day == &card.stats.daily.back();
    bars.push_back(std::move(bar));
  }
  return bars;
}

Theme DoctorPage::levelTint(Habit::Level level) {
  switch (level) {
    case Habit::Level::mild:
      return Theme::blue;
    case Habit::Level::watch:
      return Theme::orange;
    case Habit::Level::clear:
      return Theme::red;
  }
  return Theme::gray;
}

std::string DoctorPage::stretchTime(const Stretch& stretch) {
  return (stretch.sides ? "좌우 " : "") + format("%d초", stretch.shownSeconds());
}

std::string DoctorPage::hourText(int hour) {
  return format("%d시대", hour);
}

std::string DoctorPage::amount(std::optional<double> value, const std::string& unit) {
  return value ? format("%.1f", *value) + unit : "—";
}

}  // namespace sodam
