// The Linux camera-log helper as a real child of this test, watching a
// device file of the test's own, while real processes open and close it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "camerawatch/log_link.h"
#include "linux/camera_device_watch.h"
#include "posix/child_process.h"
#include "posix/pipe_helper_launcher.h"
#include "posix/scheduler_pump.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;

class CameraHelperTest : public ::testing::Test {
 protected:
  CameraHelperTest() {
    folder = fs::temp_directory_path() / ("sodam-camera-" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    device = folder / "video0";
    std::ofstream(device) << "frames";
    ::setenv("SODAMJARI_CAMERA_DEVICES", (folder / "video*").c_str(), 1);
    link = LogLink::spawn(launcher, scheduler);
    ::unsetenv("SODAMJARI_CAMERA_DEVICES");
  }
  ~CameraHelperTest() override {
    link.reset();
    fs::remove_all(folder);
  }

  // A real process that holds the device open until its input ends.
  std::unique_ptr<ChildProcess> openDevice() {
    return ChildProcess::start("/bin/sh", {"-c", "exec 3<\"$0\"; read line", device.string()},
                               {.pipeInput = true});
  }

  template <class Condition>
  bool pumpUntil(Condition done) {
    return sodam::pumpUntil(scheduler, done);
  }

  std::optional<IndicatorUpdate> askIndicator(Date from, Date to) {
    std::optional<IndicatorUpdate> reading;
    bool answered = false;
    link->indicator(from, to, [&](std::optional<IndicatorUpdate> u) {
      reading = std::move(u);
      answered = true;
    });
    EXPECT_TRUE(pumpUntil([&] { return answered; }));
    return reading;
  }

  fs::path folder, device;
  ManualClock clock{Date::fromUnix(1)};
  ManualScheduler scheduler{clock};
  PipeHelperLauncher launcher{SODAMJARI_BINARY};
  std::unique_ptr<LogLink> link;
};

Date realNow() {
  return SystemClock().now();
}

TEST_F(CameraHelperTest, AProcessThatOpensTheDeviceIsRecordedWithItsPidAndExecutable) {
  ASSERT_TRUE(link);
  const Date before = realNow() - 1;
  auto holder = openDevice();
  ASSERT_TRUE(holder);
  const std::string executable =
      fs::read_symlink("/proc/" + std::to_string(holder->pid()) + "/exe");

  // Who holds it now, as the indicator would show.
  std::optional<IndicatorUpdate> shown;
  ASSERT_TRUE(pumpUntil([&] {
    shown = askIndicator(before, realNow() + 1);
    return shown && !shown->cams.empty();
  }));
  EXPECT_EQ(shown->cams,
            (std::vector<CameraUser>{{fs::path(executable).filename().string(), executable}}));

  // Who opened it in the window, as the camera stack's clients.
  std::vector<CameraRecord> records;
  bool answered = false;
  link->query(before, realNow() + 1, true, [&](std::vector<CameraRecord> r) {
    records = std::move(r);
    answered = true;
  });
  ASSERT_TRUE(pumpUntil([&] { return answered; }));
  ASSERT_EQ(records.size(), 1u);
  EXPECT_TRUE(records[0].client);
  EXPECT_EQ(records[0].pid, holder->pid());
  EXPECT_EQ(records[0].path, executable);
  // Appended, not "c" + string: that trips GCC 12's -Wrestrict at -O2 (GCC bug 105329).
  std::string clientKey = "c";
  clientKey += std::to_string(holder->pid());
  EXPECT_EQ(records[0].key.substr(0, records[0].key.find('@')), clientKey);
  EXPECT_GE(records[0].time, before.unixSeconds());

  // Closing it is a change to nobody, and the stream reports it.
  std::vector<IndicatorUpdate> streamed;
  link->onIndicator = [&](const IndicatorUpdate& u) { streamed.push_back(u); };
  link->stream(true);
  askIndicator(before, realNow() + 1);  // the stream is on once this is answered
  holder->closeInput();
  holder->wait();
  ASSERT_TRUE(pumpUntil([&] { return !streamed.empty(); }));
  EXPECT_TRUE(streamed.back().cams.empty());
}

TEST_F(CameraHelperTest, TheProgramItselfIsNamedByItsOwnIdentifierAndNoClient) {
  ASSERT_TRUE(link);
  const Date before = realNow() - 1;
  // This test process is the helper's parent, as the main program would be.
  std::ifstream held(device);
  std::optional<IndicatorUpdate> shown;
  ASSERT_TRUE(pumpUntil([&] {
    shown = askIndicator(before, realNow() + 1);
    return shown && !shown->cams.empty();
  }));
  EXPECT_EQ(shown->cams.at(0).id, "kr.lumenfold.sodamjari");
  std::vector<CameraRecord> records{CameraRecord{}};
  link->query(before, realNow() + 1, true, [&](std::vector<CameraRecord> r) { records = r; });
  ASSERT_TRUE(pumpUntil([&] { return records.empty(); }));
}

TEST(CameraDevicePatternsTest, TheSettingOrTheVideoDevices) {
  EXPECT_EQ(cameraDevicePatterns(nullptr), std::vector<std::string>{"/dev/video*"});
  EXPECT_EQ(cameraDevicePatterns(""), std::vector<std::string>{"/dev/video*"});
  EXPECT_EQ(cameraDevicePatterns("/tmp/a::/dev/v4l/*"),
            (std::vector<std::string>{"/tmp/a", "/dev/v4l/*"}));
}

}  // namespace
}  // namespace sodam
