// What 도란이 says on its page: the state of the day and the clock, in the
// order of the rules below, each rule adding its line when its test holds.
#include <algorithm>
#include <array>

#include "companion/dorani.h"
#include "companion/insights.h"
#include "posture/monitor.h"
#include "support/korean_format.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

using Mood = PillEyes::Mood;
using Line = Dorani::Line;

constexpr int longStreakMinutes = 50;
constexpr int lineMinJudged = 5;
constexpr double proudShare = 0.85;
constexpr double worriedShare = 0.6;
constexpr int manyCorrections = 2;
constexpr int manyAway = 2;
constexpr double longSeatedMinutes = 120;
constexpr double longFocusMinutes = 50;
constexpr std::size_t insightLines = 2;

bool lateAt(int hour) {
  return hour == 23 || hour < 5;
}

Line byHour(int hour) {
  if (hour >= 5 && hour <= 10) return {"좋은 아침이에요! 오늘도 허리 펴고 시작해요.", Mood::happy};
  if (hour >= 11 && hour <= 13) {
    return {"점심 먹고 나면 자세가 무너지기 쉬워요. 제가 잘 볼게요.", Mood::looking};
  }
  if (hour >= 14 && hour <= 17)
    return {"오후엔 어깨가 굳기 쉬워요. 가끔 으쓱해 봐요.", Mood::looking};
  if (hour >= 18 && hour <= 22) return {"오늘 하루도 수고했어요. 조금만 더 바르게!", Mood::happy};
  return {"늦게까지 함께해요. 대신 목은 꼿꼿하게!", Mood::sleepy};
}

// Today's judged checks, their good share and the issue named most often.
struct DayPosture {
  int judged = 0;
  int good = 0;
  std::array<int, IssueKind::count> issues{};

  std::optional<IssueKind> mostSeen() const {
    const auto top = std::max_element(issues.begin(), issues.end());
    if (*top == 0) return std::nullopt;
    return IssueKind(static_cast<IssueKind::Value>(top - issues.begin()));
  }
};

DayPosture postureOf(const PostureLog& log, Date now, const Calendar& calendar) {
  DayPosture day;
  for (const auto& entry : log.entries()) {
    if (!calendar.isSameDay(entry.t, now)) continue;
    for (const auto kind : entry.i)
      ++day.issues[static_cast<std::size_t>(kind)];
    if (!entry.judged()) continue;
    ++day.judged;
    if (entry.k == PostureEntry::Kind::good || entry.k == PostureEntry::Kind::corrected) {
      ++day.good;
    }
  }
  return day;
}

}  // namespace

Dorani::Watch Dorani::Watch::of(const Monitor& monitor) {
  Watch watch;
  watch.learned = monitor.baseline().has_value();
  watch.enabled = monitor.enabled();
  const auto& reading = monitor.reading();
  if (monitor.phase() == Monitor::Phase::alerting && reading && !reading->issues.empty()) {
    watch.alerting = reading->issues.front().kind;
  }
  return watch;
}

std::vector<Line> Dorani::lines(const Monitor& monitor) const {
  return lines(Watch::of(monitor));
}

std::vector<Line> Dorani::lines(const Watch& watch) const {
  if (!watch.learned) {
    return {{"안녕하세요, 저는 도란이예요! 바른 자세를 먼저 알려 주면 옆에서 같이 지켜볼게요.",
             Mood::curious}};
  }
  if (!watch.enabled) {
    return {{"지금은 쉬는 중이에요. 자세 확인을 켜 주면 다시 지켜볼게요. 쿨쿨…", Mood::sleep}};
  }
  std::vector<Line> out;
  if (watch.alerting) {
    const IssueKind kind = *watch.alerting;
    out.push_back({fill("앗, {title}! {fix}. 금방 풀릴 거예요.",
                        {{"title", kind.title()}, {"fix", kind.fix()}}),
                   Mood::focus});
  }
  const int streak = work_.streakMinutes();
  if (streak >= longStreakMinutes) {
    out.push_back(
        {format("벌써 %d분째 앉아 있어요. 같이 일어나서 기지개 켜요!", streak), Mood::sleepy});
  }
  const int hour = calendar_.hour(now());
  if (lateAt(hour)) {
    out.push_back({"밤이 깊었어요. 저도 졸려요… 오늘은 여기까지 할까요?", Mood::sleepy});
  }
  dayLines(out);
  restLines(out);
  const auto insights = Insights::lines(work_, log_, now(), calendar_);
  for (std::size_t i = 0; i < std::min(insights.size(), insightLines); ++i)
    out.push_back({insights[i].text, Mood::looking});
  if (const auto following = next()) {
    out.push_back(
        {fill("'{title}'까지 {n}점 남았어요. 같이 힘내요!",
              {{"title", following->title}, {"n", std::to_string(following->points - total_)}}),
         Mood::happy});
  }
  const auto ordinal = static_cast<std::size_t>(calendar_.ordinalDay(now()));
  out.push_back({std::string(tips[ordinal % tips.size()]), Mood::looking});
  out.push_back(byHour(hour));
  return out;
}

// The posture of the day: proud of a good share, worried by a poor one, and
// glad of corrections; curious where the eyes went.
void Dorani::dayLines(std::vector<Line>& out) const {
  const DayPosture day = postureOf(log_, now(), calendar_);
  if (day.judged >= lineMinJudged) {
    const double ratio = static_cast<double>(day.good) / day.judged;
    if (ratio >= proudShare) {
      out.push_back(
          {format("오늘 바른 자세가 %lld%%예요. 제가 다 뿌듯해요!", roundedInt(ratio * 100)),
           Mood::love});
    }
    const auto kind = day.mostSeen();
    if (ratio < worriedShare && kind) {
      out.push_back({fill("오늘은 {title}이 자주 보였어요. {fix}, 같이 해 봐요.",
                          {{"title", kind->title()}, {"fix", kind->fix()}}),
                     Mood::focus});
    }
  }
  const Today stats = todayStats();
  if (stats.corrected >= manyCorrections) {
    out.push_back(
        {format("알림 받고 %d번이나 바로 고쳤어요. 멋져요!", stats.corrected), Mood::happy});
  }
  if (stats.away > manyAway) {
    out.push_back(
        {format("오늘 %d번은 노트북 말고 다른 곳을 보고 있었어요. 휴대폰은 눈높이로 들고 봐요!",
                stats.away),
         Mood::curious});
  }
}

// Rests and time: stretches done or owed, and the minutes of focus.
void Dorani::restLines(std::vector<Line>& out) const {
  const int stretches = log_.stretchesToday();
  const double seated = work_.today().seated();
  if (stretches >= 1) {
    out.push_back(
        {format("오늘 스트레칭을 %d번 했어요. 몸이 한결 가볍죠?", stretches), Mood::happy});
  } else if (seated >= longSeatedMinutes) {
    out.push_back({"오늘 " + hm(seated) + " 앉았는데 스트레칭은 아직이에요. 3분만 같이 해요!",
                   Mood::curious});
  }
  const double focused = focusOn(calendar_.startOfDay(now()));
  if (focused >= longFocusMinutes) {
    out.push_back({"오늘 " + hm(focused) + " 집중했어요. 꾸준함이 최고예요!", Mood::happy});
  }
}

}  // namespace sodam
