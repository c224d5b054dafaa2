// How the camera watch names the application behind a camera use: first
// from the indicator, then from the records of the camera stack and the
// permission daemon.
#include <algorithm>
#include <set>

#include "camerawatch/camera_watch.h"
#include "camerawatch/log_entry.h"
#include "camerawatch/log_helper.h"

namespace sodam {

namespace {

constexpr std::string_view bundleMark = ".app/";
constexpr std::string_view bundleExtension = ".app";
// The record's window reaches a little past the moment the camera came on.
constexpr double attributionAfterSeconds = 2;
// The indicator's window around that moment.
constexpr double indicatorBeforeSeconds = 4;
constexpr double indicatorAfterSeconds = 1;

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const auto& name : names) {
    if (!text.empty()) text += ", ";
    text += name;
  }
  return text;
}

// The permission record that names the use best: the last real request, or
// the last check when there are only checks.
const CameraRecord* bestRequest(std::vector<const CameraRecord*> requests) {
  std::stable_sort(requests.begin(), requests.end(),
                   [](const auto* a, const auto* b) { return a->time < b->time; });
  for (auto it = requests.rbegin(); it != requests.rend(); ++it) {
    if (!(*it)->preflight) return *it;
  }
  return requests.empty() ? nullptr : requests.back();
}

}  // namespace

std::string CameraWatch::appName(const std::string& path, const std::string& identifier,
                                 AppCatalog& catalog) {
  if (const auto mark = path.find(bundleMark); mark != std::string::npos) {
    const std::string bundle = path.substr(0, mark + bundleExtension.size());
    std::string name = catalog.displayName(bundle).value_or(lastPathComponent(bundle));
    if (name.ends_with(bundleExtension)) name.resize(name.size() - bundleExtension.size());
    return name;
  }
  if (!path.empty()) return lastPathComponent(path);
  if (!identifier.empty()) return identifier;
  return std::string(WatchEvent::unknown);
}

std::optional<std::string> CameraWatch::outside(const std::string& path,
                                                const std::vector<std::string>& installFolders) {
  if (path.empty()) return std::nullopt;
  for (const auto& folder : installFolders) {
    if (path.starts_with(folder)) return std::nullopt;
  }
  return "설치 폴더 밖 프로그램";
}

void CameraWatch::noteOutside(WatchEvent& event) {
  // A note about the machine's state is never replaced.
  if (!event.suspicious) event.suspicious = outside(event.path, ports_.catalog.installFolders());
}

void CameraWatch::announce(const std::string& id, bool resolved) {
  const WatchEvent* event = find(id);
  if (event && onCameraOn) onCameraOn(*event, resolved);
}

void CameraWatch::identify(const std::string& id, Date at, double lookback, int tries) {
  if (!linkAvailable()) {
    announce(id, false);
    attribute(id, at, lookback);
    return;
  }
  ports_.link->indicator(
      at - indicatorBeforeSeconds, now() + indicatorAfterSeconds,
      weakCall(self_, [id, at, lookback, tries](CameraWatch& watch,
                                                const std::optional<IndicatorUpdate>& update) {
        watch.identified(id, at, lookback, tries, update);
      }));
}

void CameraWatch::identified(const std::string& id, Date at, double lookback, int tries,
                             const std::optional<IndicatorUpdate>& update) {
  if (!find(id)) return;
  std::vector<CameraUser> users = update ? update->cams : std::vector<CameraUser>{};
  std::erase_if(users, [](const CameraUser& user) { return user.id == LogHelper::ownIdentifier; });
  if (!users.empty()) {
    others_ = users;
    resolve(id, users);
    return;
  }
  if (tries + 1 >= indicatorTries) {
    announce(id, false);
    attribute(id, at, lookback);
    return;
  }
  ports_.scheduler.later(identifyRetrySeconds,
                         weakCall(self_, [id, at, lookback, tries](CameraWatch& watch) {
                           watch.identify(id, at, lookback, tries + 1);
                         }));
}

void CameraWatch::resolve(const std::string& id, const std::vector<CameraUser>& users) {
  WatchEvent* event = find(id);
  if (!event || users.empty()) return;
  std::vector<std::string> names;
  for (const auto& user : users)
    names.push_back(user.name);
  event->app = joined(names);
  event->path = ports_.catalog.applicationPath(users.front().id);
  noteOutside(*event);
  persist();
  changed();
  announce(id, true);
}

void CameraWatch::attribute(const std::string& id, Date at, double lookback) {
  if (!linkAvailable()) {
    if (WatchEvent* event = find(id)) event->app = WatchEvent::unknown;
    persist();
    changed();
    return;
  }
  ports_.link->query(
      at - lookback, at + attributionAfterSeconds, true,
      weakCall(self_, [id](CameraWatch& watch, const std::vector<CameraRecord>& records) {
        watch.attributed(id, records);
      }));
}

void CameraWatch::attributed(const std::string& id, const std::vector<CameraRecord>& records) {
  merge(records);
  WatchEvent* event = find(id);
  if (!event) return;
  std::vector<const CameraRecord*> requests;
  std::vector<const CameraRecord*> clients;
  for (const auto& record : records)
    (record.client ? clients : requests).push_back(&record);
  if (const CameraRecord* best = bestRequest(requests)) {
    event->app = appName(best->path, best->identifier, ports_.catalog);
    event->path = best->path;
  } else {
    std::set<std::string> names;
    for (const auto* client : clients)
      names.insert(appName(client->path, client->identifier, ports_.catalog));
    event->app = names.empty() ? std::string(WatchEvent::unknown)
                               : joined(std::vector<std::string>(names.begin(), names.end()));
    event->path = clients.empty() ? std::string() : clients.front()->path;
  }
  noteOutside(*event);
  persist();
  changed();
  announce(id, true);
}

}  // namespace sodam
