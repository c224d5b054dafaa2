#include "camerawatch/log_helper.h"

#include <gtest/gtest.h>

#include <sstream>

#include "camerawatch/log_fixtures.h"
#include "camerawatch/unified_log.h"

namespace sodam {
namespace {

// Sources that answer from fixed lists and remember what they were asked.
class FixedSources final : public CameraSources {
 public:
  std::vector<CameraRecord> clientList, requestList;
  std::optional<IndicatorUpdate> reading;
  std::vector<std::string> asked;
  StreamHandler handler;
  int stops = 0;

  std::vector<CameraRecord> clients(double from, double to) override {
    asked.push_back("clients " + decimalSeconds(from) + " " + decimalSeconds(to));
    return clientList;
  }
  std::vector<CameraRecord> requests(double from, double to) override {
    asked.push_back("requests " + decimalSeconds(from) + " " + decimalSeconds(to));
    return requestList;
  }
  std::optional<IndicatorUpdate> indicator(double, double) override { return reading; }
  void startStream(StreamHandler h) override { handler = std::move(h); }
  void stopStream() override {
    handler = nullptr;
    ++stops;
  }
};

CameraRecord record(bool client, std::string key) {
  CameraRecord r;
  r.client = client;
  r.time = 1741046401.25;
  r.key = std::move(key);
  r.identifier = "Meetly";
  r.path = "/Applications/Meetly.app/Contents/MacOS/Meetly";
  r.pid = 812;
  return r;
}

class LogHelperTest : public ::testing::Test {
 protected:
  std::string answer(const std::string& line) {
    out.str("");
    helper.answer(line);
    return out.str();
  }

  FixedSources sources;
  std::ostringstream out;
  LogHelper helper{sources, out};
};

TEST_F(LogHelperTest, AnythingMalformedGetsTheTerminatorAlone) {
  sources.requestList = {record(false, "1.1@1")};
  for (const char* line : {"", "   ", "X 1 2", "Q 5", "Q 5 3", "Q 5 5", "Q 1 2 3", "QQ 1 2",
                           "Q one 2", "Q 1 2x", "Q nan 2", "Q 1 inf", "S", "S 1 2", "q 1 2"}) {
    SCOPED_TRACE(line);
    EXPECT_EQ(answer(line), ".\n");
  }
  EXPECT_TRUE(sources.asked.empty());
}

TEST_F(LogHelperTest, ClientRecordsComeBeforeRequests) {
  sources.clientList = {record(true, "c812@1741046401")};
  sources.requestList = {record(false, "177.41@1741046401")};
  const auto text = answer("C  1741046400.5\t1741046460");
  EXPECT_EQ(sources.asked, (std::vector<std::string>{"clients 1741046400.5 1741046460",
                                                     "requests 1741046400.5 1741046460"}));
  std::istringstream lines(text);
  std::string first, second, end;
  std::getline(lines, first);
  std::getline(lines, second);
  std::getline(lines, end);
  EXPECT_EQ(decodeCameraRecord(first), sources.clientList[0]);
  EXPECT_EQ(decodeCameraRecord(second), sources.requestList[0]);
  EXPECT_EQ(end, ".");
  // Requests alone for Q; optional keys are left out of the line.
  EXPECT_EQ(
      answer("Q 1 2"),
      R"({"client":false,"identifier":"Meetly","key":"177.41@1741046401","path":"/Applications/Meetly.app/Contents/MacOS/Meetly","pid":812,"preflight":false,"time":1741046401.25})"
      "\n.\n");
}

TEST_F(LogHelperTest, IndicatorAnswersAtMostOneLine) {
  EXPECT_EQ(answer("I 1 2"), ".\n");
  sources.reading = IndicatorUpdate{3.5, {}};
  EXPECT_EQ(answer("I 1 2"), "{\"cams\":[],\"time\":3.5}\n.\n");
}

TEST_F(LogHelperTest, StreamLinesAreMarkedAndStopAtTheEndOfInput) {
  EXPECT_EQ(answer("S 1"), ".\n");
  ASSERT_TRUE(sources.handler);
  out.str("");
  sources.handler(IndicatorUpdate{7, {{"Meetly", "com.example.meetly"}}});
  EXPECT_EQ(out.str(),
            "@{\"cams\":[{\"id\":\"com.example.meetly\",\"name\":\"Meetly\"}],\"time\":7.0}\n");
  EXPECT_EQ(answer("S 0"), ".\n");
  EXPECT_EQ(sources.stops, 1);
  std::istringstream in("S 1\nI 5 9\n");
  out.str("");
  EXPECT_EQ(helper.run(in), 0);
  EXPECT_EQ(out.str(), ".\n.\n");
  EXPECT_EQ(sources.stops, 2);
}

// The log tool as a script: what `show` prints for each predicate, and the
// stream's chunks played back on demand.
class ScriptedLogTool final : public LogTool {
 public:
  std::map<std::string, std::string> output;
  std::vector<std::vector<std::string>> calls;
  ChunkHandler stream;
  bool launches = true;

  std::string show(const std::string& start, const std::string& end,
                   const std::string& predicate) override {
    calls.push_back({start, end, predicate});
    return output[predicate];
  }
  bool startStream(const std::string& predicate, ChunkHandler onChunk) override {
    calls.push_back({"stream", predicate});
    if (launches) stream = std::move(onChunk);
    return launches;
  }
  void stopStream() override { stream = nullptr; }
};

class UnifiedLogTest : public ::testing::Test {
 protected:
  ScriptedLogTool tool;
  ManualClock clock{Date::fromUnix(1741046400)};
  UnifiedLog log{
      tool,
      HelperSelf{500, "/Applications/SodamJari.app/Contents/MacOS/SodamJari", macSystemFolders()},
      TimeZone::fixed(9 * 3600), clock};
};

TEST_F(UnifiedLogTest, EachSourceItsPredicateWordForWord) {
  tool.output[std::string(UnifiedLog::cameraStackPredicate)] = fixtures::cameraStack;
  tool.output[std::string(UnifiedLog::permissionPredicate)] = fixtures::permissionDaemon;
  EXPECT_EQ(log.clients(1741046400, 1741046460.7).size(), 2u);
  EXPECT_EQ(log.requests(1741046400, 1741046460).size(), 1u);
  EXPECT_FALSE(log.indicator(1741046400, 1741046460));
  ASSERT_EQ(tool.calls.size(), 3u);
  EXPECT_EQ(
      tool.calls[0],
      (std::vector<std::string>{
          "2025-03-04 09:00:00", "2025-03-04 09:01:00",
          R"(subsystem == "com.apple.cmio" AND eventMessage CONTAINS "CMIO_DAL_System.cpp")"}));
  EXPECT_EQ(tool.calls[1][2], R"(process == "tccd" AND eventMessage BEGINSWITH "AUTHREQ_")");
  EXPECT_EQ(
      tool.calls[2][2],
      R"(subsystem == "com.apple.controlcenter" AND category == "sensor-indicators" AND eventMessage BEGINSWITH "Sorted active attributions")");
}

TEST_F(UnifiedLogTest, StreamCutsLinesAcrossChunksAndStampsThemNow) {
  std::vector<IndicatorUpdate> updates;
  log.startStream([&](const IndicatorUpdate& u) { updates.push_back(u); });
  ASSERT_TRUE(tool.stream);
  const std::string text = fixtures::indicatorStream;
  tool.stream(text.substr(0, 130));
  tool.stream(text.substr(130, 200));
  clock.advance(3);
  tool.stream(text.substr(330));
  ASSERT_EQ(updates.size(), 2u);
  EXPECT_EQ(updates[0].cams.size(), 2u);
  EXPECT_TRUE(updates[1].cams.empty());
  EXPECT_EQ(updates[1].time, 1741046403);
}

TEST_F(UnifiedLogTest, AStreamStaysRecordedUntilStopped) {
  log.startStream([](const IndicatorUpdate&) {});
  log.startStream([](const IndicatorUpdate&) {});
  EXPECT_EQ(tool.calls.size(), 1u);  // the second start does nothing
  log.stopStream();
  tool.launches = false;
  log.startStream([](const IndicatorUpdate&) {});
  log.startStream([](const IndicatorUpdate&) {});
  EXPECT_EQ(tool.calls.size(), 3u);  // a failed launch records nothing
}

}  // namespace
}  // namespace sodam
