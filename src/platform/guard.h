#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sodam {

// What a hardening check found wrong with the running process.
struct Threat {
  std::string reason;
};

// One hardening check of the running process.
struct Guard {
  std::string name;
  std::function<std::optional<Threat>()> check;
};

// What the hardening checks read of the running process from the operating
// system. Called on the main thread.
class ProcessInspector {
 public:
  virtual ~ProcessInspector() = default;
  // A debugger or tracer is attached: it could read every frame in memory.
  virtual bool traced() const = 0;
  // The libraries the loader was told through its environment to insert into
  // the process; empty when none.
  virtual std::string injectedLibraries() const = 0;
  // Whether the process's code signature still checks out; nothing where the
  // platform signs no code.
  virtual std::optional<bool> signatureValid() const = 0;
};

// A process that shows nothing suspicious: where no inspector exists.
class QuietProcess final : public ProcessInspector {
 public:
  bool traced() const override { return false; }
  std::string injectedLibraries() const override { return {}; }
  std::optional<bool> signatureValid() const override { return std::nullopt; }
};

// The checks, in order: an attached tracer, injected libraries, a broken
// signature. The inspector must outlive the guards.
std::vector<Guard> hardeningChecks(const ProcessInspector& process);

}  // namespace sodam
