// The stretch coach's session on the panel: started from the menu, a nudge,
// an alert pill or the stretch page, and let go when it closes.
#include "app/panel_model.h"
#include "coach/stretch_library.h"

namespace sodam {

std::vector<Stretch> PanelModel::routine() const {
  return StretchLibrary::routine(parts_.log.issueWeights(), StretchLibrary::routineCount);
}

void PanelModel::startRoutine() {
  if (session_) {
    open(Page::stretch);
    return;
  }
  start(routine());
}

void PanelModel::start(std::vector<Stretch> items) {
  stopSession();
  open(Page::stretch);
  if (items.empty()) return;
  session_ = std::make_unique<CoachSession>(
      std::move(items),
      CoachSession::Ports{parts_.feed, parts_.monitor, parts_.log, parts_.scheduler, parts_.clock});
  CoachSession* session = session_.get();
  session->onStretched = weakCall(self_, [](PanelModel& panel) { panel.monitor().stretched(); });
  session->onEyesRested = weakCall(self_, [](PanelModel& panel) {
    if (panel.eyesRested) panel.eyesRested();
  });
  // The session closes from inside itself; it is let go on the next turn.
  session->onClose = weakCall(self_, [session](PanelModel& panel) {
    panel.parts_.scheduler.post(weakCall(panel.self_, [session](PanelModel& later) {
      if (later.session_.get() != session) return;
      later.session_.reset();
      later.changed();
    }));
  });
  changed();
  session->begin();
}

void PanelModel::stopSession() {
  if (!session_) return;
  auto ending = std::move(session_);
  ending->onClose = nullptr;
  ending->close();
  changed();
}

}  // namespace sodam
