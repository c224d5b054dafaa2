#include "linux/linux_confinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace sodam {
namespace {

namespace fs = std::filesystem;

// What a confined process could still do, one bit each.
enum Outcome : int {
  applied = 1,
  execRefusedWithEperm = 2,
  writeOutsideRefused = 4,
  writeInsideAllowed = 8,
  devNullWritable = 16,
  readOutsideAllowed = 32,
};

bool canCreate(const fs::path& file) {
  const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0) return false;
  ::close(fd);
  return true;
}

// Confines a child of this test and reports what it could do afterwards.
int confinedChild(const fs::path& data, const fs::path& outside) {
  const pid_t child = ::fork();
  if (child == 0) {
    int outcome = 0;
    LinuxConfinement confinement(data);
    if (confinement.apply("")) outcome |= applied;
    char* const argv[] = {const_cast<char*>("/bin/true"), nullptr};
    if (::execv("/bin/true", argv) < 0 && errno == EPERM) outcome |= execRefusedWithEperm;
    if (!canCreate(outside / "frame.txt")) outcome |= writeOutsideRefused;
    if (canCreate(data / "nested.txt")) outcome |= writeInsideAllowed;
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null >= 0 && ::write(null, "x", 1) == 1) outcome |= devNullWritable;
    const int readable = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (readable >= 0) outcome |= readOutsideAllowed;
    ::_exit(outcome);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(LinuxConfinementTest, NoProgramStartsAndNothingIsWrittenOutsideTheDataDirectory) {
  if (LinuxConfinement::landlockVersion() < 1)
    GTEST_SKIP() << "this kernel has no Landlock: the program runs unconfined here";
  if (!LinuxConfinement::seccompAvailable())
    GTEST_SKIP() << "this kernel filters no system calls: the program runs unconfined here";
  const fs::path root =
      fs::temp_directory_path() / ("sodam-confined-" + std::to_string(::getpid()));
  fs::remove_all(root);
  fs::create_directories(root / "outside");
  const int outcome = confinedChild(root / "data", root / "outside");
  EXPECT_TRUE(outcome & applied);
  EXPECT_TRUE(outcome & execRefusedWithEperm);
  EXPECT_TRUE(outcome & writeOutsideRefused);
  EXPECT_TRUE(outcome & writeInsideAllowed);
  EXPECT_TRUE(outcome & devNullWritable);
  EXPECT_TRUE(outcome & readOutsideAllowed);
  EXPECT_FALSE(fs::exists(root / "outside" / "frame.txt"));
  EXPECT_TRUE(fs::exists(root / "data" / "nested.txt"));
  fs::remove_all(root);
}

}  // namespace
}  // namespace sodam
