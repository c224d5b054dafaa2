#pragma once

#include "alerts/pill_center.h"

namespace sodam {

// The displays as AppKit lists them, read afresh on each call. Main thread
// only, as AppKit's screen list is.
class MacScreens final : public ScreenSource {
 public:
  std::vector<ScreenInfo> screens() const override;
};

}  // namespace sodam
