#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/pill_eyes.h"
#include "platform/defaults.h"
#include "platform/store.h"
#include "posture/issue_kind.h"
#include "posture/posture_log.h"
#include "support/calendar.h"
#include "support/clock.h"
#include "support/signal.h"
#include "worklife/work_life.h"

namespace sodam {

class Monitor;

// 도란이, the companion. It earns friendship points from how the user's days
// went, recomputed from the posture log and the work days at the end of each
// check and banked per day under "doraniDays", so a day's score only rises
// and outlives the log. The points make its level, which opens looks, and
// the state of the day makes the lines it says on its page. Main thread only.
class Dorani {
 public:
  struct Step {
    int points = 0;
    std::string_view title;
  };
  static constexpr int topLevel = 8;
  static constexpr std::array<Step, topLevel> steps{{
      {0, "처음 만난 사이"},
      {40, "아는 사이"},
      {120, "친구"},
      {250, "단짝"},
      {450, "절친"},
      {750, "둘도 없는 사이"},
      {1200, "평생 친구"},
      {1800, "전설의 단짝"},
  }};

  // Today in numbers, for the page and the lines.
  struct Today {
    int checks = 0;     // entries other than absent
    int good = 0;       // good or corrected
    int corrected = 0;  // corrected after an alert
    int away = 0;       // looking somewhere else
    int rests = 0;      // stretches, breaths and eye rests
    bool operator==(const Today&) const = default;
  };

  // One thing it could say, with the eyes it says it with.
  struct Line {
    std::string text;
    PillEyes::Mood mood = PillEyes::Mood::looking;
    bool operator==(const Line&) const = default;
  };

  // What the lines read of the posture monitor.
  struct Watch {
    bool learned = false;
    bool enabled = false;
    // The first issue of the alert that is up now.
    std::optional<IssueKind> alerting;
    static Watch of(const Monitor& monitor);
  };

  struct Ports {
    Defaults& defaults;
    Store& store;
    const PostureLog& log;
    const WorkLife& work;
    const Clock& clock;
    const Calendar& calendar;
    // Minutes of focus sessions on the calendar day of the date; unset is 0.
    std::function<double(Date day)> focusMinutes;
  };

  // The judged checks of one day in the counts the posture part needs.
  struct DayChecks {
    int judged = 0;
    int clean = 0;  // judged and not an alert
    int corrected = 0;
    void add(const PostureEntry& entry);
  };

  // Reads the banked days, refreshes them, and on the very first run marks
  // the present level as celebrated, so an old user is not cheered for
  // levels reached long ago.
  explicit Dorani(Ports ports);

  // After the points, the level or the seen level changed.
  ChangeSignal onChange;

  // Recomputes every day of the logs and banks what rose.
  void refresh();

  int total() const { return total_; }
  int today() const { return today_; }
  std::optional<Date> firstDay() const { return firstDay_; }
  const std::map<std::string, int>& banked() const { return banked_; }

  // From 1; the highest step whose points the total reaches.
  int level() const;
  std::string_view title() const;
  // The following step; none at the top.
  std::optional<Step> next() const;
  // The way from this step to the next, 0 to 1; 1 at the top.
  double progress() const;
  // A level the user has not seen on the page yet.
  bool hasNews() const;
  void markSeen();
  // Calendar days since the first record, counting both ends; 1 without any.
  int days() const;
  Today todayStats() const;

  // A day's score from its entries, the number of its stretches, its work
  // day and its minutes of focus.
  static int points(const std::vector<PostureEntry>& entries, int stretches,
                    const std::optional<WorkDay>& work, double focusMinutes = 0);
  static int points(const DayChecks& checks, int stretches, const std::optional<WorkDay>& work,
                    double focusMinutes);

  // "yyyy-MM-dd" of the date's day in the calendar's time zone, and back to
  // the start of that day; nothing for a key of another shape.
  std::string dayKey(Date date) const;
  std::optional<Date> dayFromKey(std::string_view key) const;

  // What it could say now, in order; the page shows them one at a time.
  std::vector<Line> lines(const Monitor& monitor) const;
  std::vector<Line> lines(const Watch& watch) const;

  // Replies to taps on the character, by how many came in a row.
  static constexpr std::array<std::string_view, 6> pokes{
      "헤헤, 간지러워요!",     "저 지금 열심히 지켜보는 중이에요.",
      "콕! 저도 콕!",          "같이 허리 쭉 펴요!",
      "오늘도 옆에 있을게요.", "어깨 힘 빼요. 툭!"};
  static constexpr std::array<std::string_view, 3> winks{"찡긋!", "저 귀엽죠?",
                                                         "비밀인데요, 오늘 자세 꽤 좋아요."};
  static constexpr std::array<std::string_view, 3> surprised{"깜짝이야!", "앗, 놀랐잖아요!",
                                                             "왜요 왜요?"};
  static constexpr std::array<std::string_view, 3> dizzy{"어지러워요~", "빙글빙글… 그만 콕콕!",
                                                         "별이 보여요…"};
  static constexpr std::array<std::string_view, 3> pouts{
      "흥, 삐졌어요!", "너무 많이 눌렀어요. 허리 펴면 풀어 줄게요.", "칫, 모른 척할 거예요."};
  static constexpr std::array<std::string_view, 8> tips{
      "화면 위끝이 눈높이에 오면 목이 편해요.",
      "다리를 꼬면 골반이 기울어요. 두 발을 바닥에!",
      "30분마다 어깨를 크게 으쓱했다 툭 내려 봐요.",
      "물 한 잔 마시러 일어나면 자세도 다시 시작돼요.",
      "의자 깊숙이 앉고 등받이에 살짝 기대 봐요.",
      "휴대폰은 눈높이로 들고 봐요. 고개가 고마워해요.",
      "키보드는 팔꿈치 높이가 좋아요.",
      "숨을 길게 내쉬면 어깨 힘이 저절로 빠져요."};

 private:
  Date now() const { return clock_.now(); }
  double focusOn(Date day) const { return focusMinutes_ ? focusMinutes_(day) : 0; }
  void readBanked();
  bool bankDays();
  void sumUp();
  void dayLines(std::vector<Line>& out) const;
  void restLines(std::vector<Line>& out) const;

  Defaults& defaults_;
  Store& store_;
  const PostureLog& log_;
  const WorkLife& work_;
  const Clock& clock_;
  const Calendar& calendar_;
  std::function<double(Date)> focusMinutes_;

  std::map<std::string, int> banked_;
  int total_ = 0;
  int today_ = 0;
  std::optional<Date> firstDay_;
};

}  // namespace sodam
