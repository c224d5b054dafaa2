#include "posix/pipe_helper_launcher.h"

namespace sodam {

std::unique_ptr<HelperChannel> PipeHelperLauncher::launch(std::string_view argument) {
  if (executable_.empty()) return nullptr;
  auto arguments = leading_;
  arguments.emplace_back(argument);
  auto child =
      ChildProcess::start(executable_, arguments, {.pipeInput = true, .utilityPriority = true});
  if (!child) return nullptr;
  auto channel = std::make_unique<PipeHelperChannel>(std::move(child));
  launched_ = channel.get();
  return channel;
}

}  // namespace sodam
