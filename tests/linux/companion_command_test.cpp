#include "linux/companion_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "linux/simulate_command.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct CompanionCommand : ::testing::Test {
  fs::path data =
      fs::temp_directory_path() /
      ("sodam-companion-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
       "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
  std::ostringstream out;
  std::ostringstream err;

  void TearDown() override { fs::remove_all(data); }
  int run(std::vector<std::string> args) {
    out.str("");
    err.str("");
    return runCompanion(args, out, err);
  }
};

TEST_F(CompanionCommand, AFolderWithoutRecordsMeetsTheCompanionAndStaysUnmade) {
  ASSERT_EQ(run({"--data-dir", data.string()}), 0) << err.str();
  EXPECT_EQ(out.str(),
            "도란이 · 레벨 1 '처음 만난 사이' · 함께한 지 1일째\n"
            "모두 0점 · '아는 사이'까지 40점 (0%)\n"
            "오늘 0점 · 확인 0번 · 바른 자세 0번 · 바로잡음 0번 · 다른 곳 0번 · 쉼 0번\n"
            "지금 할 말:\n"
            "  (curious) 안녕하세요, 저는 도란이예요! 바른 자세를 먼저 알려 주면 옆에서 같이 "
            "지켜볼게요.\n");
  EXPECT_FALSE(fs::exists(data));

  EXPECT_EQ(run({"--data-dir"}), 2);
  EXPECT_NE(err.str().find("--data-dir needs a value"), std::string::npos);
  EXPECT_EQ(run({"--loud"}), 2);
  EXPECT_NE(err.str().find("unknown option --loud"), std::string::npos);
}

TEST_F(CompanionCommand, AfterADayOfRecordsItShowsThePointsAndWhatItWouldSay) {
  std::ostringstream simulated, problems;
  ASSERT_EQ(runSimulate({"first-run", "--data-dir", data.string()}, simulated, problems), 0)
      << problems.str();
  ASSERT_EQ(run({"--data-dir", data.string()}), 0) << err.str();
  const std::string page = out.str();
  EXPECT_EQ(page.rfind("도란이 · 레벨 1 '처음 만난 사이'", 0), 0u) << page;
  EXPECT_NE(page.find("'아는 사이'까지"), std::string::npos);
  EXPECT_NE(page.find("지금 할 말:\n"), std::string::npos);
  // The posture is learned now: no greeting, and the tip of the day is there.
  EXPECT_EQ(page.find("안녕하세요"), std::string::npos) << page;
  EXPECT_NE(page.find("(looking) "), std::string::npos) << page;
}

}  // namespace
}  // namespace sodam
