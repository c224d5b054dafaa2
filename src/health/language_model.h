#pragma once

#include <functional>
#include <optional>
#include <string>

namespace sodam {

// The on-device language model the health coach's chat asks: on macOS the
// system's model where the system has one; on Linux a local runtime only
// where the user names one.
// Main thread only.
class LanguageModel {
 public:
  // The reply's text, or nothing when the model failed for any reason.
  using Reply = std::function<void(std::optional<std::string>)>;

  virtual ~LanguageModel() = default;
  // The model can answer now.
  virtual bool available() const = 0;
  // Answers one question in a fresh session that knows only these
  // instructions: no earlier question or reply is passed on. `reply` runs
  // once, later, on the main thread.
  virtual void respond(const std::string& instructions, const std::string& question,
                       Reply reply) = 0;
};

}  // namespace sodam
