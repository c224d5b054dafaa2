#include "health/consult.h"

#include <gtest/gtest.h>

namespace sodam {
namespace {

using A = Consult::Area;
using S = Consult::Side;
using F = Consult::Feeling;
using W = Consult::When;
using Lines = std::vector<std::string>;

// A report whose habits are just these.
HabitReport withHabits(const std::vector<std::pair<std::string, std::string>>& habits) {
  HabitReport report;
  report.samples = 50;
  for (const auto& [id, title] : habits) {
    Habit h;
    h.id = id;
    h.title = title;
    report.habits.push_back(h);
  }
  return report;
}

const HabitReport rightTilt = withHabits({{"tilt", "고개가 오른쪽으로 기우는 습관"}});

TEST(Consult, ASoreSideFarFromTheTiltIsTiredNotShort) {
  const auto left = Consult::answer(A::neckSide, S::left, F::stiff, W::sitting, rightTilt);
  EXPECT_EQ(
      left.causes,
      (Lines{"목 옆과 어깨 위는 한쪽으로 기울거나 어깨가 올라간 자세가 오래되면 뭉치는 곳이에요.",
             "고개가 오른쪽으로 기우는 습관이 있어서, 반대편인 왼쪽 목이 늘어난 채 머리를 "
             "붙잡느라 지쳤을 가능성이 커요."}));
  const auto right = Consult::answer(A::neckSide, S::right, F::stiff, W::sitting, rightTilt);
  EXPECT_EQ(right.causes[1],
            "고개가 오른쪽으로 기우는 습관이 있어서, 오른쪽 근육이 짧아진 채 굳어 뭉쳤을 가능성이 "
            "커요.");
  // A left tilt is short on the left.
  const auto leftTilt = withHabits({{"tilt", "고개가 왼쪽으로 기우는 습관"}});
  EXPECT_EQ(
      Consult::answer(A::neckSide, S::left, F::stiff, W::sitting, leftTilt).causes[1],
      "고개가 왼쪽으로 기우는 습관이 있어서, 왼쪽 근육이 짧아진 채 굳어 뭉쳤을 가능성이 커요.");
  for (std::optional<S> none : {std::optional<S>(S::both), std::optional<S>()})
    EXPECT_EQ(Consult::answer(A::neckSide, none, F::stiff, W::sitting, rightTilt).causes.size(),
              1u);
  EXPECT_EQ(right.stretches, (Lines{"neckSide", "levator", "shrug"}));
}

TEST(Consult, TheRaisedShoulderAndTheLeanAreNamedByTheirTitles) {
  const auto report = withHabits({{"shoulder", "왼쪽 어깨가 올라가는 습관"},
                                  {"lean", "몸이 오른쪽으로 기우는 습관"},
                                  {"slouch", "등이 굽는 습관"}});
  EXPECT_EQ(Consult::answer(A::neckSide, S::both, F::stiff, W::sitting, report).causes[1],
            "왼쪽 어깨가 올라가는 습관도 보여요. 올라간 쪽 어깨 위 근육이 계속 일하고 있어요.");
  const auto back = Consult::answer(A::lowBack, S::left, F::stiff, W::moving, report);
  EXPECT_EQ(
      back.causes,
      (Lines{"오래 앉아 있으면 허리 앞뒤 근육이 굳고, 등이 굽거나 한쪽으로 기대면 허리 한쪽에 "
             "부담이 몰려요.",
             "등이 굽는 습관이 보여요. 골반이 뒤로 빠지면서 허리 아래가 버티고 있어요.",
             "몸이 오른쪽으로 기우는 습관이 있어요. 기우는 쪽 옆구리가 짧아져 있을 수 있어요."}));
  EXPECT_EQ(
      back.tips,
      (Lines{"엉덩이를 의자 끝까지 붙이고, 50분에 한 번은 일어나 걸어 주세요.",
             "특정 동작에서 아프면 그 방향으로는 억지로 늘리지 말고, 아프지 않은 반대 방향부터 "
             "풀어 주세요."}));
}

TEST(Consult, TheGeneralWarningsStandBeforeTheAreasOwn) {
  const auto a = Consult::answer(A::lowBack, S::right, F::tingle, W::always, HabitReport());
  EXPECT_EQ(
      a.warnings,
      (Lines{"쉬어도 계속 아프거나 밤에 더 심하면 2주를 넘기지 말고 진료를 받으세요.",
             "저림이 며칠 넘게 이어지거나 점점 넓어지면 꼭 진료를 받으세요.",
             "다리로 저림이 내려가거나 힘이 빠지면, 대소변이 불편하면 바로 진료를 받으세요."}));
  EXPECT_EQ(a.causes.back(),
            "저림은 근육보다 신경이 눌리거나 당겨질 때 흔해요. 스트레칭은 아프지 않은 범위에서만 "
            "부드럽게 해 주세요.");
  EXPECT_EQ(a.causes.size(), 2u);  // no habit on record
}

TEST(Consult, HeadAndNeckBackGiveNoTipsForAStiffConstantPain) {
  for (A area : {A::head, A::neckBack}) {
    const auto a = Consult::answer(area, std::nullopt, F::stiff, W::always, HabitReport());
    EXPECT_TRUE(a.tips.empty()) << Consult::name(area);
    EXPECT_EQ(a.warnings.size(), 2u);
  }
  const auto ache = Consult::answer(A::head, std::nullopt, F::ache, W::morning, HabitReport());
  EXPECT_EQ(ache.tips.size(), 2u);
  EXPECT_EQ(ache.tips[0],
            "욱신거리는 통증이 있을 땐 강하게 늘리지 말고 가볍게 움직이는 정도로만 해 주세요.");
}

TEST(Consult, TheWristNeverMentionsAHabitWhileOtherAreasDo) {
  const auto every = withHabits({{"forward", "거북목 습관"},
                                 {"nod", "고개를 숙여 보는 습관"},
                                 {"close", "화면에 다가가는 습관"},
                                 {"slouch", "등이 굽는 습관"},
                                 {"tilt", "고개가 오른쪽으로 기우는 습관"}});
  const auto wrist = Consult::answer(A::wrist, S::left, F::stiff, W::sitting, every);
  EXPECT_EQ(wrist.causes.size(), 1u);
  EXPECT_EQ(wrist.stretches, (Lines{"wrist", "shrug"}));
  EXPECT_EQ(Consult::answer(A::head, std::nullopt, F::stiff, W::sitting, every).causes.size(), 3u);
  EXPECT_EQ(Consult::answer(A::neckBack, std::nullopt, F::stiff, W::sitting, every).causes.size(),
            3u);
  EXPECT_EQ(Consult::answer(A::blades, S::both, F::stiff, W::sitting, every).causes.size(), 2u);
  EXPECT_EQ(Consult::answer(A::eyes, std::nullopt, F::stiff, W::sitting, every).causes[1],
            "기록상 화면에 다가가는 습관이 있어요.");
  EXPECT_EQ(Consult::answer(A::jaw, std::nullopt, F::stiff, W::sitting, every).causes[1],
            "머리가 앞으로 나오는 습관이 기록에 있어요.");
}

TEST(Consult, ChoicesHaveTheirKoreanRawValuesAndSidesAreAskedOfFourAreas) {
  std::string asked;
  for (A area : Consult::areas())
    if (Consult::asksSide(area)) asked += std::string(Consult::raw(area)) + "|";
  EXPECT_EQ(asked, "목 옆·어깨 위|날개뼈 사이|허리|손목·팔|");
  EXPECT_EQ(Consult::raw(S::both), "양쪽·가운데");
  EXPECT_EQ(Consult::raw(F::tingle), "찌릿하거나 저려요");
  EXPECT_EQ(Consult::raw(W::always), "가만히 있어도 계속");
  EXPECT_EQ(Consult::detail(F::ache), "욱신욱신 아픈 통증");
}

}  // namespace
}  // namespace sodam
