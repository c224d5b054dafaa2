#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/app_delegate.h"
#include "cloud/social.h"
#include "sim/cloud_double.h"
#include "sim/sim_devices.h"
#include "sim/transcript.h"
#include "support/calendar.h"
#include "support/manual_scheduler.h"

namespace sodam {

// The simulated day's study group: the service's double in-process, the
// user's session on it, and two friends whose programs publish a scripted
// day of states every ten seconds. The user makes the group once the day
// starts and the friends join with its code; the transcript tells each
// change of a friend's state as the user's program sees it. Main thread only.
class StudyRoom {
 public:
  // A friend's state from a clock time of the day on; "hidden" shares
  // nothing and "gone" ends the friend's program.
  struct Beat {
    int hour = 0;
    int minute = 0;
    std::string state;
  };
  struct Friend;

  StudyRoom(ManualScheduler& scheduler, ManualClock& clock, const Calendar& calendar, Date day);
  ~StudyRoom();
  StudyRoom(const StudyRoom&) = delete;
  StudyRoom& operator=(const StudyRoom&) = delete;

  // The user's cloud ports, for the application.
  AppDelegate::Platform::Cloud cloud();
  // Once the application runs: the user makes the group, the friends join.
  void open(AppDelegate& app, Transcript& transcript);
  // After each step of the day: the friends' beats and the transcript.
  void step();
  // The ranking of the day among the group, as lines for the summary.
  std::vector<std::string> summary() const;

 private:
  void joined(const StudyGroup& group);
  void tell();

  ManualScheduler& scheduler_;
  ManualClock& clock_;
  Calendar calendar_;
  Date day_;
  CloudDouble service_;
  CloudDouble::Http http_;
  MemoryKeychain keychain_;
  std::vector<std::unique_ptr<Friend>> friends_;
  AppDelegate* app_ = nullptr;
  Transcript* transcript_ = nullptr;
  std::map<std::string, MateState> told_;
  Date toldRefresh_ = Date::distantPast();
};

}  // namespace sodam
