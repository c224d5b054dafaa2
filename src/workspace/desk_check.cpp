#include "workspace/desk_check.h"

#include <algorithm>
#include <cmath>

#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

using Rule = DeskCheck::Rule;
using Verdict = DeskCheck::Verdict;

// A rule's three outcomes: the line when good, and the line and tip of each
// side it can be off on; "{n}" is the number, rounded and without sign.
struct RuleTexts {
  std::string_view key;
  std::string_view name;
  std::string_view good;
  std::string_view lowLine;
  std::string_view lowTip;
  std::string_view highLine;
  std::string_view highTip;
};

// clang-format off
constexpr RuleTexts texts[] = {
    {"screenTop", "화면 높이", "화면 위끝이 눈높이에 잘 맞아요",
     "화면 위끝이 눈보다 {n}센티 높아요",
     "고개를 젖히고 보게 돼요. 화면을 조금 내려 위끝이 눈높이쯤 오게 해 주세요.",
     "화면 위끝이 눈보다 {n}센티 낮아요",
     "고개를 숙이게 돼요. 받침대나 책으로 화면을 올려 위끝이 눈높이와 같거나 조금 아래에 오게 해 주세요."},
    {"distance", "화면 거리", "화면과 알맞게 떨어져 있어요",
     "화면이 {n}센티로 가까워요",
     "눈이 쉽게 지치고 머리도 따라 나오기 쉬워요. 화면을 팔 길이만큼(50~70센티) 밀어 두고 글자를 키워 주세요.",
     "화면이 {n}센티로 멀어요",
     "글자를 보려고 몸이 앞으로 쏠리기 쉬워요. 화면을 조금 당기거나 글자를 키워 주세요."},
    {"neck", "목 각도", "화면을 편한 각도로 내려다봐요",
     "화면을 올려다봐요",
     "고개를 젖힌 채 보면 목 뒤가 눌려요. 화면 가운데가 눈보다 조금 아래에 오게 내려 주세요.",
     "화면 가운데를 {n}도 내려다봐요",
     "고개를 숙인 채 오래 보면 목 뒤가 머리 무게를 버텨야 해요. 화면을 올려 눈에서 30도 안쪽 아래에 오게 해 주세요."},
    {"elbow", "팔꿈치", "팔꿈치가 편하게 굽어 있어요",
     "팔꿈치가 {n}도로 많이 접혀요",
     "자판이 몸에 너무 가까워요. 자판을 조금 밀어 두거나 의자를 뒤로 빼 팔꿈치가 90~110도쯤 되게 해 주세요.",
     "팔을 {n}도로 뻗어 자판을 쳐요",
     "팔을 뻗고 있으면 어깨와 등이 금방 지쳐요. 자판을 몸 가까이 당기고 팔꿈치를 몸 옆에 붙여 주세요."},
    {"wrist", "손목 높이", "자판이 팔꿈치 높이에 맞아요",
     "자판이 팔꿈치보다 {n}센티 낮아요",
     "손목이 위로 꺾이고 등이 굽기 쉬워요. 의자를 낮추거나 자판을 받침에 올려 팔꿈치 높이에 가깝게 맞춰 주세요.",
     "자판이 팔꿈치보다 {n}센티 높아요",
     "어깨가 들리고 손목이 꺾이기 쉬워요. 의자를 올려 팔꿈치와 자판 높이를 맞추고, 발이 뜨면 발받침을 놓아 주세요."},
    {"feet", "발 받침", "발이 바닥을 든든히 디뎌요",
     "무릎이 엉덩이보다 {n}센티 높아요",
     "골반이 뒤로 빠져 등이 굽기 쉬워요. 의자를 올리거나 방석을 깔아 허벅지가 바닥과 나란하게 해 주세요.",
     "발이 바닥에서 {n}센티 떠요",
     "허벅지 아래가 눌리고 허리가 버텨요. 발받침을 놓거나 의자를 낮춰 발바닥 전체가 닿게 해 주세요."},
};
// clang-format on

const RuleTexts& textsOf(Rule rule) {
  return texts[static_cast<int>(rule)];
}

DeskCheck made(Rule rule, Verdict verdict, double value, double shown) {
  const RuleTexts& t = textsOf(rule);
  DeskCheck check{rule, verdict, value, {}, {}};
  const std::string n = std::to_string(std::llabs(roundedInt(shown)));
  switch (verdict) {
    case Verdict::good:
      check.line = std::string(t.good);
      break;
    case Verdict::low:
      check.line = fill(t.lowLine, {{"n", n}});
      check.tip = std::string(t.lowTip);
      break;
    case Verdict::high:
      check.line = fill(t.highLine, {{"n", n}});
      check.tip = std::string(t.highTip);
      break;
  }
  return check;
}

// Good within [low, high], else off on the side it left by.
DeskCheck within(Rule rule, double value, double low, double high) {
  const Verdict verdict = value < low ? Verdict::low : value > high ? Verdict::high : Verdict::good;
  return made(rule, verdict, value, value);
}

DeskCheck screenTop(const DeskGeometry& g) {
  return within(Rule::screenTop, g.eyeAboveScreenTop(), -DeskCheck::screenTopAboveEyeMostCm,
                DeskCheck::screenTopBelowEyeMostCm);
}

DeskCheck distance(const DeskGeometry& g) {
  const double farthest =
      std::max(DeskCheck::farthestViewCm, DeskCheck::farthestViewDiagonals * g.screenDiagonalCm());
  return within(Rule::distance, g.viewDistance(), DeskCheck::closestViewCm, farthest);
}

DeskCheck neck(const DeskGeometry& g) {
  return within(Rule::neck, g.gazeDownDegrees(), DeskCheck::gazeDownLeastDegrees,
                DeskCheck::gazeDownMostDegrees);
}

DeskCheck elbow(const DeskGeometry& g) {
  const double angle = g.elbowDegrees();
  // A straight arm that falls short of the keys reaches too far, whatever
  // its angle reads.
  if (!g.handReaches()) return made(Rule::elbow, Verdict::high, angle, angle);
  return within(Rule::elbow, angle, DeskCheck::elbowLeastDegrees, DeskCheck::elbowMostDegrees);
}

DeskCheck wrist(const DeskGeometry& g) {
  return within(Rule::wrist, g.keysAboveElbow(), -DeskCheck::keysBelowElbowMostCm,
                DeskCheck::keysAboveElbowMostCm);
}

// Hanging feet say the seat is too high; knees above the hips, too low.
DeskCheck feet(const DeskGeometry& g) {
  if (g.feetDangle > DeskCheck::feetDangleMostCm) {
    return made(Rule::feet, Verdict::high, g.feetDangle, g.feetDangle);
  }
  if (g.kneeAboveHip() > DeskCheck::kneeAboveHipMostCm) {
    return made(Rule::feet, Verdict::low, g.kneeAboveHip(), g.kneeAboveHip());
  }
  return made(Rule::feet, Verdict::good, g.feetDangle, g.feetDangle);
}

}  // namespace

std::vector<DeskCheck> DeskCheck::judge(const DeskGeometry& g) {
  std::vector<DeskCheck> checks{screenTop(g), distance(g), neck(g), elbow(g), wrist(g)};
  if (g.setup.kind.seated()) checks.push_back(feet(g));
  return checks;
}

std::vector<DeskCheck> DeskCheck::broken(const DeskGeometry& g) {
  std::vector<DeskCheck> checks = judge(g);
  std::erase_if(checks, [](const DeskCheck& c) { return c.good(); });
  return checks;
}

std::string_view DeskCheck::ruleName(Rule rule) {
  return textsOf(rule).name;
}

std::string_view DeskCheck::ruleKey(Rule rule) {
  return textsOf(rule).key;
}

}  // namespace sodam
