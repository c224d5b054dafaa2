#pragma once

#include <vector>

#include "alerts/overlay_presenter.h"

namespace sodam {

// A pulsing red frame around every display while a posture alert lasts.
// Shown or hidden; a show while shown keeps the one animation running.
// Main thread only.
class BorderAlert {
 public:
  explicit BorderAlert(OverlayPresenter& presenter) : presenter_(presenter) {}

  // Makes the frames unless they are up; a display attached during an alert
  // gets one only at the next alert.
  void show();
  void hide();

  bool shown() const { return !windows_.empty(); }
  const std::vector<OverlayPresenter::Window>& windows() const { return windows_; }

 private:
  OverlayPresenter& presenter_;
  std::vector<OverlayPresenter::Window> windows_;
};

}  // namespace sodam
