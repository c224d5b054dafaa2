#include "app/camera_page.h"

#include "support/korean_format.h"

namespace sodam {

CameraPage CameraPage::of(const CameraWatch& watch, const Calendar& calendar) {
  CameraPage page;
  page.statusLine = watch.statusLine();
  page.note = std::string(watch.note());
  page.notify = watch.notify();
  const auto live = watch.liveEvent();
  for (const auto& event : watch.events()) {
    page.rows.push_back(Row{event.id, event.app, event.summary(), Fmt::full(event.time, calendar),
                            event.path, event.suspicious.has_value(),
                            live && live->id == event.id});
  }
  return page;
}

}  // namespace sodam
