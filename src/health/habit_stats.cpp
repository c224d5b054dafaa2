#include "health/habit_stats.h"

#include <array>
#include <cmath>

namespace sodam {

namespace {

struct Sample {
  Date t;
  double value;
};

struct Mean {
  double sum = 0;
  int count = 0;
  void add(double v) {
    sum += v;
    ++count;
  }
  std::optional<double> value() const {
    return count ? std::optional<double>(sum / count) : std::nullopt;
  }
};

std::optional<double> field(std::optional<float> v) {
  return v ? std::optional<double>(*v) : std::nullopt;
}

struct CardText {
  std::string_view id;
  std::vector<std::string> prescription;
  std::vector<std::string> fixes;
};

const std::vector<CardText>& cards() {
  static const std::vector<CardText> table{
      {"tilt",
       {"목 옆 늘리기: 짧아진 쪽이 늘어나게 30초씩 2번, 하루 3번", "목 대각선 늘리기: 25초씩 2번"},
       {"화면이 몸 정면 한가운데 오게 놓아요", "자주 보는 창을 화면 가운데로 옮겨요",
        "전화를 어깨에 끼우고 통화하지 않아요"}},
      {"forward",
       {"턱 당기기: 5초 버티기 10번, 하루 3번", "가슴 열기: 30초씩 2번"},
       {"화면 위끝을 눈높이 가까이 올려요(거치대나 책)", "엉덩이를 등받이 끝까지 붙여 앉아요",
        "글자를 키워 몸이 화면 쪽으로 쏠리지 않게 해요"}},
      {"slouch",
       {"앉아서 고양이 자세: 천천히 8번", "날개뼈 모으기: 3초 버티기 12번씩 2세트"},
       {"의자 깊숙이 앉고 허리 뒤에 쿠션을 대요", "발바닥 전체를 바닥에 붙여요",
        "팔걸이를 팔꿈치 높이에 맞춰요"}},
      {"nod",
       {"하늘 보기: 20초씩 3번", "턱 당기기: 5초 버티기 10번"},
       {"노트북을 받침대로 올려 화면 위끝을 눈높이에 맞춰요",
        "보면서 치는 서류는 화면 옆 거치대에 세워요"}},
      {"shoulder",
       {"어깨 으쓱 풀기: 10번씩 2세트", "목 대각선 늘리기: 올라간 쪽 25초씩 2번"},
       {"마우스를 몸 가까이 두고 팔꿈치를 몸 옆에 붙여요",
        "책상이 팔꿈치보다 높지 않게 의자를 올려요", "가방을 한쪽 어깨로만 메지 않아요"}},
      {"lean",
       {"옆구리 늘리기: 짧아진 쪽 25초씩 2번", "상체 비틀기: 양쪽 25초"},
       {"팔걸이 한쪽에만 기대지 않아요", "다리를 꼬지 않아요", "엉덩이를 의자 한가운데 놓아요"}},
      {"close",
       {"20초 먼 곳 보기: 20분마다", "눈을 감고 10초 쉬기: 1시간마다"},
       {"화면과 팔 길이만큼(50~70센티) 떨어져 앉아요", "⌘ + 로 글자를 키워요"}},
  };
  return table;
}

const CardText* cardOf(std::string_view id) {
  for (const auto& card : cards())
    if (card.id == id) return &card;
  return nullptr;
}

std::vector<Sample> pointsOf(std::string_view id, const std::deque<PostureEntry>& entries) {
  std::vector<Sample> points;
  for (const auto& e : entries) {
    if (!e.judged() || !e.m) continue;
    if (auto v = HabitStats::value(id, *e.m)) points.push_back({e.t, *v});
  }
  return points;
}

std::optional<int> worstHour(const std::vector<Sample>& points, const Calendar& calendar) {
  std::array<Mean, 24> hours{};
  for (const auto& p : points)
    hours[calendar.hour(p.t)].add(p.value);
  std::optional<int> worst;
  for (int h = 0; h < 24; ++h) {
    if (hours[h].count < HabitStats::fewestInAnHour) continue;
    if (!worst || *hours[h].value() > *hours[*worst].value()) worst = h;
  }
  return worst;
}

}  // namespace

std::optional<double> HabitStats::value(std::string_view id, const Snapshot& s) {
  if (id == "tilt") return std::abs(s.tilt);
  if (id == "forward") return field(s.forward);
  if (id == "slouch") return field(s.drop);
  if (id == "nod") return field(s.nod);
  if (id == "shoulder" && s.shoulder) return std::abs(*s.shoulder);
  if (id == "lean" && s.lean) return std::abs(*s.lean);
  if (id == "close") return s.close;
  return std::nullopt;
}

HabitStats HabitStats::make(std::string_view id, const std::deque<PostureEntry>& entries, Date now,
                            const Calendar& calendar) {
  const std::vector<Sample> points = pointsOf(id, entries);
  HabitStats stats;
  const Date today = calendar.startOfDay(now);
  for (int back = dailyDays - 1; back >= 0; --back) {
    const Date day = calendar.startOfDay(calendar.addingDays(today, -back).value_or(today));
    Mean mean;
    for (const auto& p : points)
      if (calendar.isSameDay(p.t, day)) mean.add(p.value);
    stats.daily.push_back({day, mean.value()});
  }
  Mean thisWeek;
  Mean lastWeek;
  for (const auto& p : points) {
    const double age = now - p.t;
    if (age < weekSeconds) {
      thisWeek.add(p.value);
    } else if (age < 2 * weekSeconds) {
      lastWeek.add(p.value);
    }
  }
  stats.thisWeek = thisWeek.value();
  stats.lastWeek = lastWeek.value();
  stats.peakHour = worstHour(points, calendar);
  stats.unit = id == "tilt" || id == "nod" || id == "shoulder" ? "도" : "센티";
  return stats;
}

std::vector<std::string> HabitStats::prescription(std::string_view id) {
  const CardText* card = cardOf(id);
  return card ? card->prescription : std::vector<std::string>{};
}

std::vector<std::string> HabitStats::fixes(std::string_view id) {
  const CardText* card = cardOf(id);
  return card ? card->fixes : std::vector<std::string>{};
}

}  // namespace sodam
