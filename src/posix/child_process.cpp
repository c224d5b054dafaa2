#include "posix/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#if defined(__APPLE__)
#include <pthread/spawn.h>
#endif

extern char** environ;

namespace sodam {

namespace {

constexpr std::size_t chunkBytes = 65536;

struct Pipe {
  int read = -1;
  int write = -1;
};

// A pipe whose ends are not inherited by any other child.
bool makePipe(Pipe& pipe) {
  int ends[2];
  if (::pipe(ends) != 0) return false;
  for (int end : ends)
    fcntl(end, F_SETFD, FD_CLOEXEC);
  pipe = {ends[0], ends[1]};
  return true;
}

void closeIfOpen(int& fd) {
  if (fd >= 0) ::close(fd);
  fd = -1;
}

void closePipe(Pipe& pipe) {
  closeIfOpen(pipe.read);
  closeIfOpen(pipe.write);
}

// The child's standard streams: input from its pipe or the null device,
// output to its pipe, errors to the null device.
bool arrangeStreams(posix_spawn_file_actions_t& actions, const Pipe* input, const Pipe& output) {
  bool ok = true;
  if (input) {
    ok &= posix_spawn_file_actions_adddup2(&actions, input->read, STDIN_FILENO) == 0;
  } else {
    ok &= posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0;
  }
  ok &= posix_spawn_file_actions_adddup2(&actions, output.write, STDOUT_FILENO) == 0;
  ok &= posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0;
  return ok;
}

// The child starts with the default broken-pipe action and no blocked
// signal, whatever this process set for itself.
bool arrangeSignals(posix_spawnattr_t& attributes, bool utilityPriority) {
  sigset_t defaults;
  sigset_t none;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);
  sigemptyset(&none);
  bool ok =
      posix_spawnattr_setsigdefault(&attributes, &defaults) == 0 &&
      posix_spawnattr_setsigmask(&attributes, &none) == 0 &&
      posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK) == 0;
#if defined(__APPLE__)
  if (utilityPriority) ok &= posix_spawnattr_set_qos_class_np(&attributes, QOS_CLASS_UTILITY) == 0;
#else
  (void)utilityPriority;
#endif
  return ok;
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::start(const std::string& path,
                                                  const std::vector<std::string>& arguments,
                                                  Options options) {
  // A write to a helper that died must be an answer, not the end of this
  // process; the child gets the default back.
  ::signal(SIGPIPE, SIG_IGN);
  Pipe input, output, wake;
  if ((options.pipeInput && !makePipe(input)) || !makePipe(output) || !makePipe(wake)) {
    closePipe(input);
    closePipe(output);
    closePipe(wake);
    return nullptr;
  }
  std::vector<std::string> words{path};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (auto& word : words)
    argv.push_back(word.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  pid_t pid = -1;
  const bool arranged = arrangeStreams(actions, options.pipeInput ? &input : nullptr, output) &&
                        arrangeSignals(attributes, options.utilityPriority);
  const bool started =
      arranged && posix_spawn(&pid, path.c_str(), &actions, &attributes, argv.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  closeIfOpen(input.read);
  closeIfOpen(output.write);
  if (!started) {
    closePipe(input);
    closePipe(output);
    closePipe(wake);
    return nullptr;
  }
  return std::unique_ptr<ChildProcess>(
      new ChildProcess(pid, input.write, output.read, wake.read, wake.write));
}

ChildProcess::ChildProcess(pid_t pid, int input, int output, int wakeRead, int wakeWrite)
    : pid_(pid), input_(input), output_(output), wakeRead_(wakeRead), wakeWrite_(wakeWrite) {}

ChildProcess::~ChildProcess() {
  stopReading();
  closeInput();
  if (!reapWithin(1.0)) {
    ::kill(pid_, SIGKILL);
    wait();
  }
  closeIfOpen(output_);
  closeIfOpen(wakeRead_);
  closeIfOpen(wakeWrite_);
}

bool ChildProcess::write(std::string_view bytes) {
  std::lock_guard lock(writeMutex_);
  while (!bytes.empty()) {
    if (input_ < 0) return false;
    const ssize_t written = ::write(input_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void ChildProcess::closeInput() {
  std::lock_guard lock(writeMutex_);
  closeIfOpen(input_);
}

std::string ChildProcess::readAll() {
  std::string all;
  char buffer[chunkBytes];
  while (true) {
    const ssize_t got = ::read(output_, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    all.append(buffer, static_cast<std::size_t>(got));
  }
  return all;
}

void ChildProcess::startReading(ChunkHandler onChunk) {
  if (reader_.joinable()) return;
  reader_ = std::thread([this, onChunk = std::move(onChunk)] { readLoop(onChunk); });
}

void ChildProcess::readLoop(ChunkHandler onChunk) {
  std::string buffer(chunkBytes, '\0');
  while (true) {
    pollfd watched[2] = {{output_, POLLIN, 0}, {wakeRead_, POLLIN, 0}};
    if (::poll(watched, 2, -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    if (watched[1].revents != 0) return;  // asked to stop: no more chunks
    const ssize_t got = ::read(output_, buffer.data(), buffer.size());
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (got <= 0) break;
    onChunk(buffer.substr(0, static_cast<std::size_t>(got)));
  }
  onChunk(std::string());
}

void ChildProcess::stopReading() {
  if (!reader_.joinable()) return;
  if (reader_.get_id() == std::this_thread::get_id()) {
    reader_.detach();
    return;
  }
  const char wake = 1;
  while (::write(wakeWrite_, &wake, 1) < 0 && errno == EINTR) {
  }
  reader_.join();
}

void ChildProcess::terminate() {
  if (!reaped_) ::kill(pid_, SIGTERM);
}

int ChildProcess::wait() {
  if (reaped_) return status_;
  int status = 0;
  pid_t done;
  do {
    done = ::waitpid(pid_, &status, 0);
  } while (done < 0 && errno == EINTR);
  reaped_ = true;
  status_ = done == pid_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return status_;
}

bool ChildProcess::reapWithin(double seconds) {
  using namespace std::chrono;
  const auto deadline = steady_clock::now() + duration<double>(seconds);
  while (!reaped_) {
    int status = 0;
    const pid_t done = ::waitpid(pid_, &status, WNOHANG);
    if (done == pid_ || (done < 0 && errno != EINTR)) {
      reaped_ = true;
      status_ = done == pid_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      break;
    }
    if (steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(milliseconds(10));
  }
  return true;
}

}  // namespace sodam
