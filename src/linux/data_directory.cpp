#include "linux/data_directory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

namespace sodam {

std::optional<std::filesystem::path> DataDirectory::standard(const char* xdgConfigHome,
                                                             const char* home) {
  // The base directory rules ignore a relative XDG_CONFIG_HOME.
  if (xdgConfigHome && *xdgConfigHome == '/') {
    return std::filesystem::path(xdgConfigHome) / "sodamjari";
  }
  if (home && *home) return std::filesystem::path(home) / ".config" / "sodamjari";
  return std::nullopt;
}

std::optional<std::filesystem::path> DataDirectory::standard() {
  return standard(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
}

std::variant<DataDirectory, StoreFailure> DataDirectory::claim(const std::filesystem::path& path) {
  auto failure = [&](StoreFailure::Kind kind, int error) {
    return StoreFailure{kind, path, std::strerror(error)};
  };
  std::error_code created;
  std::filesystem::create_directories(path, created);
  if (created) return StoreFailure{StoreFailure::Kind::unusable, path, created.message()};
  const int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return failure(StoreFailure::Kind::unusable, errno);
  int locked = 0;
  do {
    locked = ::flock(fd, LOCK_EX | LOCK_NB);
  } while (locked != 0 && errno == EINTR);
  if (locked != 0) {
    const int error = errno;
    ::close(fd);
    return failure(error == EWOULDBLOCK ? StoreFailure::Kind::busy : StoreFailure::Kind::unusable,
                   error);
  }
  return DataDirectory(path, fd);
}

DataDirectory::DataDirectory(DataDirectory&& other) noexcept
    : path_(std::move(other.path_)), fd_(std::exchange(other.fd_, -1)) {}

DataDirectory& DataDirectory::operator=(DataDirectory&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) ::close(fd_);
    path_ = std::move(other.path_);
    fd_ = std::exchange(other.fd_, -1);
  }
  return *this;
}

DataDirectory::~DataDirectory() {
  // Closing the last descriptor gives the lock back.
  if (fd_ >= 0) ::close(fd_);
}

}  // namespace sodam
