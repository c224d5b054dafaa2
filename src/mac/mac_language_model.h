#pragma once

// Main thread only.

#include <memory>

#include "health/language_model.h"
#include "support/scheduler.h"

namespace sodam {

// The system's on-device model behind the health coach's chat, through the
// Swift bridge where this build has one.
class MacLanguageModel final : public LanguageModel {
 public:
  // Nothing where the build has no bridge or the system is older than
  // version 26: the chat then has no voice and the rule answer stands alone.
  static std::unique_ptr<MacLanguageModel> make(Scheduler& scheduler);

  bool available() const override;
  void respond(const std::string& instructions, const std::string& question, Reply reply) override;

 private:
  explicit MacLanguageModel(Scheduler& scheduler) : scheduler_(scheduler) {}

  Scheduler& scheduler_;
};

}  // namespace sodam
