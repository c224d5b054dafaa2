// The camera watch's record: sweeps of the permission log, merging what they
// find, and keeping it within its bounds.
#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

#include "camerawatch/camera_watch.h"

namespace sodam {

void CameraWatch::sweep() {
  if (!ports_.link || paused_ || sweeping_) return;
  sweeping_ = true;
  const Date started = now();
  const Date from =
      std::max(ports_.store.lastSweep().value_or(Date::distantPast()), started - sweepReachSeconds);
  ports_.link->query(
      from, started, false,
      weakCall(self_, [started](CameraWatch& watch, const std::vector<CameraRecord>& records) {
        watch.swept(started, records);
      }));
}

void CameraWatch::swept(Date started, const std::vector<CameraRecord>& records) {
  sweeping_ = false;
  ports_.store.setLastSweep(started);
  merge(records);
  changed();
  scheduleSweep(ports_.power.onBattery() ? batterySweepSeconds : sweepSeconds);
}

void CameraWatch::scheduleSweep(double seconds) {
  sweepTimer_ = ports_.scheduler.mainTimer(
      seconds, weakCall(self_, [](CameraWatch& watch) { watch.sweep(); }));
}

void CameraWatch::merge(const std::vector<CameraRecord>& records) {
  const auto folders = ports_.catalog.installFolders();
  for (const auto& record : records) {
    if (record.client || !seenKeys_.insert(record.key).second) continue;
    const std::string app = appName(record.path, record.identifier, ports_.catalog);
    const Date date = Date::fromUnix(record.time);
    if (record.preflight) {
      auto same = std::find_if(events_.begin(), events_.end(), [&](const WatchEvent& event) {
        return event.kind == WatchEvent::Kind::check && event.app == app &&
               std::fabs(event.time - date) <= checkMergeSeconds;
      });
      if (same != events_.end()) {
        ++same->count;
        continue;
      }
    }
    WatchEvent event;
    event.id = "r:" + record.key;
    event.kind = record.preflight ? WatchEvent::Kind::check : WatchEvent::Kind::request;
    event.time = date;
    event.app = app;
    event.path = record.actor.value_or(record.path);
    event.allowed = record.allowed;
    event.suspicious = outside(event.path, folders);
    events_.push_back(std::move(event));
  }
  std::stable_sort(events_.begin(), events_.end(),
                   [](const WatchEvent& a, const WatchEvent& b) { return a.time > b.time; });
  persist();
}

void CameraWatch::persist() {
  if (events_.size() > keptEvents) events_.resize(keptEvents);
  nlohmann::json stored = nlohmann::json::array();
  for (const auto& event : events_)
    stored.push_back(toJson(event));
  ports_.store.setWatchEvents(stored);
  std::vector<std::string> keys;
  for (const auto& key : seenKeys_) {
    if (keys.size() == keptKeys) break;
    keys.push_back(key);
  }
  ports_.store.setSeenKeys(std::move(keys));
}

}  // namespace sodam
