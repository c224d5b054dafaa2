#include "alerts/border_alert.h"

namespace sodam {

void BorderAlert::show() {
  if (!windows_.empty()) return;
  windows_ = presenter_.makeBorderWindows();
}

void BorderAlert::hide() {
  for (auto window : windows_)
    presenter_.orderOut(window);
  windows_.clear();
}

}  // namespace sodam
