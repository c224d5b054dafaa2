#pragma once

// Called on the main thread only; it has no callbacks.

#include "platform/capture_shield.h"

#ifdef __OBJC__
#import <AppKit/AppKit.h>
#endif

namespace sodam {

#ifdef __OBJC__
// The identity the capture shield counts a window by: the window object's
// address, valid while the window lives.
inline WindowId windowId(NSWindow* window) {
  return (WindowId)(__bridge void*)window;
}
#endif

// Lets screen sharing and recordings see a window of this application, or
// keeps them out. A window that is gone by now is left alone.
class MacWindowSharing final : public WindowSharing {
 public:
  void setSharingType(WindowId window, Type type) override;
};

}  // namespace sodam
