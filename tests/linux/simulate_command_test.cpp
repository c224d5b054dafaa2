#include "linux/simulate_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct SimulateCommand : ::testing::Test {
  fs::path root =
      fs::temp_directory_path() /
      ("sodam-simulate-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
       ::testing::UnitTest::GetInstance()->current_test_info()->name());
  fs::path data = root / "data";
  std::ostringstream out;
  std::ostringstream err;

  void SetUp() override { fs::create_directories(root); }
  void TearDown() override { fs::remove_all(root); }

  int run(std::vector<std::string> args) {
    out.str("");
    err.str("");
    return runSimulate(args, out, err);
  }
};

TEST_F(SimulateCommand, BadInputIsNamedAndWritesNothing) {
  const fs::path bad = root / "bad.txt";
  std::ofstream(bad) << "09:00 present=yes\n09:30 slouch=4\n";
  const fs::path range = root / "range.txt";
  std::ofstream(range) << "09:00 lid=200\n";
  struct Case {
    std::vector<std::string> args;
    std::string message;
  };
  const std::string dir = data.string();
  const Case cases[] = {
      {{"weekend", "--data-dir", dir}, "unknown scenario \"weekend\""},
      {{(root / "missing.txt").string(), "--data-dir", dir}, "cannot read the scenario file"},
      {{bad.string(), "--data-dir", dir}, "line 2: unknown field \"slouch\""},
      {{range.string(), "--data-dir", dir}, "line 1: field \"lid\" must be a number from 0 to 180"},
      {{"--mode", "fast", "--data-dir", dir}, "--mode is interval or live"},
      {{"--speed", "-3", "--data-dir", dir}, "--speed takes a positive number"},
      {{"--sensitivity", "loose", "--data-dir", dir}, "--sensitivity is strict, normal or relaxed"},
      {{"--style", "shake", "--data-dir", dir}, "--style is border or blur"},
      {{"--colour", "red", "--data-dir", dir}, "unknown option --colour"},
      {{"--data-dir"}, "--data-dir needs a value"},
      {{"workday", "live", "--data-dir", dir}, "only one scenario at a time"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.args), 2) << c.message;
    EXPECT_NE(err.str().find(c.message), std::string::npos) << err.str();
    EXPECT_TRUE(out.str().empty()) << c.message;
    EXPECT_FALSE(fs::exists(data)) << c.message;
  }
}

TEST_F(SimulateCommand, ASecondRunContinuesTheFirst) {
  ASSERT_EQ(run({"first-run", "--data-dir", data.string()}), 0) << err.str();
  EXPECT_NE(out.str().find("창: 바른 자세 배우기 안내"), std::string::npos);
  EXPECT_TRUE(fs::exists(data / "settings.json"));
  ASSERT_EQ(run({"workday", "--data-dir", data.string(), "--style", "blur"}), 0) << err.str();
  EXPECT_EQ(out.str().find("바른 자세 배우기 안내"), std::string::npos);
  EXPECT_NE(out.str().find("화면 흐림"), std::string::npos);
  EXPECT_EQ(out.str().find("빨간 테두리"), std::string::npos);
  EXPECT_NE(out.str().find("── 요약 ──"), std::string::npos);
}

}  // namespace
}  // namespace sodam
