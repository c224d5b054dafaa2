#include "linux/linux_process_inspector.h"

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace sodam {
namespace {

namespace fs = std::filesystem;

TEST(LinuxProcessInspector, ReadsTheTracerFromTheStatusFileAndTheLoadersEnvironment) {
  EXPECT_EQ(LinuxProcessInspector::tracerPid("Name:\tx\nTracerPid:\t4711\nUid:\t0\n"), 4711);
  EXPECT_EQ(LinuxProcessInspector::tracerPid("Name:\tx\nTracerPid:\t0\n"), 0);
  EXPECT_EQ(LinuxProcessInspector::tracerPid("Name:\tx\n"), 0);
  EXPECT_FALSE(LinuxProcessInspector("/nonexistent/status").traced());
  EXPECT_FALSE(LinuxProcessInspector().traced()) << "the test itself runs untraced";

  const char* before = std::getenv("LD_PRELOAD");
  const std::string saved = before ? before : "";
  ::setenv("LD_PRELOAD", "/tmp/libspy.so", 1);
  EXPECT_EQ(LinuxProcessInspector().injectedLibraries(), "/tmp/libspy.so");
  ::setenv("LD_PRELOAD", "", 1);
  EXPECT_EQ(LinuxProcessInspector().injectedLibraries(), "");
  if (before) {
    ::setenv("LD_PRELOAD", saved.c_str(), 1);
  } else {
    ::unsetenv("LD_PRELOAD");
  }
}

// Runs `sodamjari simulate` on a short day, traced by this process when
// asked, and gives its transcript.
std::string simulateDay(bool traced) {
  const fs::path dir = fs::temp_directory_path() /
                       ("sodam-traced-" + std::to_string(::getpid()) + (traced ? "-t" : "-u"));
  fs::remove_all(dir);
  fs::create_directories(dir);
  const fs::path scenario = dir / "day.txt";
  std::ofstream(scenario) << "start 09:00\nend 09:03\n09:00 present=yes\n";
  const fs::path transcript = dir / "out.txt";

  const pid_t child = ::fork();
  if (child == 0) {
    if (traced) ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    // A leak check at exit attaches a tracer of its own, which this one blocks.
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    const std::string data = (dir / "data").string();
    std::freopen(transcript.c_str(), "w", stdout);
    ::execl(SODAMJARI_BINARY, SODAMJARI_BINARY, "simulate", scenario.c_str(), "--data-dir",
            data.c_str(), static_cast<char*>(nullptr));
    std::_Exit(127);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
    // The stop at the start of the program is the tracer's own; others are
    // the child's signals and go on to it.
    const int signal = WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
    ::ptrace(PTRACE_CONT, child, nullptr, reinterpret_cast<void*>(static_cast<long>(signal)));
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  std::stringstream text;
  text << std::ifstream(transcript).rdbuf();
  fs::remove_all(dir);
  return text.str();
}

TEST(LinuxProcessInspector, TheProgramUnderATracerRevokesTheCamera) {
  const std::string plain = simulateDay(false);
  EXPECT_EQ(plain.find("감은 눈"), std::string::npos) << plain;
  const std::string traced = simulateDay(true);
  EXPECT_NE(traced.find("감은 눈"), std::string::npos) << traced;
  EXPECT_EQ(traced.find("창: 바른 자세 배우기 안내"), std::string::npos)
      << "no guide opens without a camera";
}

}  // namespace
}  // namespace sodam
