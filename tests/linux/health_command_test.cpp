#include "linux/health_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include <unistd.h>

#include "linux/command_model.h"
#include "linux/store_testing.h"
#include "posture/posture_log.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct HealthCommand : ::testing::Test {
  fs::path data =
      fs::temp_directory_path() / ("sodam-health-" + std::to_string(::getpid()) + "-" +
                                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
  std::ostringstream out;
  std::ostringstream err;

  void TearDown() override { fs::remove_all(data); }

  // Checks of a bowed, right-tilted head, written as a simulation would:
  // a day ahead of the clock.
  void record(int count) {
    auto defaults = testing::openStore(data);
    ManualClock clock(SystemClock().now() + 86400);
    PostureLog log(*defaults, clock, Calendar());
    Metrics m;
    m.flexion = 12;
    m.headTilt = 3;
    for (int i = 0; i < count; ++i) {
      clock.advance(60);
      log.record(i == 0 ? PostureEntry::Kind::alert : PostureEntry::Kind::good,
                 i == 0 ? std::vector<IssueKind>{IssueKind::lookingDown} : std::vector<IssueKind>{},
                 m);
    }
  }
  int health(std::vector<std::string> args) {
    out.str("");
    err.str("");
    return runHealth(args, out, err);
  }
  int consult(std::vector<std::string> args) {
    out.str("");
    err.str("");
    args.push_back("--data-dir");
    args.push_back(data.string());
    return runConsult(args, out, err);
  }
  bool said(const std::string& text) const { return out.str().find(text) != std::string::npos; }
};

TEST_F(HealthCommand, AFolderWithoutRecordsSaysSo) {
  ASSERT_EQ(health({"--data-dir", data.string()}), 0) << err.str();
  EXPECT_EQ(out.str(), "아직 기록이 없어요\n");
  EXPECT_EQ(health({"--verbose"}), 2);
  EXPECT_NE(err.str().find("unknown option --verbose"), std::string::npos);
}

TEST_F(HealthCommand, PrintsTheHabitsOfTheStoredChecks) {
  record(12);
  ASSERT_EQ(health({"--data-dir", data.string()}), 0) << err.str();
  EXPECT_TRUE(said("나의 건강코치\n최근 7일 자세 확인 12회를 바탕으로 살펴봤어요"));
  EXPECT_TRUE(said("이번 주 바른 자세"));
  EXPECT_TRUE(said("가장 잦은 알림        고개 숙임"));
  EXPECT_TRUE(said("오늘의 소견\n  가장 먼저 챙길 곳은 목 앞"));
  EXPECT_TRUE(said("■ 고개를 숙여 보는 습관 · 뚜렷함\n  평균 12도 숙여요 · 확인의 100%"));
  EXPECT_TRUE(said("■ 고개가 오른쪽으로 기우는 습관 · 가벼움"));
  EXPECT_TRUE(said("  처방: 하늘 보기: 20초씩 3번 / 턱 당기기: 5초 버티기 10번"));
  EXPECT_TRUE(said("  이번 주 평균 12.0도 · 지난주 —"));
  EXPECT_TRUE(said("  도움이 되는 스트레칭: 하늘 보기 / 턱 당기기"));
}

TEST_F(HealthCommand, TheConsultTakesKoreanWordsOrNamesAndReadsTheHabits) {
  record(12);
  ASSERT_EQ(consult({"목 옆·어깨 위", "left", "뻐근하고 뭉쳐요", "always"}), 0) << err.str();
  EXPECT_TRUE(said("상담하기 · 목 옆·어깨 위 · 왼쪽 · 뻐근하고 뭉쳐요 · 가만히 있어도 계속\n"));
  EXPECT_TRUE(said("기록을 보니 고개를 숙여 보는 습관이 있어요.\n"));
  EXPECT_TRUE(said("반대편인 왼쪽 목이 늘어난 채 머리를 붙잡느라 지쳤을 가능성이 커요."));
  EXPECT_TRUE(said("지금 해 볼 스트레칭\n  · 목 옆 늘리기 좌우 26초\n"));
  EXPECT_TRUE(said("  · 어깨 으쓱 풀기 25초\n"));
  EXPECT_TRUE(said("이럴 땐 병원에\n  · 쉬어도 계속 아프거나"));
  EXPECT_TRUE(said("\n진단이 아니라 자세와 근육에 대한 안내예요."));
  // An area without sides has no side to give, and no tips for this case.
  ASSERT_EQ(consult({"head", "stiff", "always"}), 0) << err.str();
  EXPECT_FALSE(said("생활에서"));
}

TEST_F(HealthCommand, AWrongValueIsNamedWithTheOnesThatFit) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"knee", "stiff", "always"},
       "unknown area \"knee\"; one of neckBack (목 뒤·뒤통수), neckSide (목 옆·어깨 위)"},
      {{"neckSide", "up", "stiff", "always"}, "unknown side \"up\"; one of left (왼쪽)"},
      {{"eyes", "left", "stiff", "always"}, "eyes takes no side"},
      {{"eyes", "itchy", "always"}, "unknown feeling \"itchy\"; one of stiff (뻐근하고 뭉쳐요)"},
      {{"eyes", "stiff", "weekends"}, "unknown time \"weekends\"; one of sitting"},
      {{"eyes"}, "AREA, FEELING and WHEN are needed"},
  };
  for (const auto& [args, message] : cases) {
    EXPECT_EQ(consult(args), 2) << message;
    EXPECT_NE(err.str().find(message), std::string::npos) << err.str();
    EXPECT_TRUE(out.str().empty());
  }
}

TEST_F(HealthCommand, AQuestionAfterTheAnswerGoesToTheLocalModelNamedInTheEnvironment) {
  record(12);
  const char* variable = CommandLanguageModel::variable;
  ::unsetenv(variable);
  EXPECT_EQ(consult({"eyes", "stiff", "always", "--ask", "왜요?"}), 2);
  EXPECT_NE(err.str().find("--ask needs a local model: set SODAMJARI_MODEL"), std::string::npos);

  // The model hears the record and the consult before the question alone.
  ::setenv(variable, "grep -c -e '고개를 숙여 보는 습관' -e '^왜요?$'", 1);
  ASSERT_EQ(consult({"eyes", "stiff", "always", "--ask", "왜요?"}), 0) << err.str();
  EXPECT_TRUE(said("\n나: 왜요?\n\n건강코치: 2\n"));
  ::setenv(variable, "exit 1", 1);
  ASSERT_EQ(consult({"eyes", "stiff", "always", "--ask", "왜요?"}), 0) << err.str();
  EXPECT_TRUE(said("건강코치: 지금은 답을 만들지 못했어요. 잠시 뒤 다시 물어봐 주세요.\n"));
  ::unsetenv(variable);
}

}  // namespace
}  // namespace sodam
