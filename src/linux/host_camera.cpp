#include "linux/host_camera.h"

#include <chrono>
#include <thread>

#include "camerawatch/log_helper.h"
#include "linux/linux_camera_sources.h"

namespace sodam {

HostCamera::HostCamera()
    : launcher_(linuxExecutablePath()),
      channel_(launcher_.launch(LogHelper::flag)),
      started_(SystemClock().now()) {}

HostCamera::~HostCamera() = default;

void HostCamera::connect() {
  if (channel_) link_ = std::make_unique<LogLink>(std::move(channel_), scheduler_);
}

std::string HostCamera::nowLine() {
  const std::string head = "이 컴퓨터의 카메라 · ";
  if (!link_ || !link_->available()) return head + "기록 도우미가 없어 알 수 없어요";
  std::optional<IndicatorUpdate> shown;
  bool answered = false;
  // The helper's last change since it started is who holds a camera now.
  link_->indicator(started_ - 1, SystemClock().now() + 1, [&](std::optional<IndicatorUpdate> u) {
    shown = std::move(u);
    answered = true;
  });
  const auto deadline =
      std::chrono::steady_clock::now() + std::chrono::duration<double>(answerSeconds);
  while (!answered && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    scheduler_.runPosted();
  }
  if (!answered) return head + "기록 도우미가 답하지 않아요";
  std::string names;
  for (const auto& user : shown ? shown->cams : std::vector<CameraUser>{}) {
    if (user.id == LogHelper::ownIdentifier) continue;
    names += (names.empty() ? "" : ", ") + user.name + " (" + user.id + ")";
  }
  return head + (names.empty() ? "지금 쓰는 프로그램 없음" : "지금 사용 중: " + names);
}

}  // namespace sodam
