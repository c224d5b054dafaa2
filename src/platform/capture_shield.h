#pragma once

#include <cstdint>
#include <map>

#include "platform/store.h"

namespace sodam {

// A window's identity as the window system knows it; the shell uses the
// window object's address.
using WindowId = std::uintptr_t;

// The window system's side: whether screen sharing and recordings may see a
// window's contents.
class WindowSharing {
 public:
  enum class Type { none = 0, readOnly = 1 };

  virtual ~WindowSharing() = default;
  virtual void setSharingType(WindowId window, Type type) = 0;
};

// Keeps the windows that show the camera out of screen sharing and
// recordings while the user wants that, counting the camera views in each
// window so the last one to leave gives the window back. Main thread.
class CaptureShield {
 public:
  CaptureShield(WindowSharing& windows, const Store& store) : windows_(windows), store_(store) {}

  // A camera view entered the window.
  void attach(WindowId window);
  // A camera view left the window; the last one makes it visible to capture
  // again. A window without views is left alone.
  void detach(WindowId window);
  // The setting changed: every window that shows the camera follows it.
  void apply();

  int count(WindowId window) const;

 private:
  WindowSharing::Type shieldedType() const;

  WindowSharing& windows_;
  const Store& store_;
  std::map<WindowId, int> counts_;
};

}  // namespace sodam
