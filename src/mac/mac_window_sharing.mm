#include "mac/mac_window_sharing.h"

#import <AppKit/AppKit.h>

namespace sodam {

namespace {

NSWindowSharingType sharingTypeOf(WindowSharing::Type type) {
  switch (type) {
    case WindowSharing::Type::none:
      return NSWindowSharingNone;
    case WindowSharing::Type::readOnly:
      return NSWindowSharingReadOnly;
  }
  return NSWindowSharingReadOnly;
}

}  // namespace

// The identity is only an address: it is matched against the application's
// live windows and never turned back into an object.
void MacWindowSharing::setSharingType(WindowId window, Type type) {
  for (NSWindow* candidate in NSApp.windows) {
    if (windowId(candidate) != window) continue;
    candidate.sharingType = sharingTypeOf(type);
    return;
  }
}

}  // namespace sodam
