// The library's fourteen stretches. Every key starts from the rest pose of
// its stretch's stage and changes only what it names; the rest pose usually
// opens and closes the loop and the peak key holds longest.
#include <initializer_list>
#include <utility>

#include "coach/stretch_library.h"

namespace sodam {

namespace {

using Kind = IssueKind;
using Part = Focus::Part;

struct KeyStep {
  double move;
  double hold;
  const char* cue;
  void (*change)(Pose&) = nullptr;
};

Motion motionOf(Stage stage, std::initializer_list<KeyStep> steps) {
  const Pose rest = stage == Stage::side ? Pose::side() : Pose::front();
  Motion motion;
  for (const auto& step : steps) {
    Key key{rest, step.move, step.hold, std::string(step.cue)};
    if (step.change) step.change(key.pose);
    motion.keys.push_back(std::move(key));
  }
  return motion;
}

Limb arm(double upper, double fore, double hand = 0) {
  return {upper, fore, hand, false};
}

Limb behind(double upper, double fore) {
  return {upper, fore, 0, true};
}

void bothArms(Pose& p, Limb limb) {
  p.armL = limb;
  p.armR = limb;
}

struct Text {
  const char* id;
  const char* name;
  const char* summary;
  const char* benefit;
};

Stretch make(Text text, BodyArea area, Stage stage, int seconds, bool sides, bool turn,
             std::vector<IssueKind> helps, std::vector<Focus> focus,
             std::initializer_list<KeyStep> keys) {
  Stretch s;
  s.id = text.id;
  s.name = text.name;
  s.area = area;
  s.summary = text.summary;
  s.benefit = text.benefit;
  s.stage = stage;
  s.focusRight = std::move(focus);
  s.sides = sides;
  s.seconds = seconds;
  s.motion = motionOf(stage, keys);
  s.helps = std::move(helps);
  s.turn = turn;
  return s;
}

std::vector<Stretch> neckStretches() {
  std::vector<Stretch> list;
  list.push_back(make(
      {"chinTuck", "턱 당기기", "앞으로 나온 머리를 제자리로",
       "거북목의 핵심 운동이에요. 목 깊은 근육을 깨워 머리를 어깨 위로 되돌려요."},
      BodyArea::neck, Stage::front, 30, false, false,
      {Kind::forwardHead, Kind::leaning, Kind::lookingDown}, {{Part::neckBack}},
      {{0.8, 0.8, "화면을 보고 편하게 앉아요"},
       {1.3, 3, "턱을 수평으로 뒤로 밀어 두 겹 턱을 만들어요", [](Pose& p) { p.headForward = -1; }},
       {1.1, 0.6, "천천히 풀어요"}}));
  list.push_back(make({"neckSide", "목 옆 늘리기", "뭉친 목 옆과 승모근을 길게",
                       "한쪽으로 기울던 고개와 올라간 어깨를 풀어 줘요."},
                      BodyArea::neck, Stage::front, 25, true, false,
                      {Kind::headTilt, Kind::shoulderTilt, Kind::forwardHead},
                      {Focus::neckSide(-1)},
                      {{0.8, 0.4, "어깨 힘을 빼고 바르게 앉아요"},
                       {1.2, 0.4, "오른손을 머리 위로 넘겨 왼쪽 귀 위에 얹어요",
                        [](Pose& p) {
                          p.shrugL = -0.4;
                          p.armR = arm(150, -105);
                        }},
                       {1.8, 6, "고개를 오른쪽으로 천천히 당기고 왼쪽 어깨는 아래로",
                        [](Pose& p) {
                          p.neckSide = 32;
                          p.shrugL = -0.5;
                          p.armR = arm(142, -112);
                        }},
                       {1.6, 0.6, "천천히 제자리로 돌아와요"}}));
  list.push_back(
      make({"levator", "목 대각선 늘리기", "목 뒤에서 어깨뼈로 이어지는 근육",
            "모니터를 오래 볼 때 가장 먼저 굳는 견갑거근을 풀어요."},
           BodyArea::neck, Stage::front, 25, true, false,
           {Kind::forwardHead, Kind::lookingDown, Kind::shoulderTilt},
           {Focus::neckSide(-1), {Part::shoulders}},
           {{0.8, 0.4, "바르게 앉아요"},
            {1.2, 0.5, "고개를 오른쪽으로 45도 돌려요", [](Pose& p) { p.headTurn = 38; }},
            {1.6, 6, "오른손으로 머리 뒤를 잡고 겨드랑이 쪽으로 지그시 숙여요",
             [](Pose& p) {
               p.neckSide = 10;
               p.neckFlex = 30;
               p.headTurn = 38;
               p.shrugL = -0.4;
               p.armR = arm(150, -120);
             }},
            {1.6, 0.6, "천천히 풀어요"}}));
  list.push_back(make({"neckFlex", "목 뒤 늘리기", "뒷목과 등 윗부분까지 길게",
                       "화면을 내려다보느라 짧아진 뒷목을 늘려요."},
                      BodyArea::neck, Stage::front, 30, false, false,
                      {Kind::forwardHead, Kind::slouch}, {{Part::neckBack}, {Part::shoulders}},
                      {{0.8, 0.4, "바르게 앉아요"},
                       {1.3, 0.4, "두 손을 깍지 껴 뒤통수에 얹어요",
                        [](Pose& p) { bothArms(p, behind(116, -96)); }},
                       {2, 6, "팔 무게로 턱을 가슴 쪽으로 지그시 내려요",
                        [](Pose& p) {
                          p.neckFlex = 45;
                          bothArms(p, behind(120, -100));
                        }},
                       {1.8, 0.6, "고개를 천천히 들어요"}}));
  list.push_back(
      make({"neckExt", "하늘 보기", "숙이던 고개를 반대로",
            "고개를 오래 숙였을 때 굳은 목 앞쪽을 풀어요."},
           BodyArea::neck, Stage::front, 25, false, false, {Kind::lookingDown, Kind::forwardHead},
           {{Part::neckFront}, {Part::chest}},
           {{0.8, 0.6, "허리를 세워요"},
            {2, 4, "천천히 천장을 올려다봐요. 입은 다물어요", [](Pose& p) { p.neckFlex = -38; }},
            {2, 0.6, "정면으로 돌아와요"}}));
  return list;
}

std::vector<Stretch> backStretches() {
  std::vector<Stretch> list;
  list.push_back(make({"chest", "가슴 열기", "말린 어깨를 활짝",
                       "구부정한 자세로 짧아진 가슴 근육을 늘리고 어깨를 뒤로 보내요."},
                      BodyArea::chest, Stage::side, 30, false, true,
                      {Kind::slouch, Kind::forwardHead, Kind::leaning},
                      {{Part::chest}, {Part::shoulders}},
                      {{0.8, 0.4, "의자 앞쪽에 앉아요"},
                       {1.3, 0.4, "두 손을 등 뒤로 깍지 껴요",
                        [](Pose& p) {
                          p.armL = behind(-30, -18);
                          p.armR = arm(-30, -18);
                        }},
                       {1.8, 5, "가슴을 앞으로 내밀고 팔을 뒤로 뻗어요",
                        [](Pose& p) {
                          p.spineFlex = -12;
                          p.neckFlex = -8;
                          p.retract = 1;
                          p.armL = behind(-48, -40);
                          p.armR = arm(-48, -40);
                        }},
                       {1.6, 0.6, "천천히 풀어요"}}));
  list.push_back(make(
      {"squeeze", "날개뼈 모으기", "등 가운데를 깨우는 반복 운동",
       "처진 어깨를 받쳐 주는 등 근육을 단련해 바른 자세를 오래 유지해요."},
      BodyArea::back, Stage::side, 30, false, true,
      {Kind::slouch, Kind::shoulderTilt, Kind::forwardHead}, {{Part::upperBack}},
      {{0.9, 0.5, "팔꿈치를 90도로 굽혀 옆구리에 붙여요", [](Pose& p) { bothArms(p, arm(8, 95)); }},
       {1, 2, "팔꿈치를 뒤로 당기며 날개뼈를 꽉 모아요", [](Pose& p) {
          p.spineFlex = -5;
          p.retract = 1;
          bothArms(p, arm(-32, 62));
        }}}));
  list.push_back(make({"catCow", "앉아서 고양이 자세", "굳은 척추를 한 마디씩",
                       "오래 앉아 뻣뻣해진 척추 전체를 부드럽게 움직여요."},
                      BodyArea::back, Stage::side, 36, false, true,
                      {Kind::slouch, Kind::leaning, Kind::lookingDown},
                      {{Part::upperBack}, {Part::lowerBack}},
                      {{2.2, 1.6, "숨을 내쉬며 등을 둥글게 말고 배꼽을 봐요",
                        [](Pose& p) {
                          p.spineFlex = 20;
                          p.neckFlex = 26;
                          bothArms(p, arm(38, 30));
                        }},
                       {2.2, 1.6, "숨을 마시며 가슴을 열고 위를 봐요", [](Pose& p) {
                          p.spineFlex = -14;
                          p.neckFlex = -22;
                          p.retract = 0.7;
                          bothArms(p, arm(30, 40));
                        }}}));
  return list;
}

std::vector<Stretch> bodyStretches() {
  std::vector<Stretch> list;
  list.push_back(
      make({"sideBend", "옆구리 늘리기", "한쪽으로 쏠린 몸의 균형",
            "한쪽으로 기대 앉는 습관으로 짧아진 옆구리를 늘려요."},
           BodyArea::waist, Stage::front, 25, true, false, {Kind::lean, Kind::shoulderTilt},
           {Focus::side(-1)},
           {{0.8, 0.4, "엉덩이를 의자에 고르게 붙여요"},
            {1.3, 0.4, "왼팔을 머리 위로 쭉 뻗어요", [](Pose& p) { p.armL = arm(172, 185); }},
            {2, 5, "오른쪽으로 천천히 기울여 왼쪽 옆구리를 늘려요",
             [](Pose& p) {
               p.spineSide = 24;
               p.neckSide = 6;
               p.armL = arm(160, 210);
               p.armR = arm(22, 8);
             }},
            {1.8, 0.6, "천천히 가운데로 돌아와요"}}));
  list.push_back(make({"twist", "상체 비틀기", "허리와 등을 비틀어 풀기",
                       "오래 앉아 굳은 허리 주변을 부드럽게 풀어요."},
                      BodyArea::back, Stage::front, 25, true, false, {Kind::slouch, Kind::lean},
                      {{Part::lowerBack}},
                      {{0.8, 0.4, "허리를 곧게 세워요"},
                       {2, 5, "왼손은 오른 무릎에, 오른쪽으로 몸을 돌려 뒤를 봐요",
                        [](Pose& p) {
                          p.twist = 42;
                          p.headTurn = 50;
                          p.armL = arm(22, -62);
                          p.armR = behind(30, 20);
                        }},
                       {1.8, 0.6, "천천히 정면으로 돌아와요"}}));
  list.push_back(make({"shrug", "어깨 으쓱 풀기", "긴장한 어깨를 툭",
                       "나도 모르게 올라간 어깨의 긴장을 털어 내요."},
                      BodyArea::shoulder, Stage::front, 25, false, false,
                      {Kind::shoulderTilt, Kind::headTilt, Kind::slouch}, {{Part::shoulders}},
                      {{0.8, 1.2, "어깨를 귀 쪽으로 힘껏 올려요",
                        [](Pose& p) {
                          p.shrugL = 1;
                          p.shrugR = 1;
                        }},
                       {0.7, 0.9, "숨을 내쉬며 툭 떨어뜨려요", [](Pose& p) {
                          p.shrugL = -0.3;
                          p.shrugR = -0.3;
                        }}}));
  list.push_back(make(
      {"reach", "기지개 켜기", "온몸을 위로 길게", "눌려 있던 척추 사이를 늘리고 몸을 깨워요."},
      BodyArea::waist, Stage::front, 25, false, false,
      {Kind::slouch, Kind::lookingDown, Kind::leaning}, {Focus::side(-1), Focus::side(1)},
      {{0.8, 0.4, "깍지를 껴요"},
       {1.8, 3.5, "손바닥을 천장으로 밀며 쭉 뻗어요",
        [](Pose& p) {
          p.neckFlex = -10;
          bothArms(p, arm(172, 188));
        }},
       {1.6, 0.8, "숨을 내쉬며 내려요"}}));
  return list;
}

std::vector<Stretch> restStretches() {
  std::vector<Stretch> list;
  list.push_back(make({"eyes", "20초 먼 곳 보기", "20분마다 6미터 너머를 20초",
                       "화면 가까이 초점을 맞추던 눈 근육을 쉬게 해요."},
                      BodyArea::eyes, Stage::front, 20, false, false,
                      {Kind::tooClose, Kind::lookingDown}, {{Part::eyes}},
                      {{0.8, 0.6, "화면에서 눈을 떼요"},
                       {1.6, 15, "창밖이나 먼 곳을 편하게 바라봐요",
                        [](Pose& p) {
                          p.neckFlex = -6;
                          p.headTurn = 55;
                        }},
                       {1.4, 0.6, "천천히 눈을 깜빡여요"}}));
  list.push_back(make({"wrist", "손목 늘리기", "키보드에 지친 손목과 팔뚝",
                       "타자와 마우스로 굳은 팔뚝 근육을 풀어요."},
                      BodyArea::wrist, Stage::side, 30, false, true, {}, {{Part::wrists}},
                      {{1, 0.4, "팔을 앞으로 쭉 뻗어요",
                        [](Pose& p) {
                          p.armL = arm(60, 88);
                          p.armR = arm(86, 90);
                        }},
                       {1.2, 4, "손끝을 아래로, 다른 손으로 지그시 당겨요",
                        [](Pose& p) {
                          p.armL = arm(62, 95, 30);
                          p.armR = arm(86, 90, 72);
                        }},
                       {1.4, 4, "이번엔 손끝을 위로 젖혀요", [](Pose& p) {
                          p.armL = arm(62, 100, -20);
                          p.armR = arm(86, 90, -72);
                        }}}));
  return list;
}

// The groups above, one after the other, make the library's order.
std::vector<Stretch> ordered() {
  auto neck = neckStretches();
  auto back = backStretches();
  auto body = bodyStretches();
  auto rest = restStretches();
  std::vector<Stretch> all;
  for (auto* group : {&neck, &back, &body, &rest}) {
    for (auto& s : *group)
      all.push_back(std::move(s));
  }
  return all;
}

}  // namespace

const std::vector<Stretch>& StretchLibrary::all() {
  static const std::vector<Stretch> stretches = ordered();
  return stretches;
}

}  // namespace sodam
