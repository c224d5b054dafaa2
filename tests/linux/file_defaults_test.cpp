#include "linux/file_defaults.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace sodam {
namespace {

namespace fs = std::filesystem;

class FileDefaultsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "sodam-defaults-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    dir = pattern;
  }
  void TearDown() override { fs::remove_all(dir); }

  std::string read(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  }
  void write(const fs::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
  }
  std::vector<std::string> files() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  fs::path dir;
};

TEST_F(FileDefaultsTest, EveryKindReadsBackAfterARestart) {
  Bytes everyByte;
  for (int b = 0; b < 256; ++b)
    everyByte.push_back(static_cast<std::uint8_t>(b));
  const std::vector<std::pair<std::string, DefaultsValue>> values{
      {"flag", true},
      {"count", std::int64_t{-9'007'199'254'740'993}},
      {"ratio", 2.0},
      {"name", std::string("소담자리 \"quoted\"\n")},
      {"names", std::vector<std::string>{"a", "", "ㄱ"}},
      {"when", Date{757'382'400.125}},
      {"bytes", everyByte},
      {"one", Bytes{'x'}},
      {"empty", Bytes{}},
      {"days", IntDictionary{{"2024-06-12", 3}, {"x", -1}}},
  };
  {
    FileDefaults defaults(dir);
    EXPECT_EQ(defaults.loadState(), FileDefaults::LoadState::missing);
    for (const auto& [key, value] : values)
      defaults.set(key, value);
  }
  FileDefaults reopened(dir);
  EXPECT_EQ(reopened.loadState(), FileDefaults::LoadState::loaded);
  for (const auto& [key, value] : values)
    EXPECT_EQ(reopened.object(key), value) << key;
  EXPECT_TRUE(reopened.date("ratio").wrongType);
}

TEST_F(FileDefaultsTest, DocumentIsPlainJsonWithTaggedDatesAndData) {
  FileDefaults defaults(dir);
  defaults.setBool("enabled", false);
  defaults.setDate("workWrapped", Date{12.5});
  defaults.setData("postureLog", Bytes{'[', ']'});
  defaults.setDictionary("doraniDays", {{"d", 2}});
  defaults.setDouble("nan", std::nan(""));
  EXPECT_EQ(nlohmann::json::parse(read(defaults.path())),
            nlohmann::json::parse(R"({"enabled": false, "workWrapped": {"date": 12.5},
                                      "postureLog": {"data": "W10="},
                                      "doraniDays": {"dictionary": {"d": 2}}})"));
  EXPECT_EQ(files(), (std::vector<std::string>{"settings.json", "settings.lock"}));
}

TEST_F(FileDefaultsTest, FailedWriteLeavesTheOldDocumentAndNoTemporaryFile) {
  bool fail = false;
  FileDefaults defaults(dir, [&](int fd, std::string_view bytes) {
    if (fail) bytes = bytes.substr(0, bytes.size() / 2);
    bool whole = ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    return whole && !fail;
  });
  defaults.setString("kept", "old");
  std::string before = read(defaults.path());

  fail = true;
  defaults.setString("kept", "new");
  defaults.setData("big", Bytes(200'000, 7));
  EXPECT_FALSE(defaults.lastWriteSucceeded());
  EXPECT_EQ(read(defaults.path()), before);
  EXPECT_EQ(files(), (std::vector<std::string>{"settings.json", "settings.lock"}));
  EXPECT_EQ(defaults.string("kept").value, "new") << "memory stays ahead of the file";

  fail = false;
  defaults.setBool("later", true);
  FileDefaults reopened(dir);
  EXPECT_EQ(reopened.string("kept").value, "new");
  EXPECT_EQ(reopened.data("big").value, Bytes(200'000, 7));
}

TEST_F(FileDefaultsTest, DamagedDocumentIsKeptAsideAndReadsAsDefaults) {
  fs::create_directories(dir);
  const std::string damaged = R"({"enabled": tru)";
  write(dir / "settings.json", damaged);
  {
    FileDefaults defaults(dir);
    EXPECT_EQ(defaults.loadState(), FileDefaults::LoadState::damaged);
    EXPECT_TRUE(defaults.boolean("enabled").absent());
    EXPECT_EQ(defaults.keptAside(), dir / "settings.json.damaged-1");
    EXPECT_EQ(read(dir / "settings.json.damaged-1"), damaged);
    defaults.setBool("enabled", false);

    // Damaged behind this object's back: kept aside before the next write.
    write(dir / "settings.json", "[1, 2]");
    defaults.setBool("guideDone", true);
    EXPECT_EQ(read(dir / "settings.json.damaged-2"), "[1, 2]");
  }
  FileDefaults reopened(dir);
  EXPECT_EQ(reopened.boolean("enabled").value, false);
  EXPECT_EQ(reopened.boolean("guideDone").value, true);
}

TEST_F(FileDefaultsTest, TwoStoresOnOneFileKeepEachOthersKeys) {
  FileDefaults first(dir);
  FileDefaults second(dir);
  first.setInteger("a", 1);
  second.setInteger("b", 2);
  first.setInteger("c", 3);
  second.remove("a");
  first.setInteger("d", 4);
  EXPECT_EQ(second.integer("d").value, 4) << "reads see the other's writes";

  FileDefaults third(dir);
  EXPECT_TRUE(third.integer("a").absent());
  EXPECT_EQ(third.integer("b").value, 2);
  EXPECT_EQ(third.integer("c").value, 3);
  EXPECT_EQ(third.integer("d").value, 4);
}

TEST_F(FileDefaultsTest, MembersOfUnknownShapeAreKeptUntouched) {
  fs::create_directories(dir);
  write(dir / "settings.json", R"({"future": {"kind": [1, {"x": null}]}, "n": 1})");
  FileDefaults defaults(dir);
  EXPECT_FALSE(defaults.object("future"));
  defaults.setInteger("n", 2);
  EXPECT_EQ(nlohmann::json::parse(read(defaults.path()))["future"],
            nlohmann::json::parse(R"({"kind": [1, {"x": null}]})"));
}

TEST(FileDefaultsDirectoryTest, FollowsTheConfigHomeRules) {
  EXPECT_EQ(FileDefaults::defaultDirectory("/x/cfg", "/home/u"), fs::path("/x/cfg/sodamjari"));
  EXPECT_EQ(FileDefaults::defaultDirectory("relative", "/home/u"),
            fs::path("/home/u/.config/sodamjari"));
  EXPECT_EQ(FileDefaults::defaultDirectory("", "/home/u"), fs::path("/home/u/.config/sodamjari"));
  EXPECT_EQ(FileDefaults::defaultDirectory(nullptr, nullptr), std::nullopt);
}

}  // namespace
}  // namespace sodam
