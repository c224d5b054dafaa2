#include "camerawatch/camera_watch.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "camerawatch/log_helper.h"
#include "support/numeric.h"
#include "support/text.h"
#include "support/uuid.h"

namespace sodam {

namespace {

std::vector<CameraUser> withoutSelf(std::vector<CameraUser> users) {
  std::erase_if(users, [](const CameraUser& user) { return user.id == LogHelper::ownIdentifier; });
  return users;
}

}  // namespace

CameraWatch::CameraWatch(Ports ports) : ports_(ports), self_(lifeToken(this)) {
  events_ = watchEventsFromJson(ports_.store.watchEvents());
  for (auto& event : events_) {
    if (event.kind == WatchEvent::Kind::cameraOn && !event.end) event.end = Date::distantPast();
  }
  notify_ = ports_.store.notifyCamera();
  const auto keys = ports_.store.seenKeys();
  seenKeys_.insert(keys.begin(), keys.end());
  if (ports_.link) {
    ports_.link->onIndicator =
        weakCall(self_, [](CameraWatch& watch, const IndicatorUpdate& u) { watch.indicated(u); });
  }
}

CameraWatch::~CameraWatch() {
  *self_ = nullptr;
  if (ports_.link) ports_.link->onIndicator = nullptr;
}

void CameraWatch::start() {
  ports_.devices.onListChange(weakCall(self_, [](CameraWatch& watch) { watch.watchDevices(); }));
  watchDevices();
  sweep();
}

void CameraWatch::markSeen() {
  ports_.store.setWatchSeenAt(now());
  changed();
}

void CameraWatch::clear() {
  std::erase_if(events_, [this](const WatchEvent& event) { return event.id != liveEventId_; });
  persist();
  changed();
}

std::optional<WatchEvent> CameraWatch::liveEvent() const {
  for (const auto& event : events_) {
    if (event.id == liveEventId_) return event;
  }
  return std::nullopt;
}

WatchEvent* CameraWatch::find(const std::string& id) {
  for (auto& event : events_) {
    if (event.id == id) return &event;
  }
  return nullptr;
}

void CameraWatch::changed() {
  onChange.notify();
}

void CameraWatch::setNotify(bool on) {
  notify_ = on;
  ports_.store.setNotifyCamera(on);
  changed();
}

void CameraWatch::setPaused(bool paused) {
  if (paused == paused_) return;
  paused_ = paused;
  if (paused) {
    sweepTimer_.invalidate();
  } else {
    scheduleSweep(resumeSweepSeconds);
  }
}

void CameraWatch::setSelfActive(bool active) {
  if (active == selfActive_) return;
  selfActive_ = active;
  if (active) {
    ports_.scheduler.later(streamDelaySeconds, weakCall(self_, [](CameraWatch& watch) {
                             watch.startStreamIfStillActive();
                           }));
    return;
  }
  if (streaming_) {
    streaming_ = false;
    if (ports_.link) ports_.link->stream(false);
  }
  selfStoppedAt_ = now();
  ports_.scheduler.later(recheckSeconds,
                         weakCall(self_, [](CameraWatch& watch) { watch.evaluate(); }));
}

// While the program's own camera runs, the device flag says nothing about
// others; the indicator's stream does.
void CameraWatch::startStreamIfStillActive() {
  if (!selfActive_ || streaming_ || !linkAvailable()) return;
  streaming_ = true;
  streamStarted_ = now();
  ports_.link->stream(true);
}

bool CameraWatch::readsAppNames() const {
  return linkAvailable();
}

std::string_view CameraWatch::note() const {
  if (!readsAppNames())
    return "권한 기록을 읽지 못해 켜진 시각만 남겨요. 관리자 계정에서는 앱 이름까지 보여요.";
  return "앱 이름은 운영체제 권한 기록에서 읽어요. 소담자리가 쓴 카메라 시간은 목록에서 뺐어요. "
         "줄에 마우스를 올리면 실행 파일 위치가 보여요.";
}

int CameraWatch::unseen() const {
  const Date seenAt = ports_.store.watchSeenAt();
  return static_cast<int>(std::count_if(events_.begin(), events_.end(), [seenAt](const auto& e) {
    return e.suspicious && e.time > seenAt;
  }));
}

std::string CameraWatch::statusLine() const {
  if (const auto live = liveEvent()) return "지금 다른 앱이 카메라 사용 중 · " + live->app;
  const Date since = now() - statusLineSeconds;
  int on = 0;
  int asks = 0;
  for (const auto& event : events_) {
    if (event.time < since) continue;
    if (event.kind == WatchEvent::Kind::cameraOn) {
      ++on;
    } else {
      asks += event.count;
    }
  }
  return format("지난 하루 다른 앱 · 카메라 켜짐 %d회 · 권한 요청 %d건", on, asks);
}

void CameraWatch::watchDevices() {
  const auto listed = ports_.devices.list().value_or(std::vector<CameraDevices::DeviceId>{});
  for (const auto device : listed) {
    if (std::find(devices_.begin(), devices_.end(), device) != devices_.end()) continue;
    ports_.devices.onRunningChange(device,
                                   weakCall(self_, [](CameraWatch& watch) { watch.evaluate(); }));
  }
  devices_ = listed;
  evaluate();
}

void CameraWatch::indicated(const IndicatorUpdate& update) {
  indicatedAt_ = now();
  auto users = withoutSelf(update.cams);
  if (users == others_) return;
  others_ = std::move(users);
  evaluate();
}

bool CameraWatch::anyDeviceRunning() {
  return std::any_of(devices_.begin(), devices_.end(), [this](CameraDevices::DeviceId device) {
    return ports_.devices.running(device).value_or(false);
  });
}

void CameraWatch::evaluate() {
  const bool running = anyDeviceRunning();
  if (!running) {
    lastIdle_ = now();
    others_.clear();
  }
  if (liveEventId_) {
    // With the stream on and nobody else shown since it started, the only
    // user left is the program itself.
    const bool onlySelf = running && streaming_ && others_.empty() && indicatedAt_ > streamStarted_;
    if (running && !onlySelf) {
      const WatchEvent* live = find(*liveEventId_);
      if (live && live->app == WatchEvent::checking && !others_.empty())
        resolve(*liveEventId_, others_);
    } else {
      closeLive();
    }
  } else if (!others_.empty()) {
    cameraTurnedOn(others_);
  } else if (running && !selfActive_) {
    if (now() - selfStoppedAt_ < windDownSeconds) {
      ports_.scheduler.later(recheckSeconds,
                             weakCall(self_, [](CameraWatch& watch) { watch.evaluate(); }));
      return;
    }
    cameraTurnedOn({});
  }
  changed();
}

void CameraWatch::closeLive() {
  if (WatchEvent* live = find(*liveEventId_)) live->end = now();
  liveEventId_.reset();
  persist();
}

std::optional<std::string> CameraWatch::machineNote() const {
  const Power& power = ports_.power;
  if (power.screenLocked() || power.sessionLocked()) return "화면이 잠긴 사이 켜졌어요";
  if (power.displaysAsleep()) return "화면이 꺼진 사이 켜졌어요";
  if (power.idleSeconds() > awayIdleSeconds) return "자리를 비운 사이 켜졌어요";
  return std::nullopt;
}

void CameraWatch::cameraTurnedOn(const std::vector<CameraUser>& users) {
  WatchEvent event;
  event.id = newUuid();
  event.kind = WatchEvent::Kind::cameraOn;
  event.time = now();
  event.app = WatchEvent::checking;
  event.suspicious = machineNote();
  const std::string id = event.id;
  events_.insert(events_.begin(), std::move(event));
  liveEventId_ = id;
  persist();
  if (!users.empty()) {
    resolve(id, users);
    return;
  }
  // Back to the last moment nothing ran, and a little before it.
  const double lookback = clamp(lastIdle_ ? now() - *lastIdle_ + 5 : 60, 10, 60);
  const Date at = now();
  ports_.scheduler.later(identifyDelaySeconds,
                         weakCall(self_, [id, at, lookback](CameraWatch& watch) {
                           watch.identify(id, at, lookback, 0);
                         }));
}

}  // namespace sodam
