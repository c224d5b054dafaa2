#include "linux/focus_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "linux/simulate_command.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct FocusCommand : ::testing::Test {
  fs::path data =
      fs::temp_directory_path() /
      ("sodam-focus-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
       ::testing::UnitTest::GetInstance()->current_test_info()->name());
  std::ostringstream out;
  std::ostringstream err;

  void TearDown() override { fs::remove_all(data); }

  using Command = int (*)(const std::vector<std::string>&, std::ostream&, std::ostream&);
  int run(Command command, std::vector<std::string> args) {
    out.str("");
    err.str("");
    return command(args, out, err);
  }
};

TEST_F(FocusCommand, AFolderWithoutAStoreShowsTheDefaultsAndStaysUntouched) {
  fs::create_directories(data);
  ASSERT_EQ(run(runFocus, {"--data-dir", data.string()}), 0) << err.str();
  EXPECT_EQ(out.str(),
            "집중 모드\n"
            "  ● 자세만 확인 — 자세만 확인\n"
            "  ○ 나의 집중코치 — 나의 집중코치 · 휴대폰 보기, 꾸벅꾸벅 졸기, 턱 괴기 · 목표 50분\n"
            "오늘 0분 집중\n"
            "  오늘은 아직 집중 기록이 없어요\n"
            "습관: 없음\n");
  EXPECT_TRUE(fs::is_empty(data));

  EXPECT_EQ(run(runFocus, {"--data-dir"}), 2);
  EXPECT_NE(err.str().find("--data-dir needs a value"), std::string::npos);
  EXPECT_EQ(run(runFocus, {"today"}), 2);
}

TEST_F(FocusCommand, AfterAStudyAfternoonTodaysSessionsAndHabitsAreListed) {
  ASSERT_EQ(run(runSimulate, {"study", "--data-dir", data.string()}), 0) << err.str();
  ASSERT_EQ(run(runFocus, {"--data-dir", data.string()}), 0) << err.str();
  const std::string text = out.str();
  EXPECT_NE(text.find("  ○ 자세만 확인 — 자세만 확인\n"
                      "  ● 나의 집중코치 — 나의 집중코치 · 휴대폰 보기, 꾸벅꾸벅 졸기, 턱 괴기, "
                      "손톱 물기·입에 손, 자리 자주 비우기 · 목표 50분\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("오늘 3시간 3"), std::string::npos) << text;
  EXPECT_NE(text.find("  오후 1:03 – 오후 3:13 · 나의 집중코치 · 2시간 7분 · 휴대폰 보기 1번"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("  오후 3:14 – 오후 4:43 · 나의 집중코치 · 1시간 26분"), std::string::npos);
  EXPECT_NE(text.find("습관: 휴대폰 보기 1번 · 꾸벅꾸벅 졸기 1번 · 턱 괴기 1번 · 손톱 물기·입에 손 "
                      "1번 · 자리 자주 비우기 2번 · 고개 숙이기·거북목 1번\n"),
            std::string::npos)
      << text;
}

}  // namespace
}  // namespace sodam
