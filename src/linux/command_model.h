#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "health/language_model.h"
#include "support/scheduler.h"

namespace sodam {

// A local model runtime the user names: a shell command that reads the
// instructions, an empty line and the question on its standard input and
// writes the reply on its standard output. Each question starts the command
// afresh, so nothing of an earlier question reaches it. A failed start, a
// non-zero exit or an empty reply is a failure.
class CommandLanguageModel final : public LanguageModel {
 public:
  // The variable that names the command; unset or empty, there is no model.
  static constexpr const char* variable = "SODAMJARI_MODEL";

  // Replies reach the main thread through the scheduler's post.
  CommandLanguageModel(std::string command, Scheduler& scheduler);
  // Waits for the commands still running.
  ~CommandLanguageModel() override;
  CommandLanguageModel(const CommandLanguageModel&) = delete;
  CommandLanguageModel& operator=(const CommandLanguageModel&) = delete;

  // The model the environment configures, or none.
  static std::unique_ptr<CommandLanguageModel> fromEnvironment(Scheduler& scheduler);

  bool available() const override { return !command_.empty(); }
  void respond(const std::string& instructions, const std::string& question, Reply reply) override;

  // Runs the command once on this thread: its trimmed output, or nothing.
  static std::optional<std::string> run(const std::string& command, const std::string& input);

 private:
  std::string command_;
  Scheduler& scheduler_;
  std::mutex workersMutex_;
  std::vector<std::thread> workers_;
};

}  // namespace sodam
