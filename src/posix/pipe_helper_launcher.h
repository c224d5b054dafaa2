#pragma once

// Launches on the main thread; the channel's reads come on its reader thread.

#include <memory>
#include <string>
#include <vector>

#include "camerawatch/helper_channel.h"
#include "posix/child_process.h"

namespace sodam {

// The camera-log helper as a child process over two pipes.
class PipeHelperChannel final : public HelperChannel {
 public:
  explicit PipeHelperChannel(std::unique_ptr<ChildProcess> child) : child_(std::move(child)) {}

  bool write(std::string_view bytes) override { return child_->write(bytes); }
  void startReading(ChunkHandler onChunk) override { child_->startReading(std::move(onChunk)); }
  void stopReading() override { child_->stopReading(); }
  pid_t pid() const { return child_->pid(); }

 private:
  std::unique_ptr<ChildProcess> child_;
};

// Starts `executable` with the given leading arguments and then the
// helper's switch; the system's background priority.
class PipeHelperLauncher final : public HelperLauncher {
 public:
  explicit PipeHelperLauncher(std::string executable, std::vector<std::string> leading = {})
      : executable_(std::move(executable)), leading_(std::move(leading)) {}

  std::unique_ptr<HelperChannel> launch(std::string_view argument) override;
  // The channel last launched, for tests that end the helper themselves.
  PipeHelperChannel* launched() const { return launched_; }

 private:
  std::string executable_;
  std::vector<std::string> leading_;
  PipeHelperChannel* launched_ = nullptr;
};

}  // namespace sodam
