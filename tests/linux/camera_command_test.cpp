#include "linux/camera_command.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "linux/linux_confinement.h"
#include "posix/child_process.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

struct CameraCommand : ::testing::Test {
  fs::path root =
      fs::temp_directory_path() / ("sodam-camera-command-" + std::to_string(::getpid()) + "-" +
                                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
  fs::path data = root / "data";

  void SetUp() override { fs::create_directories(root); }
  void TearDown() override { fs::remove_all(root); }

  // The program itself, as a user runs it.
  std::string sodamjari(const std::vector<std::string>& args) {
    auto child = ChildProcess::start(SODAMJARI_BINARY, args, {});
    EXPECT_TRUE(child);
    if (!child) return {};
    auto text = child->readAll();
    EXPECT_EQ(child->wait(), 0) << text;
    return text;
  }
};

TEST_F(CameraCommand, BadInputIsNamed) {
  struct Case {
    std::vector<std::string> args;
    const char* message;
  };
  for (const auto& c : {Case{{"--data-dir"}, "--data-dir needs a value"},
                        Case{{"--verbose"}, "unknown option --verbose"},
                        Case{{"--data-dir", "a", "b"}, "unknown option b"}}) {
    std::ostringstream out, err;
    EXPECT_EQ(runCamera(c.args, out, err), 2);
    EXPECT_NE(err.str().find(c.message), std::string::npos) << err.str();
    EXPECT_TRUE(out.str().empty());
  }
}

TEST_F(CameraCommand, AnEmptyRecordSaysSo) {
  std::ostringstream out, err;
  ASSERT_EQ(runCamera({"--data-dir", data.string()}, out, err), 0) << err.str();
  EXPECT_EQ(out.str(), "소담자리 카메라 기록 · 기록: " + data.string() + "\n기록이 없어요\n");
}

TEST_F(CameraCommand, TheConfinedProductRecordsADayAndShowsTheCameraNow) {
  const fs::path scenario = root / "day.txt";
  std::ofstream(scenario) << "start 09:00\nend 09:40\n09:00 present=yes\n"
                             "09:10 camera=Meetly\n09:25 camera=off\n";
  const fs::path device = root / "video0";
  std::ofstream(device) << "frames";
  ::setenv("SODAMJARI_CAMERA_DEVICES", device.c_str(), 1);

  const auto day = sodamjari({"simulate", scenario.string(), "--data-dir", data.string()});
  const bool confinable =
      LinuxConfinement::landlockVersion() >= 1 && LinuxConfinement::seccompAvailable();
  EXPECT_NE(day.find(confinable ? "보안: 보안 잠금이 걸려 있어요 · 프로그램을 실행하지 못하고"
                                : "보안: 보안 잠금을 걸지 못했어요"),
            std::string::npos)
      << day;
  EXPECT_NE(day.find("  오전 9:10 Meetly · 카메라 켜짐 · 15분 0초 동안"), std::string::npos) << day;
  EXPECT_NE(day.find("이 컴퓨터의 카메라 · 지금 쓰는 프로그램 없음"), std::string::npos) << day;

  // A real process holds the watched device while the record is read.
  auto holder = ChildProcess::start("/bin/sh", {"-c", "exec 3<\"$0\"; read line", device.string()},
                                    {.pipeInput = true});
  ASSERT_TRUE(holder);
  const std::string executable =
      fs::read_symlink("/proc/" + std::to_string(holder->pid()) + "/exe");
  const auto record = sodamjari({"camera", "--data-dir", data.string()});
  ::unsetenv("SODAMJARI_CAMERA_DEVICES");
  EXPECT_NE(record.find("Meetly · 카메라 켜짐 · 15분 0초 동안\n    "
                        "/Applications/Meetly.app/Contents/MacOS/Meetly\n"),
            std::string::npos)
      << record;
  EXPECT_NE(record.find("이 컴퓨터의 카메라 · 지금 사용 중: " +
                        fs::path(executable).filename().string() + " (" + executable + ")"),
            std::string::npos)
      << record;
}

}  // namespace
}  // namespace sodam
