#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "camerawatch/camera_watch.h"
#include "support/manual_scheduler.h"

namespace sodam {

struct FakePower final : PowerSource {
  bool battery = false;
  double idle = 0;
  bool sessionLocked = false;

  bool providingBattery() const override { return battery; }
  std::vector<Capacity> capacities() const override { return {}; }
  bool lowPowerMode() const override { return false; }
  double idleSeconds() const override { return idle; }
  std::optional<DisplayAssertions> displayAssertions() const override { return std::nullopt; }
  std::optional<std::int64_t> frontmostPid() const override { return std::nullopt; }
  std::optional<std::vector<Window>> windows() const override { return std::nullopt; }
  std::vector<Size> screenSizes() const override { return {}; }
  std::optional<bool> sessionScreenLocked() const override { return sessionLocked; }
};

// Camera devices whose running flags the test sets; a change calls the
// listeners as the operating system would.
class FakeDevices final : public CameraDevices {
 public:
  std::vector<DeviceId> ids{7};
  std::map<DeviceId, bool> flags;
  std::map<DeviceId, std::vector<std::function<void()>>> listeners;

  std::optional<std::vector<DeviceId>> list() override { return ids; }
  std::optional<bool> running(DeviceId device) override { return flags[device]; }
  void onListChange(std::function<void()>) override {}
  void onRunningChange(DeviceId device, std::function<void()> listener) override {
    listeners[device].push_back(std::move(listener));
  }
  void set(bool on, DeviceId device = 7) {
    flags[device] = on;
    for (auto& listener : listeners[device])
      listener();
  }
};

class FakeCatalog final : public AppCatalog {
 public:
  std::map<std::string, std::string> paths;
  std::string applicationPath(const std::string& identifier) override { return paths[identifier]; }
  std::optional<std::string> displayName(const std::string&) override { return std::nullopt; }
  std::vector<std::string> installFolders() override { return macInstallFolders("/Users/me"); }
};

// A helper that answers each command at once through the responder; its
// answer reaches the link on the scheduler's next turn, as a pipe's would.
class AnsweringChannel final : public HelperChannel {
 public:
  using Responder = std::function<std::vector<std::string>(const std::string& command)>;
  std::vector<std::string> commands;
  Responder responder = [](const std::string&) { return std::vector<std::string>{}; };
  ChunkHandler onChunk;

  bool write(std::string_view bytes) override {
    std::string command(bytes.substr(0, bytes.size() - 1));
    commands.push_back(command);
    std::string answer;
    for (const auto& line : responder(command))
      answer += line + "\n";
    onChunk(answer + ".\n");
    return true;
  }
  void startReading(ChunkHandler handler) override { onChunk = std::move(handler); }
  void stopReading() override {}
  void dies() { onChunk(""); }
};

// A camera watch over fakes, at 2025-03-04 09:00:00 UTC.
struct WatchHarness {
  explicit WatchHarness(bool withLink = true) {
    if (withLink) {
      auto owned = std::make_unique<AnsweringChannel>();
      helper = owned.get();
      link = std::make_unique<LogLink>(std::move(owned), scheduler);
    }
  }

  CameraWatch& make() {
    watch = std::make_unique<CameraWatch>(
        CameraWatch::Ports{devices, catalog, link.get(), store, power, clock, scheduler});
    watch->onCameraOn = [this](const WatchEvent& event, bool resolved) {
      announced.push_back({event.app, resolved});
    };
    return *watch;
  }
  void advance(double seconds) { scheduler.advance(seconds); }

  ManualClock clock{Date::fromUnix(1741078800)};
  ManualScheduler scheduler{clock};
  MemoryDefaults defaults;
  Calendar calendar;
  Store store{defaults, clock, calendar};
  FakePower powerSource;
  Power power{powerSource};
  FakeDevices devices;
  FakeCatalog catalog;
  AnsweringChannel* helper = nullptr;
  std::unique_ptr<LogLink> link;
  std::unique_ptr<CameraWatch> watch;
  std::vector<std::pair<std::string, bool>> announced;
};

}  // namespace sodam
