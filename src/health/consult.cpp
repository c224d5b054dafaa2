#include "health/consult.h"

#include <array>

namespace sodam {

namespace {

using Area = Consult::Area;
using Sore = Consult::Side;
using Feeling = Consult::Feeling;
using When = Consult::When;

struct Named {
  std::string_view name;
  std::string_view raw;
};

constexpr std::array<Named, 8> areaNames{{
    {"neckBack", "목 뒤·뒤통수"},
    {"neckSide", "목 옆·어깨 위"},
    {"blades", "날개뼈 사이"},
    {"lowBack", "허리"},
    {"head", "두통"},
    {"eyes", "눈 피로"},
    {"wrist", "손목·팔"},
    {"jaw", "턱"},
}};
constexpr std::array<Named, 3> sideNames{{
    {"left", "왼쪽"},
    {"right", "오른쪽"},
    {"both", "양쪽·가운데"},
}};
constexpr std::array<Named, 3> feelingNames{{
    {"stiff", "뻐근하고 뭉쳐요"},
    {"tingle", "찌릿하거나 저려요"},
    {"ache", "쑤시고 욱신거려요"},
}};
constexpr std::array<Named, 4> whenNames{{
    {"sitting", "오래 앉아 있을 때"},
    {"morning", "아침에 일어날 때"},
    {"moving", "움직이거나 돌릴 때"},
    {"always", "가만히 있어도 계속"},
}};

template <class E, std::size_t N>
const Named& named(const std::array<Named, N>& table, E value) {
  return table[static_cast<std::size_t>(value)];
}

// What an area says before the habits, the feeling and the time add to it.
struct AreaRules {
  std::string cause;
  std::vector<std::string> stretches;
  std::vector<std::string> tips;
  std::string warning;
};

AreaRules baseOf(Area area) {
  switch (area) {
    case Area::neckBack:
      return {
          "목 뒤와 뒤통수 아래는 머리 무게를 붙잡는 근육이 모인 곳이라, 머리가 앞으로 나오거나 "
          "고개를 숙일수록 쉽게 뭉쳐요.",
          {"chinTuck", "neckFlex", "neckExt"},
          {},
          "팔이나 손가락까지 저리거나 힘이 빠지면 목 신경이 눌렸을 수 있어요. "
          "정형외과·재활의학과 진료를 받아 보세요."};
    case Area::neckSide:
      return {"목 옆과 어깨 위는 한쪽으로 기울거나 어깨가 올라간 자세가 오래되면 뭉치는 곳이에요.",
              {"neckSide", "levator", "shrug"},
              {"마우스와 키보드를 몸 가까이 두고, 팔꿈치를 책상이나 팔걸이에 기대 어깨가 들리지 "
               "않게 해 보세요."},
              "팔로 저림이 내려가거나 손에 힘이 빠지면 진료가 필요해요."};
    case Area::blades:
      return {
          "날개뼈 사이는 어깨가 앞으로 말리면 늘어난 채 버티느라 뻐근해지는 곳이에요. "
          "뭉쳤다기보다 지쳐 있는 경우가 많아요.",
          {"chest", "squeeze", "catCow"},
          {"늘어난 근육은 주무르기보다 가슴을 늘리고 등을 쓰는 운동이 더 효과적이에요."},
          "숨 쉴 때 찌르듯 아프거나 가슴 통증·식은땀이 함께 있으면 바로 진료를 받으세요."};
    case Area::lowBack:
      return {
          "오래 앉아 있으면 허리 앞뒤 근육이 굳고, 등이 굽거나 한쪽으로 기대면 허리 한쪽에 "
          "부담이 몰려요.",
          {"catCow", "twist", "sideBend", "reach"},
          {"엉덩이를 의자 끝까지 붙이고, 50분에 한 번은 일어나 걸어 주세요."},
          "다리로 저림이 내려가거나 힘이 빠지면, 대소변이 불편하면 바로 진료를 받으세요."};
    case Area::head:
      return {"뒤통수나 관자놀이가 조이는 두통은 목 뒤·어깨 근육의 긴장과 관련이 많아요.",
              {"chinTuck", "neckFlex", "eyes"},
              {},
              "갑자기 생긴 아주 심한 두통, 말이 어눌하거나 한쪽 힘이 빠지거나 시야가 이상하면 "
              "바로 응급실로 가세요."};
    case Area::eyes:
      return {
          "화면을 가까이 오래 보면 초점을 맞추는 눈 근육이 쉬지 못하고, 깜빡임도 줄어 눈이 "
          "말라요.",
          {"eyes"},
          {"20분마다 6미터 너머를 20초 보고, 화면 밝기를 방 밝기에 맞춰 주세요."},
          "시야가 흐려지거나 눈 통증·충혈이 계속되면 안과 진료를 받으세요."};
    case Area::wrist:
      return {
          "타자와 마우스를 오래 쓰면 팔뚝 근육과 힘줄이 계속 일해 손목과 팔꿈치 바깥쪽이 아플 "
          "수 있어요.",
          {"wrist", "shrug"},
          {"손목이 꺾이지 않게 키보드를 팔꿈치 높이에 두고, 손목 받침에 손바닥 아래쪽을 기대 "
           "보세요."},
          "엄지부터 약지까지 저리고 밤에 저려서 깬다면 손목터널증후군일 수 있어요. 진료를 받아 "
          "보세요."};
    case Area::jaw:
      return {
          "머리가 앞으로 나오면 턱 주변 근육도 함께 긴장해 턱이 뻐근해질 수 있어요. 이를 "
          "악무는 습관도 흔한 원인이에요.",
          {"chinTuck", "neckSide"},
          {"윗니와 아랫니를 살짝 떼고, 혀를 입천장에 가볍게 붙여 두는 연습을 해 보세요."},
          "입을 벌릴 때 걸리거나 소리와 통증이 함께 있으면 치과·구강내과 진료를 받아 보세요."};
  }
  return {};
}

// The tilt read against the sore side: the side the head tips to is short,
// the far side is tired.
std::optional<std::string> tiltCause(const Habit& tilt, std::optional<Sore> side) {
  if (side != Sore::left && side != Sore::right) return std::nullopt;
  const std::string pain(named(sideNames, *side).raw);
  const bool tiltRight = tilt.title.find("오른쪽") != std::string::npos;
  if ((*side == Sore::right) == tiltRight) {
    return "고개가 " + pain + "으로 기우는 습관이 있어서, " + pain +
           " 근육이 짧아진 채 굳어 뭉쳤을 가능성이 커요.";
  }
  const std::string tipped = tiltRight ? "오른쪽" : "왼쪽";
  return "고개가 " + tipped + "으로 기우는 습관이 있어서, 반대편인 " + pain +
         " 목이 늘어난 채 머리를 붙잡느라 지쳤을 가능성이 커요.";
}

// The causes the habits on record add to an area's own.
std::vector<std::string> habitCauses(Area area, std::optional<Sore> side,
                                     const HabitReport& report) {
  auto has = [&report](std::string_view id) { return report.find(id) != nullptr; };
  std::vector<std::string> causes;
  auto add = [&causes](bool when, std::string text) {
    if (when) causes.push_back(std::move(text));
  };
  switch (area) {
    case Area::neckBack:
      add(has("forward"),
          "기록을 보면 머리가 앞으로 나오는 습관이 있어요. 가장 먼저 의심되는 원인이에요.");
      add(has("nod"),
          "고개를 숙여 보는 습관도 보여요. 화면이 낮으면 목 뒤가 계속 늘어난 채 버텨요.");
      break;
    case Area::neckSide:
      if (const Habit* tilt = report.find("tilt")) {
        if (auto line = tiltCause(*tilt, side)) causes.push_back(*line);
      }
      if (const Habit* shoulder = report.find("shoulder")) {
        causes.push_back(shoulder->title +
                         "도 보여요. 올라간 쪽 어깨 위 근육이 계속 일하고 있어요.");
      }
      break;
    case Area::blades:
      add(has("slouch") || has("forward"),
          "기록상 등이 굽거나 머리가 앞으로 나오는 습관이 있어 잘 맞아떨어져요.");
      break;
    case Area::lowBack:
      add(has("slouch"),
          "등이 굽는 습관이 보여요. 골반이 뒤로 빠지면서 허리 아래가 버티고 있어요.");
      if (const Habit* lean = report.find("lean")) {
        causes.push_back(lean->title + "이 있어요. 기우는 쪽 옆구리가 짧아져 있을 수 있어요.");
      }
      break;
    case Area::head:
      add(has("forward") || has("nod"),
          "머리가 앞으로 나오거나 숙이는 습관이 있어 목 뒤가 긴장해 있을 가능성이 커요.");
      add(has("close"), "화면에 다가가는 습관도 있어 눈 피로가 함께 쌓였을 수 있어요.");
      break;
    case Area::eyes:
      add(has("close"), "기록상 화면에 다가가는 습관이 있어요.");
      break;
    case Area::wrist:
      break;
    case Area::jaw:
      add(has("forward"), "머리가 앞으로 나오는 습관이 기록에 있어요.");
      break;
  }
  return causes;
}

}  // namespace

const std::vector<Area>& Consult::areas() {
  static const std::vector<Area> all{Area::neckBack, Area::neckSide, Area::blades, Area::lowBack,
                                     Area::head,     Area::eyes,     Area::wrist,  Area::jaw};
  return all;
}
const std::vector<Consult::Side>& Consult::sides() {
  static const std::vector<Consult::Side> all{Sore::left, Sore::right, Sore::both};
  return all;
}
const std::vector<Feeling>& Consult::feelings() {
  static const std::vector<Feeling> all{Feeling::stiff, Feeling::tingle, Feeling::ache};
  return all;
}
const std::vector<When>& Consult::whens() {
  static const std::vector<When> all{When::sitting, When::morning, When::moving, When::always};
  return all;
}

std::string_view Consult::raw(Area v) {
  return named(areaNames, v).raw;
}
std::string_view Consult::raw(Consult::Side v) {
  return named(sideNames, v).raw;
}
std::string_view Consult::raw(Feeling v) {
  return named(feelingNames, v).raw;
}
std::string_view Consult::raw(When v) {
  return named(whenNames, v).raw;
}
std::string_view Consult::name(Area v) {
  return named(areaNames, v).name;
}
std::string_view Consult::name(Consult::Side v) {
  return named(sideNames, v).name;
}
std::string_view Consult::name(Feeling v) {
  return named(feelingNames, v).name;
}
std::string_view Consult::name(When v) {
  return named(whenNames, v).name;
}

std::string_view Consult::detail(Feeling feeling) {
  switch (feeling) {
    case Feeling::stiff:
      return "근육이 굳은 느낌";
    case Feeling::tingle:
      return "전기가 오거나 감각이 둔함";
    case Feeling::ache:
      return "욱신욱신 아픈 통증";
  }
  return "";
}

bool Consult::asksSide(Area area) {
  return area == Area::neckSide || area == Area::blades || area == Area::lowBack ||
         area == Area::wrist;
}

Consult::Answer Consult::answer(Area area, std::optional<Consult::Side> side, Feeling feeling,
                                When when, const HabitReport& report) {
  AreaRules base = baseOf(area);
  Answer a;
  a.causes.push_back(std::move(base.cause));
  for (auto& cause : habitCauses(area, side, report))
    a.causes.push_back(std::move(cause));
  a.stretches = std::move(base.stretches);
  a.tips = std::move(base.tips);
  a.warnings.push_back(std::move(base.warning));

  if (feeling == Feeling::tingle) {
    a.causes.push_back(
        "저림은 근육보다 신경이 눌리거나 당겨질 때 흔해요. 스트레칭은 아프지 않은 범위에서만 "
        "부드럽게 해 주세요.");
    a.warnings.insert(a.warnings.begin(),
                      "저림이 며칠 넘게 이어지거나 점점 넓어지면 꼭 진료를 받으세요.");
  }
  if (feeling == Feeling::ache) {
    a.tips.push_back(
        "욱신거리는 통증이 있을 땐 강하게 늘리지 말고 가볍게 움직이는 정도로만 해 주세요.");
  }
  switch (when) {
    case When::sitting:
      a.tips.push_back(
          "오래 앉을수록 심해진다면 자세 문제일 가능성이 커요. 자세 확인과 50분 알림을 켜 두세요.");
      break;
    case When::morning:
      a.tips.push_back(
          "아침에 심하다면 베개 높이를 확인해 보세요. 옆으로 누웠을 때 목이 몸과 일자가 되는 "
          "높이가 "
          "좋아요.");
      break;
    case When::moving:
      a.tips.push_back(
          "특정 동작에서 아프면 그 방향으로는 억지로 늘리지 말고, 아프지 않은 반대 방향부터 풀어 "
          "주세요.");
      break;
    case When::always:
      a.warnings.insert(a.warnings.begin(),
                        "쉬어도 계속 아프거나 밤에 더 심하면 2주를 넘기지 말고 진료를 받으세요.");
      break;
  }
  return a;
}

}  // namespace sodam
