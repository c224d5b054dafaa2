#include <gtest/gtest.h>

#include "camerawatch/camera_findings.h"
#include "camerawatch/log_fixtures.h"

namespace sodam {
namespace {

constexpr std::int64_t mainPid = 500;
const char* const ownPath = "/Applications/SodamJari.app/Contents/MacOS/SodamJari";

HelperSelf self() {
  return HelperSelf{mainPid, ownPath, macSystemFolders()};
}

LogEntry entry(double time, std::string message) {
  return LogEntry{time, 177, "/usr/libexec/tccd", "tccd", std::move(message)};
}

LogEntry context(double time, const std::string& id, const std::string& service = "Camera",
                 bool preflight = false) {
  return entry(time, "AUTHREQ_CTX: msgID=" + id +
                         ", function=TCCAccessRequest, service=kTCCService" + service +
                         ", preflight=" + (preflight ? "yes" : "no") + ",");
}

std::string party(const std::string& role, const std::string& identifier, int pid,
                  const std::string& path) {
  return role + "={TCCDProcess: identifier=" + identifier + ", pid=" + std::to_string(pid) +
         ", auid=501, euid=501, binary_path=" + path + "}";
}

LogEntry attribution(double time, const std::string& id, const std::string& parties) {
  return entry(time, "AUTHREQ_ATTRIBUTION: msgID=" + id + ", attribution={" + parties + ", },");
}

LogEntry result(double time, const std::string& id, int value) {
  return entry(time, "AUTHREQ_RESULT: msgID=" + id + ", authValue=" + std::to_string(value) + ",");
}

const std::string meetly = "/Applications/Meetly.app/Contents/MacOS/Meetly";

TEST(PrivacyRecordsTest, TheFixtureGivesTheApplicationWithItsToolAsActor) {
  const auto records = privacyRecords(parseLogOutput(fixtures::permissionDaemon), self());
  ASSERT_EQ(records.size(), 1u);
  const auto& r = records[0];
  EXPECT_FALSE(r.client);
  EXPECT_EQ(r.key, "177.41@1741047000");
  EXPECT_EQ(r.identifier, "com.example.meetly");
  EXPECT_EQ(r.path, meetly);
  EXPECT_EQ(r.pid, 812);
  EXPECT_EQ(
      r.actor,
      "/Applications/Meetly.app/Contents/Library/LoginItems/Capture.app/Contents/MacOS/Capture");
  EXPECT_EQ(r.allowed, true);
  EXPECT_FALSE(r.preflight);
}

TEST(PrivacyRecordsTest, OneRequestOneRecord) {
  const auto accessing = party("accessing", "com.example.meetly", 812, meetly);
  struct Case {
    const char* name;
    std::vector<LogEntry> entries;
    std::size_t count;
  };
  const Case cases[] = {
      {"two contexts: one record",
       {context(10, "1.1"), context(20, "1.1"), attribution(21, "1.1", accessing)},
       1},
      {"another service, even attributed",
       {context(10, "1.1", "Microphone"), attribution(11, "1.1", accessing)},
       0},
      {"a context without attribution", {context(10, "1.1")}, 0},
      {"attribution and result without context",
       {attribution(11, "1.1", accessing), result(12, "1.1", 2)},
       0},
      {"no msgID",
       {entry(10, "AUTHREQ_CTX: service=kTCCServiceCamera,"), attribution(11, "", accessing)},
       0},
      {"two requests",
       {context(10, "1.1"), context(11, "1.2"), attribution(12, "1.1", accessing),
        attribution(12, "1.2", accessing)},
       2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(privacyRecords(c.entries, self()).size(), c.count);
  }
}

TEST(PrivacyRecordsTest, TheLaterContextGivesTimeAndPreflight) {
  const auto records = privacyRecords(
      {context(10, "1.1", "Camera", false), context(20.5, "1.1", "Camera", true),
       attribution(21, "1.1", party("accessing", "com.example.meetly", 812, meetly))},
      self());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].time, 20.5);
  EXPECT_EQ(records[0].key, "1.1@20");
  EXPECT_TRUE(records[0].preflight);
}

TEST(PrivacyRecordsTest, PartiesAndAnswers) {
  const auto onlyAccessing = privacyRecords(
      {context(10, "1.1"), attribution(11, "1.1", party("accessing", "com.x", 812, meetly)),
       result(12, "1.1", 1)},
      self());
  ASSERT_EQ(onlyAccessing.size(), 1u);
  EXPECT_EQ(onlyAccessing[0].identifier, "com.x");
  EXPECT_FALSE(onlyAccessing[0].actor);    // the same path
  EXPECT_FALSE(onlyAccessing[0].allowed);  // authValue 1 is no answer

  const auto requesting = privacyRecords(
      {context(10, "1.2"), attribution(11, "1.2", party("requesting", "com.r", 9, "/opt/r")),
       attribution(12, "1.2", party("accessing", "com.late", 10, "/opt/late")),
       result(13, "1.2", 0)},
      self());
  ASSERT_EQ(requesting.size(), 1u);
  EXPECT_EQ(requesting[0].identifier, "com.r");  // the first attribution wins
  EXPECT_EQ(requesting[0].allowed, false);
}

TEST(PrivacyRecordsTest, TheProgramsOwnRequestsInEveryDisguise) {
  const std::string helperTool = "/Applications/SodamJari.app/Contents/Helpers/tool";
  const std::string cases[] = {
      party("accessing", "kr.lumenfold.sodamjari", 9999, "/somewhere"),
      party("accessing", "com.other", static_cast<int>(mainPid), "/somewhere"),
      party("responsible", "com.other", 77, "/x") + ", " +
          party("accessing", "com.tool", static_cast<int>(mainPid), helperTool),
      party("accessing", "com.other", 77, ownPath),
  };
  for (const auto& parties : cases) {
    SCOPED_TRACE(parties);
    EXPECT_TRUE(
        privacyRecords({context(1, "1.1"), attribution(2, "1.1", parties)}, self()).empty());
  }
}

}  // namespace
}  // namespace sodam
