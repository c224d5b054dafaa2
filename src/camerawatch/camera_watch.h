#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "camerawatch/camera_devices.h"
#include "camerawatch/log_link.h"
#include "camerawatch/watch_event.h"
#include "platform/power.h"
#include "platform/store.h"
#include "support/clock.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// Tells the user when another application turns the camera on or asks for
// it. It watches the camera devices, so it learns at once that a camera
// runs, asks the log helper who it was, and sweeps the log for permission
// requests now and then. What it finds it keeps as a record of `WatchEvent`s
// with a warning on each that looks suspicious. It owns no window: the
// application turns `onCameraOn` into pills and a page shows the record.
// Main thread; every delayed step holds it weakly.
class CameraWatch {
 public:
  static constexpr double sweepSeconds = 600;
  static constexpr double batterySweepSeconds = 1800;
  static constexpr double resumeSweepSeconds = 20;
  // How far back a sweep reads at most.
  static constexpr double sweepReachSeconds = 7200;
  static constexpr std::size_t keptEvents = 400;
  static constexpr std::size_t keptKeys = 2000;
  // Checks of the right by one application this close together are one event.
  static constexpr double checkMergeSeconds = 600;
  // The program's own camera runs this long before the indicator is streamed.
  static constexpr double streamDelaySeconds = 8;
  // The device flag may lag behind the program's own camera stopping.
  static constexpr double windDownSeconds = 1.5;
  static constexpr double recheckSeconds = 1.6;
  static constexpr double identifyDelaySeconds = 0.3;
  static constexpr double identifyRetrySeconds = 0.6;
  // Indicator readings taken before the name is sought in the records.
  static constexpr int indicatorTries = 3;
  static constexpr double awayIdleSeconds = 120;
  static constexpr double statusLineSeconds = 86400;

  struct Ports {
    CameraDevices& devices;
    AppCatalog& catalog;
    // None when the helper could not be started.
    LogLink* link;
    Store& store;
    Power& power;
    Clock& clock;
    Scheduler& scheduler;
  };

  // Loads the record, the switch and the handled keys; a camera use left
  // open by an earlier run is closed with an end that isn't known.
  explicit CameraWatch(Ports ports);
  ~CameraWatch();
  CameraWatch(const CameraWatch&) = delete;
  CameraWatch& operator=(const CameraWatch&) = delete;

  // Listens to the devices and sweeps once.
  void start();
  // The user looked at the record.
  void markSeen();
  // Drops every event but the one running now.
  void clear();
  // Reads the log for permission requests since the last sweep.
  void sweep();

  const std::vector<WatchEvent>& events() const { return events_; }
  std::optional<WatchEvent> liveEvent() const;
  // The user's switch "켜지면 알림", kept in the store.
  bool notify() const { return notify_; }
  void setNotify(bool on);
  // No sweeping meanwhile: the screen is locked or the machine asleep.
  bool paused() const { return paused_; }
  void setPaused(bool paused);
  // The program's own camera runs.
  bool selfActive() const { return selfActive_; }
  void setSelfActive(bool active);

  // The helper answers, so applications can be named.
  bool readsAppNames() const;
  // The page's note on where the names come from.
  std::string_view note() const;
  // Suspicious events the user has not seen yet.
  int unseen() const;
  std::string statusLine() const;

  // After any change.
  ChangeSignal onChange;
  // A new camera use to announce; `resolved` false while its name is missing.
  std::function<void(const WatchEvent& event, bool resolved)> onCameraOn;

  // A display name for an executable path or identifier.
  static std::string appName(const std::string& path, const std::string& identifier,
                             AppCatalog& catalog);
  // Why a program at the path looks suspicious: it lives outside the places
  // programs are installed. Nothing for an empty path.
  static std::optional<std::string> outside(const std::string& path,
                                            const std::vector<std::string>& installFolders);

 private:
  Date now() const { return ports_.clock.now(); }
  bool linkAvailable() const { return ports_.link && ports_.link->available(); }
  WatchEvent* find(const std::string& id);
  void changed();

  void watchDevices();
  void indicated(const IndicatorUpdate& update);
  void evaluate();
  bool anyDeviceRunning();
  void closeLive();
  void cameraTurnedOn(const std::vector<CameraUser>& users);
  std::optional<std::string> machineNote() const;
  void startStreamIfStillActive();

  void identify(const std::string& id, Date at, double lookback, int tries);
  void identified(const std::string& id, Date at, double lookback, int tries,
                  const std::optional<IndicatorUpdate>& update);
  void resolve(const std::string& id, const std::vector<CameraUser>& users);
  void attribute(const std::string& id, Date at, double lookback);
  void attributed(const std::string& id, const std::vector<CameraRecord>& records);
  void announce(const std::string& id, bool resolved);
  void noteOutside(WatchEvent& event);

  void swept(Date started, const std::vector<CameraRecord>& records);
  void scheduleSweep(double seconds);
  void merge(const std::vector<CameraRecord>& records);
  void persist();

  Ports ports_;
  LifeToken<CameraWatch> self_;
  std::vector<WatchEvent> events_;
  std::optional<std::string> liveEventId_;
  bool notify_ = true;
  bool paused_ = false;
  bool selfActive_ = false;
  std::vector<CameraDevices::DeviceId> devices_;
  Timer sweepTimer_;
  bool sweeping_ = false;
  Date selfStoppedAt_ = Date::distantPast();
  std::optional<Date> lastIdle_;
  std::set<std::string> seenKeys_;
  std::vector<CameraUser> others_;
  bool streaming_ = false;
  Date streamStarted_ = Date::distantPast();
  Date indicatedAt_ = Date::distantPast();
};

}  // namespace sodam
