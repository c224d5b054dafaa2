#include "linux/simulate_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "linux/temp_dir.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;
using namespace sodam::testing;

struct SimulateCommand : ::testing::Test {
  TempDir root;
  fs::path data = root / "data";
  std::ostringstream out;
  std::ostringstream err;

  int run(std::vector<std::string> args) {
    out.str("");
    err.str("");
    return runSimulate(args, out, err);
  }
};

TEST_F(SimulateCommand, BadInputIsNamedAndWritesNothing) {
  const std::string dir = data.string();
  const auto file = [&](const std::string& name, const std::string& text) {
    writeFile(root / name, text);
    return (root / name).string();
  };
  const std::string nothing =
      "nothing happens: a scenario needs at least one timed line, such as \"09:00 present=yes\"";
  const std::string longName(300, 'x');
  struct Case {
    std::vector<std::string> args;
    std::string message;
  };
  const Case cases[] = {
      {{"weekend", "--data-dir", dir}, "unknown scenario \"weekend\""},
      {{"wee\x1b[2Jkend\n", "--data-dir", dir}, "unknown scenario \"wee\\x1b[2Jkend\\n\""},
      {{longName, "--data-dir", dir}, "unknown scenario \"" + std::string(80, 'x') + "…\";"},
      {{(root / "missing.txt").string(), "--data-dir", dir},
       "cannot read the scenario file " + (root / "missing.txt").string() +
           ": No such file or directory"},
      {{file("bad.txt", "09:00 present=yes\n09:30 slouch=4\n"), "--data-dir", dir},
       "line 2: unknown field \"slouch\""},
      {{file("range.txt", "09:00 lid=200\n"), "--data-dir", dir},
       "line 1: field \"lid\" must be a number from 0 to 180"},
      {{file("empty.txt", ""), "--data-dir", dir}, nothing},
      {{file("blank.txt", "\n  \n\t\r\n"), "--data-dir", dir}, nothing},
      {{file("mark.txt", "\xEF\xBB\xBF\n"), "--data-dir", dir}, nothing},
      {{"--mode", "fast", "--data-dir", dir}, "--mode is interval or live"},
      {{"--speed", "-3", "--data-dir", dir}, "--speed takes simulated seconds per real second"},
      {{"--speed", "0.001", "--data-dir", dir}, "from 0.01 to 1000000"},
      {{"--speed", "2e6", "--data-dir", dir}, "from 0.01 to 1000000"},
      {{"--speed", "inf", "--data-dir", dir}, "from 0.01 to 1000000"},
      {{"--speed", "nan", "--data-dir", dir}, "from 0.01 to 1000000"},
      {{"--sensitivity", "loose", "--data-dir", dir}, "--sensitivity is strict, normal or relaxed"},
      {{"--style", "shake", "--data-dir", dir}, "--style is border or blur"},
      {{"--colour", "red", "--data-dir", dir}, "unknown option --colour"},
      {{"--data-dir", dir, "--colour"}, "unknown option --colour"},
      {{"--data-dir"}, "--data-dir needs a value"},
      {{"--data-dir", ""}, "--data-dir needs a folder, not an empty name"},
      {{"workday", "live", "--data-dir", dir}, "only one scenario at a time: live"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.args), 2) << c.message;
    EXPECT_NE(err.str().find(c.message), std::string::npos) << err.str();
    EXPECT_TRUE(out.str().empty()) << c.message;
    EXPECT_FALSE(fs::exists(data)) << c.message;
  }
}

TEST_F(SimulateCommand, ASecondRunContinuesTheFirstOnTheNextDay) {
  ASSERT_EQ(run({"first-run", "--data-dir", data.string()}), 0) << err.str();
  EXPECT_NE(out.str().find("창: 바른 자세 배우기 안내"), std::string::npos);
  const std::string firstDay = out.str().substr(0, out.str().find('\n'));
  ASSERT_EQ(run({"workday", "--data-dir", data.string(), "--style", "blur"}), 0) << err.str();
  EXPECT_NE(out.str().substr(0, out.str().find('\n')), firstDay);
  EXPECT_EQ(out.str().find("바른 자세 배우기 안내"), std::string::npos);
  EXPECT_NE(out.str().find("화면 흐림"), std::string::npos);
  EXPECT_EQ(out.str().find("빨간 테두리"), std::string::npos);
  EXPECT_NE(out.str().find("── 요약 ──"), std::string::npos);
  EXPECT_TRUE(err.str().empty()) << err.str();
  EXPECT_EQ(filesIn(data), std::vector<std::string>{"settings.db"});
}

}  // namespace
}  // namespace sodam
