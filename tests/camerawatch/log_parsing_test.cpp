#include <gtest/gtest.h>

#include "camerawatch/camera_findings.h"
#include "camerawatch/log_entry.h"
#include "camerawatch/log_fixtures.h"
#include "camerawatch/log_messages.h"

namespace sodam {
namespace {

// 2025-03-04 00:00:00 UTC.
constexpr double march4 = 1741046400;

TEST(LogTimestampTest, ZonesAndFractions) {
  struct Case {
    const char* text;
    double expected;
  };
  const Case cases[] = {
      {"2025-03-04 09:00:01.250000+0900", march4 + 1.25},
      {"2025-03-04 00:00:01.250000+0000", march4 + 1.25},
      {"2025-03-03 16:00:01.250000-0800", march4 + 1.25},
      {"2025-03-04 05:30:01.250000+05:30", march4 + 1.25},
      {"2025-03-04 00:00:01.250000Z", march4 + 1.25},
      {"2024-02-29 23:59:59.999999+0000", march4 - 368 * 86400 - 0.000001},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const auto parsed = parseLogTimestamp(c.text);
    ASSERT_TRUE(parsed);
    EXPECT_NEAR(*parsed, c.expected, 1e-6);
  }
}

TEST(LogTimestampTest, RefusesWhatIsNotOne) {
  for (const char* text : {"", "2025-03-04", "2025-03-04 09:00:01+0900",
                           "2025-03-04T09:00:01.250000+0900", "2025-13-04 09:00:01.250000+0900",
                           "2025-02-29 09:00:01.250000+0900", "2025-03-04 24:00:01.250000+0900",
                           "2025-03-04 09:00:01.250000", "2025-03-04 09:00:01.+0900",
                           "2025-03-04 09:00:01.250000+9", "2025-03-04 09:00:01.250000+0900 ",
                           "2025-03-04 09:00:01.250000+2400", "x025-03-04 09:00:01.250000+0900"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(parseLogTimestamp(text));
  }
}

TEST(LogWindowStampTest, LocalWholeSeconds) {
  EXPECT_EQ(logWindowStamp(march4 + 1.9, TimeZone::fixed(9 * 3600)), "2025-03-04 09:00:01");
  EXPECT_EQ(logWindowStamp(march4 - 0.5, TimeZone::utc()), "2025-03-03 23:59:59");
}

TEST(LogLineTest, ReadsTheFieldsItNeeds) {
  const auto entries = parseLogOutput(fixtures::cameraStack);
  ASSERT_EQ(entries.size(), 5u);
  EXPECT_EQ(entries[0].pid, 812);
  EXPECT_EQ(entries[0].path, "/Applications/Meetly.app/Contents/MacOS/Meetly");
  EXPECT_EQ(entries[0].process, "Meetly");
  EXPECT_EQ(entries[0].message, "CMIO_DAL_System.cpp:512:StartStream device 0x21");
  EXPECT_NEAR(entries[0].time, march4 + 1.25, 1e-6);
}

TEST(LogLineTest, HostileLinesAreSkippedOrReadWithDefaults) {
  const std::string huge(2'000'000, 'x');
  const std::string lines[] = {
      "Filtering the log data using \"process == 1\"",
      R"(["timestamp","eventMessage"])",
      R"({"timestamp":"2025-03-04 09:00:01.250000+0900"})",
      R"({"eventMessage":"CMIO_DAL_System.cpp"})",
      R"({"timestamp":17410464,"eventMessage":"CMIO_DAL_System.cpp"})",
      R"({"timestamp":"2025-03-04 09:00:01.250000+0900","eventMessage":42})",
      R"({"timestamp":"yesterday","eventMessage":"x"})",
      "{\"timestamp\":\"2025-03-04 09:00:01.250000+0900\",\"eventMessage\":\"bad \xC3\x28 text\"}",
      R"({"timestamp":"2025-03-04 09:00:01.250000+0900","eventMessage":")" + huge,
      R"({"timestamp":"2025-03-04 09:00:01.250000+0900","eventMessage":"ok",)",
  };
  for (const auto& line : lines) {
    SCOPED_TRACE(line.substr(0, 60));
    EXPECT_FALSE(parseLogLine(line));
  }
  // Wrong types of the optional fields fall back to their defaults, and a
  // huge message is read whole.
  const auto odd = parseLogLine(
      R"({"timestamp":"2025-03-04 09:00:01.250000+0900","processID":"812","processImagePath":7,"eventMessage":")" +
      huge + "\"}");
  ASSERT_TRUE(odd);
  EXPECT_EQ(odd->pid, 0);
  EXPECT_EQ(odd->path, "");
  EXPECT_EQ(odd->message.size(), huge.size());
}

TEST(LogMessageTest, MessageIdAndAnswer) {
  EXPECT_EQ(messageId("AUTHREQ_CTX: msgID=177.41, service=x"), "177.41");
  EXPECT_EQ(messageId("msgID=, then msgID=9.1 later"), "9.1");
  EXPECT_FALSE(messageId("msgID= x"));
  EXPECT_EQ(authAnswer("authValue=0,"), false);
  EXPECT_EQ(authAnswer("authValue=2,"), true);
  EXPECT_EQ(authAnswer("authValue=3"), true);
  EXPECT_FALSE(authAnswer("authValue=1,"));
  EXPECT_FALSE(authAnswer("authValue=02,"));
  EXPECT_EQ(authAnswer("authValue=x, authValue=0"), false);
}

TEST(LogMessageTest, PartyReadsItsOwnBracesOnly) {
  const std::string message =
      "attribution={responsible={TCCDProcess: identifier=com.a, pid=12, auid=501, "
      "binary_path=/Applications/A.app/Contents/MacOS/A}, accessing={TCCDProcess: pid=13, "
      "binary_path=/tmp/helper}, }";
  EXPECT_EQ(logParty(message, "responsible"),
            (LogParty{"com.a", 12, "/Applications/A.app/Contents/MacOS/A"}));
  EXPECT_EQ(logParty(message, "accessing"), (LogParty{"", 13, "/tmp/helper"}));
  EXPECT_FALSE(logParty(message, "requesting"));
  EXPECT_FALSE(logParty("responsible={TCCDProcess: identifier=x, pid=1", "responsible"));
  // A path that runs over a line end is no path.
  EXPECT_EQ(logParty("accessing={TCCDProcess: pid=1, binary_path=/a\nb}", "accessing")->path, "");
}

TEST(LogMessageTest, CamsInMessageOrder) {
  EXPECT_EQ(cams("Sorted active attributions: [cam] Meet Now (com.x.meet), [mic] Rec (r), "
                 "[cam] B (b.id)"),
            (std::vector<CameraUser>{{"Meet Now", "com.x.meet"}, {"B", "b.id"}}));
  // The shortest name that is followed by an id in parentheses.
  EXPECT_EQ(cams("[cam] A (x y) (a.id)"), (std::vector<CameraUser>{{"A (x y)", "a.id"}}));
  EXPECT_TRUE(cams("Sorted active attributions: []").empty());
  EXPECT_TRUE(cams("[cam] A\n(a.id)").empty());
  EXPECT_TRUE(cams("[cam]  (a.id)").empty());  // a name is never empty
  EXPECT_TRUE(cams(std::string(100000, '[') + "[cam] x (").empty());
}

TEST(CameraFindingsTest, ClientRecordsDropTheSystemTheProgramAndRepeats) {
  const HelperSelf self{500, "/Applications/SodamJari.app/Contents/MacOS/SodamJari",
                        macSystemFolders()};
  const auto records = clientRecords(parseLogOutput(fixtures::cameraStack), self);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].key, "c812@1741046401");
  EXPECT_EQ(records[0].identifier, "Meetly");
  EXPECT_TRUE(records[0].client);
  EXPECT_FALSE(records[0].preflight);
  EXPECT_FALSE(records[0].allowed);
  EXPECT_EQ(records[1].pid, 944);
  EXPECT_EQ(records[1].path, "/Users/mina/Downloads/snap-tool");
}

TEST(CameraFindingsTest, TheHelpersOwnPathIsLeftOutUnderAnyPid) {
  std::vector<LogEntry> entries(10, LogEntry{1, 77, "/opt/x", "x", "m"});
  entries.push_back({2, 78, "/opt/sodam", "sodam", "m"});
  entries.push_back({3, 79, "", "", "m"});
  const auto records = clientRecords(entries, HelperSelf{1, "/opt/sodam", {}});
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].pid, 77);
}

TEST(CameraFindingsTest, IndicatorTakesTheLastEntryAndStreamSkipsTheBanner) {
  const auto lines = splitLines(fixtures::indicatorStream);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_FALSE(streamedIndicator(lines[0], 5));
  const auto first = streamedIndicator(lines[1], 5);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->time, 5);
  EXPECT_EQ(first->cams, (std::vector<CameraUser>{{"Meetly", "com.example.meetly"},
                                                  {"소담자리", "kr.lumenfold.sodamjari"}}));
  // Nobody shown any more is an update with no users, not a missing one.
  const auto last = lastIndicator(parseLogOutput(fixtures::indicatorStream));
  ASSERT_TRUE(last);
  EXPECT_TRUE(last->cams.empty());
  EXPECT_NEAR(last->time, march4 + 21 * 60, 1e-6);
  EXPECT_FALSE(lastIndicator({}));
}

}  // namespace
}  // namespace sodam
