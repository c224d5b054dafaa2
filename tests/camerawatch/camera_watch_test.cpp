#include "camerawatch/camera_watch.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "camerawatch/watch_harness.h"

namespace sodam {
namespace {

const std::string meetly = R"({"name":"Meetly","id":"com.example.meetly"})";
const std::string self = R"({"name":"소담자리","id":"kr.lumenfold.sodamjari"})";

std::string indicatorLine(double time, const std::string& users) {
  return "{\"time\":" + decimalSeconds(time) + ",\"cams\":[" + users + "]}";
}

std::string requestLine(const std::string& key, double time, const std::string& path,
                        bool preflight, const std::string& extra = "") {
  return R"({"client":false,"identifier":"com.x","key":")" + key + R"(","path":")" + path +
         R"(","pid":9,"preflight":)" + (preflight ? "true" : "false") +
         ",\"time\":" + decimalSeconds(time) + extra + "}";
}

class CameraWatchTest : public ::testing::Test {
 protected:
  CameraWatchTest() { h.catalog.paths["com.example.meetly"] = "/Applications/Meetly.app"; }
  double unixNow() const { return h.clock.now().unixSeconds(); }
  std::vector<std::string> commandsStartingWith(char letter) const {
    std::vector<std::string> found;
    for (const auto& c : h.helper->commands)
      if (!c.empty() && c.front() == letter) found.push_back(c);
    return found;
  }

  WatchHarness h;
};

TEST_F(CameraWatchTest, TheProgramsOwnCameraWindingDownIsNoEvent) {
  auto& watch = h.make();
  watch.start();
  watch.setSelfActive(true);
  h.devices.set(true);
  h.advance(30);
  watch.setSelfActive(false);
  h.advance(0.5);
  h.devices.set(true);  // a late report while the device still runs
  h.advance(0.5);
  h.devices.set(false);
  h.advance(5);
  EXPECT_TRUE(watch.events().empty());
  EXPECT_TRUE(h.announced.empty());
}

TEST_F(CameraWatchTest, AnotherApplicationIsNamedByTheIndicatorAtOnce) {
  auto& watch = h.make();
  watch.start();
  h.helper->responder = [&](const std::string& c) {
    return c.front() == 'I' ? std::vector<std::string>{indicatorLine(unixNow(), meetly)}
                            : std::vector<std::string>{};
  };
  h.devices.set(true);
  ASSERT_EQ(watch.events().size(), 1u);
  EXPECT_EQ(watch.events()[0].app, "확인 중");
  EXPECT_EQ(watch.statusLine(), "지금 다른 앱이 카메라 사용 중 · 확인 중");
  h.advance(0.3);
  ASSERT_EQ(h.announced.size(), 1u);
  EXPECT_EQ(h.announced[0], (std::pair<std::string, bool>{"Meetly", true}));
  EXPECT_EQ(watch.events()[0].path, "/Applications/Meetly.app");
  EXPECT_FALSE(watch.events()[0].suspicious);
  h.advance(61);
  h.devices.set(false);
  EXPECT_FALSE(watch.liveEvent());
  EXPECT_EQ(watch.events()[0].summary(), "카메라 켜짐 · 1분 1초 동안");
}

TEST_F(CameraWatchTest, BesideTheProgramsOwnCameraOnlyTheStreamSeesOthers) {
  auto& watch = h.make();
  watch.start();
  watch.setSelfActive(true);
  h.devices.set(true);
  h.advance(7.9);
  EXPECT_TRUE(commandsStartingWith('S').empty());  // the first 8 seconds go unseen
  h.advance(0.2);
  EXPECT_EQ(commandsStartingWith('S'), (std::vector<std::string>{"S 1"}));
  h.helper->onChunk("@" + indicatorLine(unixNow(), meetly + "," + self) + "\n");
  h.advance(0.1);
  ASSERT_TRUE(watch.liveEvent());
  EXPECT_EQ(watch.liveEvent()->app, "Meetly");
  ASSERT_EQ(h.announced.size(), 1u);
  EXPECT_TRUE(h.announced[0].second);
  // The indicator shows the program alone: the other use is over, although
  // the device still runs.
  h.advance(20);
  h.helper->onChunk("@" + indicatorLine(unixNow(), self) + "\n");
  h.advance(0.1);
  EXPECT_FALSE(watch.liveEvent());
  EXPECT_EQ(watch.events()[0].summary(), "카메라 켜짐 · 20초 동안");
  watch.setSelfActive(false);
  EXPECT_EQ(commandsStartingWith('S'), (std::vector<std::string>{"S 1", "S 0"}));
}

TEST_F(CameraWatchTest, AUseLeftOpenByAnEarlierRunHasNoKnownEnd) {
  {
    auto& watch = h.make();
    watch.start();
    h.devices.set(true);
    ASSERT_TRUE(watch.liveEvent());
  }
  auto& next = h.make();
  ASSERT_EQ(next.events().size(), 1u);
  EXPECT_FALSE(next.liveEvent());
  EXPECT_EQ(next.events()[0].summary(), "카메라 켜짐 · 끝난 시각 모름");
}

TEST_F(CameraWatchTest, WithoutAnIndicatorTheRecordsNameTheUseWithinTheLookback) {
  struct Case {
    double idleBefore;  // seconds the camera was idle before it came on
    double lookback;
  };
  for (const Case c : {Case{5, 10}, Case{30, 35}, Case{180, 60}}) {
    SCOPED_TRACE(c.idleBefore);
    WatchHarness fresh;
    auto& watch = fresh.make();
    watch.start();  // nothing runs: idle from now on
    fresh.advance(c.idleBefore);
    const double at = fresh.clock.now().unixSeconds();
    fresh.helper->responder = [&](const std::string& command) -> std::vector<std::string> {
      if (command.front() != 'C') return {};
      return {
          R"({"client":true,"identifier":"snap-tool","key":"c9@1","path":"/Users/me/Downloads/snap-tool","pid":9,"preflight":false,"time":1})"};
    };
    fresh.devices.set(true);
    fresh.advance(0.3 + 0.6 + 0.6 + 0.1);
    const auto& commands = fresh.helper->commands;
    ASSERT_FALSE(commands.empty());
    EXPECT_EQ(commands.back(),
              "C " + decimalSeconds(at - c.lookback) + " " + decimalSeconds(at + 2));
    ASSERT_EQ(fresh.announced.size(), 2u);  // first without a name, then with it
    EXPECT_EQ(fresh.announced[0], (std::pair<std::string, bool>{"확인 중", false}));
    EXPECT_EQ(fresh.announced[1], (std::pair<std::string, bool>{"snap-tool", true}));
    EXPECT_EQ(watch.events()[0].suspicious, "설치 폴더 밖 프로그램");
  }
}

TEST_F(CameraWatchTest, ThreeIndicatorReadingsBeforeTheRecords) {
  auto& watch = h.make();
  watch.start();
  h.devices.set(true);
  h.advance(2);
  std::vector<std::string> kinds;
  for (const auto& c : h.helper->commands)
    kinds.push_back(c.substr(0, 1));
  EXPECT_EQ(kinds, (std::vector<std::string>{"Q", "I", "I", "I", "C"}));
  EXPECT_EQ(watch.events().front().app, "알 수 없음");
}

TEST_F(CameraWatchTest, TheBestPermissionRecordNamesTheUse) {
  auto& watch = h.make();
  watch.start();
  h.helper->responder = [&](const std::string& command) -> std::vector<std::string> {
    if (command.front() != 'C') return {};
    const double t = unixNow();
    return {
        R"({"client":true,"identifier":"x","key":"c9@1","path":"/opt/x","pid":9,"preflight":false,"time":1})",
        requestLine("3.1@1", t - 3, "/Applications/Late.app/Contents/MacOS/Late", true),
        requestLine("3.2@1", t - 5, "/Applications/Real.app/Contents/MacOS/Real", false),
        requestLine("3.3@1", t - 9, "/Applications/Old.app/Contents/MacOS/Old", false)};
  };
  h.devices.set(true);
  h.advance(2);
  const auto live = watch.liveEvent();
  ASSERT_TRUE(live);
  EXPECT_EQ(live->app, "Real");
  EXPECT_EQ(live->path, "/Applications/Real.app/Contents/MacOS/Real");
  // The records joined the list as requests, the client record did not.
  EXPECT_EQ(watch.events().size(), 4u);
}

TEST_F(CameraWatchTest, WithoutALinkOnlyTheTimeIsKept) {
  WatchHarness bare(false);
  auto& watch = bare.make();
  watch.start();
  EXPECT_FALSE(watch.readsAppNames());
  EXPECT_EQ(watch.note(),
            "권한 기록을 읽지 못해 켜진 시각만 남겨요. 관리자 계정에서는 앱 이름까지 보여요.");
  bare.devices.set(true);
  bare.advance(1);
  ASSERT_EQ(bare.announced.size(), 1u);
  EXPECT_FALSE(bare.announced[0].second);
  EXPECT_EQ(watch.events()[0].app, "알 수 없음");
  bare.advance(4);
  bare.devices.set(false);
  EXPECT_EQ(watch.events()[0].summary(), "카메라 켜짐 · 5초 동안");
}

TEST_F(CameraWatchTest, ADeadHelperLeavesTheNameUnknown) {
  auto& watch = h.make();
  watch.start();
  h.helper->dies();
  h.advance(0.1);
  h.devices.set(true);
  h.advance(1);
  EXPECT_EQ(watch.events()[0].app, "알 수 없음");
  EXPECT_EQ(watch.note(),
            "권한 기록을 읽지 못해 켜진 시각만 남겨요. 관리자 계정에서는 앱 이름까지 보여요.");
}

TEST_F(CameraWatchTest, TheMachinesStateIsTheNoteAndStaysAfterTheName) {
  struct Case {
    const char* name;
    std::function<void(WatchHarness&)> set;
    const char* note;
  };
  const Case cases[] = {
      {"locked", [](WatchHarness& w) { w.power.setScreenLocked(true); },
       "화면이 잠긴 사이 켜졌어요"},
      {"session locked", [](WatchHarness& w) { w.powerSource.sessionLocked = true; },
       "화면이 잠긴 사이 켜졌어요"},
      {"dark", [](WatchHarness& w) { w.power.setDisplaysAsleep(true); },
       "화면이 꺼진 사이 켜졌어요"},
      {"away", [](WatchHarness& w) { w.powerSource.idle = 121; }, "자리를 비운 사이 켜졌어요"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    WatchHarness w;
    auto& watch = w.make();
    watch.start();
    c.set(w);
    w.helper->responder = [&](const std::string& command) -> std::vector<std::string> {
      if (command.front() != 'I') return {};
      return {indicatorLine(1, R"({"name":"x","id":"/Users/me/Downloads/x"})")};
    };
    w.catalog.paths["/Users/me/Downloads/x"] = "/Users/me/Downloads/x";
    w.devices.set(true);
    w.advance(0.5);
    EXPECT_EQ(watch.events()[0].app, "x");
    EXPECT_EQ(watch.events()[0].suspicious, c.note);
  }
}

TEST_F(CameraWatchTest, TenChecksOfOneApplicationAreOneEvent) {
  auto& watch = h.make();
  const double t = unixNow();
  h.helper->responder = [&](const std::string& command) {
    std::vector<std::string> lines;
    if (command.front() != 'Q') return lines;
    for (int i = 0; i < 10; ++i)
      lines.push_back(requestLine("4." + std::to_string(i) + "@1", t - 600 + i * 55,
                                  "/Applications/Cam.app/Contents/MacOS/Cam", true));
    return lines;
  };
  watch.start();
  h.advance(0.1);
  ASSERT_EQ(watch.events().size(), 1u);
  EXPECT_EQ(watch.events()[0].kind, WatchEvent::Kind::check);
  EXPECT_EQ(watch.events()[0].count, 10);
  EXPECT_EQ(watch.events()[0].summary(), "카메라 권한 확인 · 10회");
  EXPECT_EQ(h.store.seenKeys().size(), 10u);
  // The same records read again are not counted twice.
  watch.sweep();
  h.advance(0.1);
  EXPECT_EQ(watch.events()[0].count, 10);
}

TEST_F(CameraWatchTest, RequestsTakeTheActorsPathForTheNote) {
  auto& watch = h.make();
  const double t = unixNow();
  h.helper->responder = [&](const std::string& command) -> std::vector<std::string> {
    if (command.front() != 'Q') return {};
    return {requestLine("5.1@1", t - 10, "/Users/me/Applications/Tool.app/Contents/MacOS/Tool",
                        false, R"(,"allowed":true)"),
            requestLine("5.2@1", t - 20, "/Applications/A.app/Contents/MacOS/A", false,
                        R"(,"allowed":false,"actor":"/Users/me/Downloads/x")")};
  };
  watch.start();
  h.advance(0.1);
  ASSERT_EQ(watch.events().size(), 2u);
  EXPECT_EQ(watch.events()[0].summary(), "카메라 사용 요청 · 허용됨");
  EXPECT_EQ(watch.events()[0].id, "r:5.1@1");
  EXPECT_EQ(watch.events()[1].path, "/Users/me/Downloads/x");
  EXPECT_EQ(watch.events()[1].summary(), "카메라 사용 요청 · 거부됨 · 주의: 설치 폴더 밖 프로그램");
  EXPECT_EQ(watch.unseen(), 1);
  EXPECT_EQ(watch.statusLine(), "지난 하루 다른 앱 · 카메라 켜짐 0회 · 권한 요청 2건");
  watch.markSeen();
  EXPECT_EQ(watch.unseen(), 0);
}

TEST_F(CameraWatchTest, TheRecordKeepsFourHundredAndTheLiveUseThroughAClear) {
  nlohmann::json stored = nlohmann::json::array();
  for (int i = 0; i < 400; ++i) {
    WatchEvent e{"r:" + std::to_string(i),
                 WatchEvent::Kind::request,
                 h.clock.now() - 1000 - i,
                 std::nullopt,
                 "A",
                 "/x",
                 std::nullopt,
                 1,
                 i == 399 ? std::optional<std::string>("주의") : std::nullopt};
    stored.push_back(toJson(e));
  }
  h.store.setWatchEvents(stored);
  auto& watch = h.make();
  watch.start();
  h.devices.set(true);
  ASSERT_EQ(watch.events().size(), 400u);
  EXPECT_EQ(watch.events().back().id, "r:398");  // the oldest went, warning and all
  watch.clear();
  ASSERT_EQ(watch.events().size(), 1u);
  EXPECT_TRUE(watch.liveEvent());
  EXPECT_EQ(watchEventsFromJson(h.store.watchEvents()).size(), 1u);
}

TEST_F(CameraWatchTest, SweepsFollowPowerAndPause) {
  auto& watch = h.make();
  watch.start();
  EXPECT_EQ(commandsStartingWith('Q').size(), 1u);
  const Date firstSweep = h.clock.now();
  h.advance(599);
  EXPECT_EQ(commandsStartingWith('Q').size(), 1u);
  h.powerSource.battery = true;
  h.advance(2);
  ASSERT_EQ(commandsStartingWith('Q').size(), 2u);
  // From the last sweep, not two hours back.
  EXPECT_EQ(commandsStartingWith('Q')[1], "Q " + decimalSeconds(firstSweep.unixSeconds()) + " " +
                                              decimalSeconds(firstSweep.unixSeconds() + 600));
  h.advance(1798);  // the second sweep ran at 600 s
  EXPECT_EQ(commandsStartingWith('Q').size(), 2u);
  watch.setPaused(true);
  h.advance(3600);
  EXPECT_EQ(commandsStartingWith('Q').size(), 2u);
  watch.setPaused(false);
  h.advance(20.5);
  EXPECT_EQ(commandsStartingWith('Q').size(), 3u);
}

TEST(WatchEventTest, SummariesAndStoredShape) {
  const Date t = Date::fromUnix(1741078800);
  WatchEvent on{"A1",        WatchEvent::Kind::cameraOn, t, t + 59.6, "Meetly", "", std::nullopt, 1,
                std::nullopt};
  EXPECT_EQ(on.summary(), "카메라 켜짐 · 1분 0초 동안");
  on.end = t + 59.4;
  EXPECT_EQ(on.summary(), "카메라 켜짐 · 59초 동안");
  on.end.reset();
  on.count = 2;
  on.suspicious = "화면이 잠긴 사이 켜졌어요";
  EXPECT_EQ(on.summary(), "카메라 켜짐 · 지금 사용 중 · 2회 · 주의: 화면이 잠긴 사이 켜졌어요");
  const auto json = toJson(on);
  EXPECT_EQ(
      json.dump(),
      R"({"app":"Meetly","count":2,"id":"A1","kind":"cameraOn","path":"","suspicious":"화면이 잠긴 사이 켜졌어요","time":762771600.0})");
  EXPECT_EQ(watchEventFromJson(json), on);
  auto wrong = json;
  wrong["kind"] = "photo";
  EXPECT_FALSE(watchEventFromJson(wrong));
  wrong = json;
  wrong["end"] = "later";
  EXPECT_FALSE(watchEventFromJson(wrong));
}

TEST(CameraWatchNamesTest, AppNameAndOutside) {
  FakeCatalog catalog;
  EXPECT_EQ(CameraWatch::appName("/Applications/Meet Now.app/Contents/MacOS/meet", "", catalog),
            "Meet Now");
  EXPECT_EQ(CameraWatch::appName("/usr/local/bin/ffmpeg", "x", catalog), "ffmpeg");
  EXPECT_EQ(CameraWatch::appName("", "com.x", catalog), "com.x");
  EXPECT_EQ(CameraWatch::appName("", "", catalog), "알 수 없음");
  const auto folders = macInstallFolders("/Users/me");
  EXPECT_EQ(CameraWatch::outside("/Users/me/Downloads/x", folders), "설치 폴더 밖 프로그램");
  EXPECT_FALSE(CameraWatch::outside("/Users/me/Applications/x.app/Contents/MacOS/x", folders));
  EXPECT_FALSE(CameraWatch::outside("", folders));
  EXPECT_EQ(CameraWatch::outside("/Users/me/Applicationsx/y", folders), "설치 폴더 밖 프로그램");
}

}  // namespace
}  // namespace sodam
