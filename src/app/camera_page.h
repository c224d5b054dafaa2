#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camerawatch/camera_watch.h"
#include "support/calendar.h"

namespace sodam {

// What the camera watch's page shows, for any platform's view to draw: a
// status line, the note on where the names come from, the user's switch,
// and one row per event of the record, newest first. Main thread.
struct CameraPage {
  struct Row {
    std::string id;
    std::string app;       // the application's name
    std::string summary;   // what happened, how often, the warning
    std::string time;      // "M월 d일 a h:mm:ss"
    std::string path;      // the executable, shown when the pointer rests on the row
    bool warning = false;  // the row has a suspicious note
    bool live = false;     // the camera is on now
  };

  static constexpr const char* clearTitle = "기록 지우기";
  static constexpr const char* sweepTitle = "지금 새로 읽기";
  static constexpr const char* notifyTitle = "켜지면 알림";
  static constexpr const char* emptyText = "아직 기록이 없어요";

  std::string statusLine;
  std::string note;
  bool notify = true;
  std::vector<Row> rows;

  // The page for the watch now, its times on the calendar.
  static CameraPage of(const CameraWatch& watch, const Calendar& calendar);
};

}  // namespace sodam
