#include "linux/command_model.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "support/utf8.h"

extern char** environ;

namespace sodam {

namespace {

// The input goes through an unlinked temporary file rather than a pipe, so
// a runtime that writes before it has read everything cannot block on us.
int inputFile(const std::string& input) {
  char path[] = "/tmp/sodamjari-model-XXXXXX";
  const int fd = mkostemp(path, O_CLOEXEC);
  if (fd < 0) return -1;
  unlink(path);
  std::size_t written = 0;
  while (written < input.size()) {
    const ssize_t n = write(fd, input.data() + written, input.size() - written);
    if (n <= 0) {
      close(fd);
      return -1;
    }
    written += static_cast<std::size_t>(n);
  }
  lseek(fd, 0, SEEK_SET);
  return fd;
}

std::string readAll(int fd) {
  std::string out;
  char buffer[4096];
  ssize_t n;
  while ((n = read(fd, buffer, sizeof buffer)) > 0)
    out.append(buffer, static_cast<std::size_t>(n));
  return out;
}

// Starts `sh -c command` reading `in` and writing into `out`; its pid, or
// -1.
pid_t spawnShell(const std::string& command, int in, int out) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  std::string shell = "/bin/sh", flag = "-c", line = command;
  char* argv[] = {shell.data(), flag.data(), line.data(), nullptr};
  pid_t pid = -1;
  if (posix_spawn(&pid, "/bin/sh", &actions, nullptr, argv, environ) != 0) pid = -1;
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

}  // namespace

CommandLanguageModel::CommandLanguageModel(std::string command, Scheduler& scheduler)
    : command_(std::move(command)), scheduler_(scheduler) {}

CommandLanguageModel::~CommandLanguageModel() {
  std::lock_guard lock(workersMutex_);
  for (auto& worker : workers_)
    worker.join();
}

std::unique_ptr<CommandLanguageModel> CommandLanguageModel::fromEnvironment(Scheduler& scheduler) {
  const char* command = std::getenv(variable);
  if (!command || utf8::trim(command).empty()) return nullptr;
  return std::make_unique<CommandLanguageModel>(command, scheduler);
}

void CommandLanguageModel::respond(const std::string& instructions, const std::string& question,
                                   Reply reply) {
  std::string input = instructions + "\n\n" + question + "\n";
  std::lock_guard lock(workersMutex_);
  workers_.emplace_back([this, input = std::move(input), reply = std::move(reply)]() mutable {
    auto answer = run(command_, input);
    scheduler_.post([reply = std::move(reply), answer = std::move(answer)] { reply(answer); });
  });
}

std::optional<std::string> CommandLanguageModel::run(const std::string& command,
                                                     const std::string& input) {
  const int in = inputFile(input);
  if (in < 0) return std::nullopt;
  int pipeFds[2];
  if (pipe2(pipeFds, O_CLOEXEC) != 0) {
    close(in);
    return std::nullopt;
  }
  const pid_t pid = spawnShell(command, in, pipeFds[1]);
  close(in);
  close(pipeFds[1]);
  std::string output = pid > 0 ? readAll(pipeFds[0]) : std::string();
  close(pipeFds[0]);
  int status = 0;
  if (pid <= 0 || waitpid(pid, &status, 0) != pid) return std::nullopt;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  std::string reply = utf8::trim(output);
  if (reply.empty()) return std::nullopt;
  return reply;
}

}  // namespace sodam
