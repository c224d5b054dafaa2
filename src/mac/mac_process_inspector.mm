#include "mac/mac_process_inspector.h"

#include <Security/Security.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include <cstdlib>

#include "mac/cf_holder.h"

namespace sodam {

bool MacProcessInspector::traced() const {
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, getpid()};
  struct kinfo_proc info {};
  size_t size = sizeof(info);
  if (sysctl(name, 4, &info, &size, nullptr, 0) != 0) return false;
  return (info.kp_proc.p_flag & P_TRACED) != 0;
}

std::string MacProcessInspector::injectedLibraries() const {
  const char* inserted = std::getenv("DYLD_INSERT_LIBRARIES");
  return inserted ? inserted : "";
}

// An unsigned build (a developer's) has no signature to break: nothing.
std::optional<bool> MacProcessInspector::signatureValid() const {
  SecCodeRef self = nullptr;
  if (SecCodeCopySelf(kSecCSDefaultFlags, &self) != errSecSuccess || !self) return std::nullopt;
  const CFHolder<SecCodeRef> code = adopt(self);
  const OSStatus status = SecCodeCheckValidity(code.get(), kSecCSDefaultFlags, nullptr);
  if (status == errSecCSUnsigned) return std::nullopt;
  return status == errSecSuccess;
}

}  // namespace sodam
