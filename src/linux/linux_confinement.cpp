#include "linux/linux_confinement.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>

#ifndef LANDLOCK_ACCESS_FS_TRUNCATE
#define LANDLOCK_ACCESS_FS_TRUNCATE (1ULL << 14)
#endif

namespace sodam {

namespace {

// Everything that changes a file or makes one, in the first version.
constexpr std::uint64_t writeRights =
    LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE |
    LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
    LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
    LANDLOCK_ACCESS_FS_MAKE_SYM;

// The rights the ruleset governs on a kernel of the given version: writing,
// and executing, which no rule gives back.
std::uint64_t governedRights(int version) {
  std::uint64_t rights = writeRights | LANDLOCK_ACCESS_FS_EXECUTE;
  if (version >= 2) rights |= LANDLOCK_ACCESS_FS_REFER;
  if (version >= 3) rights |= LANDLOCK_ACCESS_FS_TRUNCATE;
  return rights;
}

struct FileDescriptor {
  int fd = -1;
  ~FileDescriptor() {
    if (fd >= 0) ::close(fd);
  }
};

bool allowBeneath(int ruleset, const char* path, std::uint64_t rights) {
  FileDescriptor place{::open(path, O_PATH | O_CLOEXEC)};
  if (place.fd < 0) return false;
  landlock_path_beneath_attr rule{};
  rule.allowed_access = rights;
  rule.parent_fd = place.fd;
  return ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

bool restrictWrites(const std::filesystem::path& dataDirectory) {
  const int version = LinuxConfinement::landlockVersion();
  const std::uint64_t governed = governedRights(version);
  landlock_ruleset_attr attributes{};
  attributes.handled_access_fs = governed;
  FileDescriptor ruleset{
      static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0))};
  if (ruleset.fd < 0) return false;
  const std::uint64_t fileWrites =
      LANDLOCK_ACCESS_FS_WRITE_FILE | (governed & LANDLOCK_ACCESS_FS_TRUNCATE);
  const std::uint64_t folderWrites = governed & ~LANDLOCK_ACCESS_FS_EXECUTE;
  return allowBeneath(ruleset.fd, dataDirectory.c_str(), folderWrites) &&
         allowBeneath(ruleset.fd, "/dev/null", fileWrites) &&
         ::syscall(SYS_landlock_restrict_self, ruleset.fd, 0) == 0;
}

bool refuseStartingPrograms() {
  scmp_filter_ctx filter = ::seccomp_init(SCMP_ACT_ALLOW);
  if (!filter) return false;
  // Every thread, should one already run.
  ::seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1);
  const bool loaded =
      ::seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(execve), 0) == 0 &&
      ::seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(execveat), 0) == 0 &&
      ::seccomp_load(filter) == 0;
  ::seccomp_release(filter);
  return loaded;
}

}  // namespace

int LinuxConfinement::landlockVersion() {
  const long version =
      ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  return version > 0 ? static_cast<int>(version) : 0;
}

bool LinuxConfinement::seccompAvailable() {
  return ::prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0 && ::seccomp_api_get() >= 1;
}

void LinuxConfinement::ignoreBrokenPipe() {
  std::signal(SIGPIPE, SIG_IGN);
}

bool LinuxConfinement::apply(const std::string&) {
  // Both or neither: a half lock would promise what it doesn't keep.
  if (landlockVersion() < 1 || !seccompAvailable()) return false;
  std::error_code error;
  std::filesystem::create_directories(dataDirectory_, error);
  if (!std::filesystem::is_directory(dataDirectory_)) return false;
  // Neither rule may be shed by a program this process could start.
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
  return refuseStartingPrograms() && restrictWrites(dataDirectory_);
}

}  // namespace sodam
