#pragma once

// A child program is started and written to on one thread; its output is
// read either on that thread (`readAll`) or on a reader thread of its own.

#include <sys/types.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace sodam {

// A program started with a pipe from its standard output and, if asked, one
// to its standard input; its standard error goes to the null device.
// Destroying it closes its input, stops the reader and reaps the child,
// killing it if it does not end by itself within a second.
class ChildProcess {
 public:
  using ChunkHandler = std::function<void(std::string bytes)>;

  struct Options {
    bool pipeInput = false;
    // Background work the system may slow down: the log tool and the helper.
    bool utilityPriority = false;
  };

  // Nothing when the program can't be started.
  static std::unique_ptr<ChildProcess> start(const std::string& path,
                                             const std::vector<std::string>& arguments,
                                             Options options);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }
  // Writes the bytes whole; false when the reader is gone or the input
  // closed. A broken pipe is an answer here, never a signal that ends the
  // process.
  bool write(std::string_view bytes);
  void closeInput();
  // Reads the output to its end.
  std::string readAll();
  // Reads on a thread of its own: each chunk in order, then an empty one
  // when the output ends.
  void startReading(ChunkHandler onChunk);
  // No chunk is handed over once this returns.
  void stopReading();
  void terminate();
  // Waits for the child to end; its exit status, or -1.
  int wait();

 private:
  ChildProcess(pid_t pid, int input, int output, int wakeRead, int wakeWrite);
  void readLoop(ChunkHandler onChunk);
  bool reapWithin(double seconds);

  pid_t pid_;
  int input_;
  int output_;
  // A pipe that wakes the reader thread when it is to stop.
  int wakeRead_;
  int wakeWrite_;
  std::mutex writeMutex_;
  std::thread reader_;
  bool reaped_ = false;
  int status_ = -1;
};

}  // namespace sodam
