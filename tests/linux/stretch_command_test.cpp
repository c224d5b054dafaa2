#include "linux/stretch_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "linux/store_testing.h"
#include "posture/posture_log.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct StretchCommand : ::testing::Test {
  fs::path data =
      fs::temp_directory_path() /
      ("sodam-stretch-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
       ::testing::UnitTest::GetInstance()->current_test_info()->name());
  std::ostringstream out;
  std::ostringstream err;

  void TearDown() override { fs::remove_all(data); }

  int run(std::vector<std::string> args) {
    out.str("");
    err.str("");
    return runStretch(args, out, err);
  }
  bool said(const std::string& text) const { return out.str().find(text) != std::string::npos; }
};

TEST_F(StretchCommand, BadInputIsNamedAndWritesNothing) {
  const std::string dir = data.string();
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"yoga", "--data-dir", dir}, "unknown stretch \"yoga\"; the library has chinTuck"},
      {{"--follower", "lazy", "--data-dir", dir}, "--follower is good, poor or absent"},
      {{"--follower"}, "--follower needs a value"},
      {{"--speed", "2"}, "unknown option --speed"},
  };
  for (const auto& [args, message] : cases) {
    EXPECT_EQ(run(args), 2) << message;
    EXPECT_NE(err.str().find(message), std::string::npos) << err.str();
    EXPECT_TRUE(out.str().empty()) << message;
    EXPECT_FALSE(fs::exists(data)) << message;
  }
}

TEST_F(StretchCommand, RunsTheChosenStretchesAndRecordsTheRoutine) {
  ASSERT_EQ(run({"chinTuck", "eyes", "--data-dir", data.string()}), 0) << err.str();
  EXPECT_TRUE(said("소담자리 스트레칭: 턱 당기기, 20초 먼 곳 보기 · 따라 하는 사람: good"));
  // No posture learned yet: the guide comes first, then the routine.
  EXPECT_TRUE(said("창: 바른 자세 배우기 안내"));
  EXPECT_TRUE(said("스트레칭 1/2 턱 당기기 · 시작, 목표 4회"));
  EXPECT_TRUE(said("  \"창밖이나 먼 곳을 편하게 바라봐요\""));
  EXPECT_TRUE(said("── 스트레칭 요약 ──"));
  EXPECT_TRUE(said("20초 먼 곳 보기 · 1/1회 · 정확도 100% · 20초"));

  auto defaults = testing::openStore(data);
  ASSERT_TRUE(defaults);
  const PostureLog log(*defaults, SystemClock(), Calendar());
  ASSERT_EQ(log.stretches().size(), 1u);
  EXPECT_EQ(log.stretches().back().ids, (std::vector<std::string>{"chinTuck", "eyes"}));
  EXPECT_EQ(log.stretches().back().seconds, 50);
}

TEST_F(StretchCommand, NobodyInTheChairIsCountedAsMissing) {
  ASSERT_EQ(run({"neckExt", "--follower", "absent", "--data-dir", data.string()}), 0) << err.str();
  EXPECT_TRUE(said("하늘 보기 · 0/3회 · 정확도 0% · 30초 · 안 보인 시간 30초"));
  EXPECT_TRUE(said("모두 30초 · 정확도 0%"));
}

}  // namespace
}  // namespace sodam
