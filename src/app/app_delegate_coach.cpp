// The stretch coach's session: started from the menu, a nudge or an alert
// pill, shown on the panel's stretch page, told to the monitor and the
// work-life tracker.
#include "app/app_delegate.h"
#include "coach/stretch_library.h"
#include "support/weak_call.h"

namespace sodam {

std::vector<Stretch> AppDelegate::routine() const {
  return StretchLibrary::routine(log_.issueWeights(), StretchLibrary::routineCount);
}

void AppDelegate::startRoutine() {
  if (guide_) return;
  if (session_) {
    openPanel(PanelPage::stretch);
    return;
  }
  startSession(routine());
}

void AppDelegate::startSession(std::vector<Stretch> items) {
  stopSession();
  openPanel(PanelPage::stretch);
  if (items.empty()) return;
  session_ = std::make_unique<CoachSession>(
      std::move(items), CoachSession::Ports{feed_, *monitor_, log_, scheduler_, clock_});
  CoachSession* session = session_.get();
  session->onStretched = weakCall(self_, [](AppDelegate& app) { app.monitor_->stretched(); });
  session->onEyesRested =
      weakCall(self_, [](AppDelegate& app) { app.work_.rested(WorkLife::RestKind::eyes); });
  // The session closes from inside itself; it is let go on the next turn.
  session->onClose = weakCall(self_, [session](AppDelegate& app) {
    app.scheduler_.post(weakCall(app.self_, [session](AppDelegate& later) {
      if (later.session_.get() == session) later.session_.reset();
    }));
  });
  session->begin();
}

void AppDelegate::stopSession() {
  if (!session_) return;
  auto ending = std::move(session_);
  ending->onClose = nullptr;
  ending->close();
}

}  // namespace sodam
