#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace sodam {

// The two pipes to a running camera-log helper: its standard input and its
// standard output. Written on the main thread; read on a thread of its own.
class HelperChannel {
 public:
  using ChunkHandler = std::function<void(std::string bytes)>;

  virtual ~HelperChannel() = default;
  // Writes the bytes whole; false when they could not be, as when the
  // helper is gone. A broken pipe never ends the process.
  virtual bool write(std::string_view bytes) = 0;
  // Hands each chunk the helper writes to `onChunk`, in order, on a
  // background thread, and an empty chunk once when its side is closed.
  virtual void startReading(ChunkHandler onChunk) = 0;
  // No chunk is handed over after this returns.
  virtual void stopReading() = 0;
};

// Starts the program's own executable as the camera-log helper.
class HelperLauncher {
 public:
  virtual ~HelperLauncher() = default;
  // The executable with the one argument, standard error to the null device;
  // nothing when the executable can't be found or the child can't be launched.
  virtual std::unique_ptr<HelperChannel> launch(std::string_view argument) = 0;
};

}  // namespace sodam
