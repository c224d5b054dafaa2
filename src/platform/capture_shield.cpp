#include "platform/capture_shield.h"

namespace sodam {

void CaptureShield::attach(WindowId window) {
  ++counts_[window];
  if (store_.hideCameraFromCapture()) windows_.setSharingType(window, WindowSharing::Type::none);
}

void CaptureShield::detach(WindowId window) {
  const auto found = counts_.find(window);
  if (found == counts_.end()) return;
  if (--found->second > 0) return;
  counts_.erase(found);
  windows_.setSharingType(window, WindowSharing::Type::readOnly);
}

void CaptureShield::apply() {
  const auto type = shieldedType();
  for (const auto& [window, count] : counts_)
    windows_.setSharingType(window, type);
}

int CaptureShield::count(WindowId window) const {
  const auto found = counts_.find(window);
  return found == counts_.end() ? 0 : found->second;
}

WindowSharing::Type CaptureShield::shieldedType() const {
  return store_.hideCameraFromCapture() ? WindowSharing::Type::none : WindowSharing::Type::readOnly;
}

}  // namespace sodam
