#pragma once

#include "platform/guard.h"

namespace sodam {

// The running process as the kernel, the loader's environment and the code
// signing service see it. Main thread.
class MacProcessInspector final : public ProcessInspector {
 public:
  bool traced() const override;
  std::string injectedLibraries() const override;
  std::optional<bool> signatureValid() const override;
};

}  // namespace sodam
