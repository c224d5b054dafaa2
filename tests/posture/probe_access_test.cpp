#include "posture/probe_access.h"

#include <gtest/gtest.h>

#include <optional>

#include "posture/capture_fakes.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

TEST(ProbeAccess, TheRunAsksOnlyAUserWhoHasNotAnsweredYet) {
  struct Case {
    bool allowed;
    bool unanswered;
    std::optional<bool> reply;  // what the user says when asked
    bool asks;
    bool runs;
  };
  const Case cases[] = {
      {true, false, std::nullopt, false, true},
      {false, true, true, true, true},
      {false, true, false, true, false},
      {false, false, std::nullopt, false, false},  // refused before: the system won't ask
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "allowed " << c.allowed << " unanswered " << c.unanswered);
    ManualClock clock;
    ManualScheduler main{clock};
    InlineQueue session, frames;
    fakes::Camera camera;
    fakes::FaceDetector detector;
    fakes::Access access;
    access.answer = c.allowed;
    access.unanswered = c.unanswered;
    Capture capture{{camera, detector, access, nullptr, main, clock, session, frames}};

    std::optional<bool> result;
    obtainProbeAccess(capture, access, [&](bool allowed) { result = allowed; });
    EXPECT_EQ(static_cast<bool>(access.pending), c.asks);
    if (c.asks) {
      EXPECT_FALSE(result) << "waits for the answer";
      access.pending(*c.reply);
      main.runPosted();
    }
    EXPECT_EQ(result, c.runs);
  }
}

}  // namespace
}  // namespace sodam
