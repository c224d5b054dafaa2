#include "platform/lockdown.h"

#include <gtest/gtest.h>

#include <regex.h>

#include <sstream>

#include "support/manual_scheduler.h"

namespace sodam {
namespace {

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    out.push_back(line);
  return out;
}

const char* const imageRule =
    R"((deny file-write* (regex #"\.(png|jpe?g|heic|heif|tiff?|bmp|gif|webp|mov|mp4|m4v|dng|raw)$")))";

TEST(LockdownProfileTest, LineByLine) {
  const auto profile =
      lines(Lockdown::profile("/Users/mina", "/private/var/folders/x/C", "com.example.sodamjari"));
  const std::vector<std::string> expected = {
      "(version 1)",
      "(allow default)",
      "(deny file-write*)",
      R"((allow file-write-data (literal "/dev/null") (literal "/dev/dtracehelper")))",
      "(deny process-exec)",
      R"((allow file-write* (subpath "/Users/mina/Library/Keychains")))",
      R"((allow file-write* (subpath "/private/var/folders/x/C/com.example.sodamjari")))",
      imageRule,
  };
  EXPECT_EQ(profile, expected);
}

TEST(LockdownProfileTest, UnknownPlacesAreLeftOutAndImagesStayLast) {
  struct Case {
    const char* name;
    std::optional<std::string> home, cache;
    std::string bundle;
    std::size_t count;
  };
  const Case cases[] = {
      {"no home", std::nullopt, "/c", "id", 7},
      {"no cache", "/h", std::nullopt, "id", 7},
      {"no identifier opens no whole cache", "/h", "/c", "", 7},
      {"neither", std::nullopt, std::nullopt, "id", 6},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto profile = lines(Lockdown::profile(c.home, c.cache, c.bundle));
    EXPECT_EQ(profile.size(), c.count);
    EXPECT_EQ(profile.back(), imageRule);
    EXPECT_EQ(profile[4], "(deny process-exec)");
  }
}

TEST(LockdownProfileTest, QuotesInAPathCannotEndTheString) {
  const auto profile = lines(Lockdown::profile(R"(/Users/a"b\c)", std::nullopt, "id"));
  EXPECT_EQ(profile[5], R"((allow file-write* (subpath "/Users/a\"b\\c/Library/Keychains")))");
}

// POSIX extended expressions, not std::regex: GCC 12 warns falsely inside
// <regex> when optimising with sanitizers (GCC bug 105616).
TEST(LockdownProfileTest, ImagePatternRefusesImageAndVideoNamesOnly) {
  regex_t pattern;
  ASSERT_EQ(regcomp(&pattern, std::string(Lockdown::imageExtensionPattern).c_str(),
                    REG_EXTENDED | REG_NOSUB),
            0);
  const auto matches = [&](const char* path) {
    return regexec(&pattern, path, 0, nullptr, 0) == 0;
  };
  for (const char* refused : {"/c/id/shot.png", "a.jpg", "a.jpeg", "a.tif", "a.tiff", "clip.mov",
                              "x.m4v", "x.raw", "archive.tar.gif"})
    EXPECT_TRUE(matches(refused)) << refused;
  for (const char* allowed : {"shot.pngx", "png", "a.jpeeg", "notes.png.txt", "a.mp3",
                              "Library/Preferences/x.plist", "pngfile"})
    EXPECT_FALSE(matches(allowed)) << allowed;
  regfree(&pattern);
}

class FakeConfinement : public Confinement {
 public:
  void ignoreBrokenPipe() override { calls.push_back("pipe"); }
  std::optional<std::string> homePath() const override { return "/Users/mina"; }
  std::optional<std::string> cachePath() const override { return "/cache"; }
  std::string bundleIdentifier() const override { return "app.id"; }
  bool apply(const std::string& text) override {
    calls.push_back("apply");
    applied = text;
    return accepts;
  }
  bool refusesImageFilesEverywhere() const override { return imagesEverywhere; }

  bool accepts = true;
  bool imagesEverywhere = true;
  std::vector<std::string> calls;
  std::string applied;
};

class LockdownTest : public ::testing::Test {
 protected:
  ManualClock clock;
  ManualScheduler scheduler{clock};
  FakeConfinement confinement;
};

TEST_F(LockdownTest, EngageAppliesTheProfileAfterSilencingBrokenPipes) {
  const auto lock = Lockdown::engage(confinement, scheduler);
  EXPECT_EQ(confinement.calls, (std::vector<std::string>{"pipe", "apply"}));
  EXPECT_EQ(confinement.applied, Lockdown::profile("/Users/mina", "/cache", "app.id"));
  EXPECT_TRUE(lock->sandboxed());
  EXPECT_NE(lock->summary(), "보안 잠금을 걸지 못했어요");

  confinement.accepts = false;  // refused: not fatal, only told on the settings page
  const auto refused = Lockdown::engage(confinement, scheduler);
  EXPECT_FALSE(refused->sandboxed());
  EXPECT_EQ(refused->summary(), "보안 잠금을 걸지 못했어요");
}

TEST_F(LockdownTest, TheSummarySaysWhereTheImageRuleRestsOnTheCode) {
  EXPECT_EQ(Lockdown::engage(confinement, scheduler)->summary(),
            "보안 잠금이 걸려 있어요 · 사진과 영상은 파일로 남지 않아요");
  confinement.imagesEverywhere = false;  // a confinement that can't tell files by name
  EXPECT_EQ(Lockdown::engage(confinement, scheduler)->summary(),
            "보안 잠금이 걸려 있어요 · 프로그램을 실행하지 못하고 기록 폴더 밖에는 쓰지 못해요 · "
            "기록 폴더 안에 사진과 영상을 남기지 않는 건 코드가 지켜요");
  confinement.accepts = false;
  EXPECT_EQ(Lockdown::engage(confinement, scheduler)->summary(), "보안 잠금을 걸지 못했어요");
}

TEST_F(LockdownTest, ChecksRunAtOnceThenEveryMinuteAndReportOneThreat) {
  const auto lock = Lockdown::engage(confinement, scheduler);
  std::vector<Threat> told;
  lock->onThreat = [&](const Threat& threat) { told.push_back(threat); };
  int runs = 0;
  lock->watch({{"third run finds it", [&]() -> std::optional<Threat> {
                  if (++runs < 3) return std::nullopt;
                  return Threat{"debugger"};
                }}});
  EXPECT_EQ(runs, 1);
  scheduler.advance(Lockdown::checkIntervalSeconds - 1);
  EXPECT_EQ(runs, 1);
  scheduler.advance(1 + Scheduler::toleranceFor(Lockdown::checkIntervalSeconds));
  EXPECT_EQ(runs, 2);
  scheduler.advance(Lockdown::checkIntervalSeconds * 2);
  EXPECT_EQ(runs, 3);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].reason, "debugger");
  EXPECT_EQ(lock->threat()->reason, "debugger");

  scheduler.advance(Lockdown::checkIntervalSeconds * 10);
  EXPECT_EQ(runs, 3) << "checks stop once the camera is revoked";
  lock->watch({{"again", [&]() -> std::optional<Threat> { return Threat{"again"}; }}});
  EXPECT_EQ(told.size(), 1u);
}

TEST_F(LockdownTest, ThreatAtOnceLeavesNoTimerAndNoChecksLeaveNoThreat) {
  const auto lock = Lockdown::engage(confinement, scheduler);
  int told = 0;
  lock->onThreat = [&](const Threat&) { ++told; };
  const QuietProcess quiet;
  lock->watch(hardeningChecks(quiet));  // the product's own list, on a harmless process
  scheduler.advance(Lockdown::checkIntervalSeconds * 3);
  EXPECT_EQ(told, 0);
  EXPECT_FALSE(lock->threat());

  lock->watch({{"at once", [] { return std::optional<Threat>(Threat{"tampered"}); }}});
  EXPECT_EQ(told, 1);
  EXPECT_EQ(scheduler.activeTimers(), 0u);
}

struct FakeProcess final : ProcessInspector {
  bool tracer = false;
  std::string injected;
  std::optional<bool> signature;
  bool traced() const override { return tracer; }
  std::string injectedLibraries() const override { return injected; }
  std::optional<bool> signatureValid() const override { return signature; }
};

TEST(HardeningChecks, EachFindsItsOwnThreatAndAnUnsignedBuildIsNone) {
  struct Case {
    FakeProcess process;
    std::optional<std::string> reason;
  };
  const auto traced = [] {
    FakeProcess p;
    p.tracer = true;
    return p;
  };
  const auto injected = [] {
    FakeProcess p;
    p.injected = "/tmp/libspy.so";
    return p;
  };
  const auto signature = [](std::optional<bool> valid) {
    FakeProcess p;
    p.signature = valid;
    return p;
  };
  const Case cases[] = {
      {FakeProcess{}, std::nullopt},
      {traced(), "디버거가 이 앱을 들여다보고 있어요"},
      {injected(), "다른 라이브러리가 이 앱에 끼어들었어요"},
      {signature(false), "앱의 서명이 맞지 않아요"},
      {signature(true), std::nullopt},
      {signature(std::nullopt), std::nullopt},
  };
  for (const auto& c : cases) {
    ManualClock clock{Date{0}};
    ManualScheduler scheduler{clock};
    NoConfinement confinement;
    const auto lock = Lockdown::engage(confinement, scheduler);
    lock->watch(hardeningChecks(c.process));
    EXPECT_EQ(lock->threat() ? std::optional(lock->threat()->reason) : std::nullopt, c.reason)
        << (c.reason ? *c.reason : "none");
  }
}

}  // namespace
}  // namespace sodam
