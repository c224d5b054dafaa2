#include "linux/desk_command.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include <unistd.h>

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct DeskCommand : ::testing::Test {
  fs::path svg = fs::temp_directory_path() /
                 ("sodam-desk-" + std::to_string(::getpid()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".svg");
  std::ostringstream out;
  std::ostringstream err;

  void TearDown() override { fs::remove(svg); }
  int run(std::vector<std::string> args) {
    out.str("");
    err.str("");
    return runDesk(args, out, err);
  }
  bool said(const std::string& text) const { return out.str().find(text) != std::string::npos; }
  static int count(const std::string& text, const std::string& piece) {
    int n = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
      ++n;
    return n;
  }
};

TEST_F(DeskCommand, TheDefaultLaptopShowsItsPointsAndWhatToFix) {
  ASSERT_EQ(run({}), 0) << err.str();
  EXPECT_TRUE(said("내 자리 · 노트북만 · 키 170cm"));
  EXPECT_TRUE(said("눈             -15.0     121.8"));
  EXPECT_TRUE(said("시선 35° 아래 · 화면까지 65cm · 화면 위끝이 눈보다 29cm 아래"));
  EXPECT_TRUE(said("맞춰 볼 곳 3군데"));
  EXPECT_TRUE(said("  ✗ 화면 높이: 화면 위끝이 눈보다 29센티 낮아요"));
  EXPECT_TRUE(said("  ✓ 발 받침: 발이 바닥을 든든히 디뎌요"));
}

TEST_F(DeskCommand, KindHeightAndFieldsShapeTheSetup) {
  ASSERT_EQ(run({"--kind", "노트북 거치대", "--height", "160", "stand=20"}), 0) << err.str();
  EXPECT_TRUE(said("내 자리 · 노트북 거치대 · 키 160cm"));
  // The kind comes first, so a field given before it still counts.
  ASSERT_EQ(run({"seat=40", "--kind", "monitor", "feet=dangle"}), 0) << err.str();
  EXPECT_TRUE(said("엉덩이         -24.0      49.0"));
  EXPECT_TRUE(said("발이 바닥에서 3센티 떠요"));
}

TEST_F(DeskCommand, BadInputNamesWhatFits) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"--kind", "hammock"}, "unknown kind \"hammock\""},
      {{"--kind", "standing", "seat=40"},
       "\"seat\" is no field of standing; it has height gap desk depth stand tilt monitorSize "
       "shape\n"},
      {{"seat=99"}, "seat is a number from 30 to 70"},
      {{"seat=high"}, "seat is a number from 30 to 70"},
      {{"shape=round"}, "shape is wide, ultra or vertical"},
      {{"seat"}, "\"seat\" is not FIELD=VALUE"},
      {{"--svg"}, "--svg needs a value"},
      {{"--depth", "3"}, "unknown option --depth"},
  };
  for (const auto& [args, message] : cases) {
    EXPECT_EQ(run(args), 2) << message;
    EXPECT_NE(err.str().find(message), std::string::npos) << err.str();
    EXPECT_TRUE(out.str().empty());
  }
}

TEST_F(DeskCommand, TheSvgIsOneDocumentWithAGroupForEachPart) {
  ASSERT_EQ(run({"--kind", "laptopMonitor", "--svg", svg.string()}), 0) << err.str();
  EXPECT_TRUE(said("옆모습을 저장했어요: " + svg.string()));
  std::ifstream file(svg);
  const std::string text((std::istreambuf_iterator<char>(file)), {});
  EXPECT_EQ(text.rfind(R"(<svg xmlns="http://www.w3.org/2000/svg" width=")", 0), 0u);
  EXPECT_EQ(text.substr(text.size() - 7), "</svg>\n");
  EXPECT_EQ(count(text, "<g "), count(text, "</g>"));
  for (const char* part : {"floor", "chair", "desk", "keyboard", "monitor", "laptop", "body",
                           "head", "arm", "sight", "labels"})
    EXPECT_NE(text.find(std::string(R"(<g class=")") + part + "\">"), std::string::npos) << part;
  EXPECT_NE(text.find("노트북과 모니터 · 키 170cm</text>"), std::string::npos);
  EXPECT_NE(text.find(R"(stroke-dasharray="6 5")"), std::string::npos);
  EXPECT_NE(text.find(">팔꿈치 "), std::string::npos);
  EXPECT_EQ(text.find("nan"), std::string::npos);

  EXPECT_EQ(run({"--svg", "/nonexistent/folder/side.svg"}), 1);
  EXPECT_NE(err.str().find("cannot write /nonexistent/folder/side.svg"), std::string::npos);
}

}  // namespace
}  // namespace sodam
