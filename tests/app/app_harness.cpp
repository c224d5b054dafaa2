#include "app/app_harness.h"

#include "posture/baseline_store.h"

namespace sodam::testing {

AppHarness::AppHarness(bool learned, std::optional<std::string> signedInAs) {
  machine.sitter.setNoise(0.5, 11);
  if (learned) {
    Calendar calendar(TimeZone::fixed(9 * 3600));
    BaselineStore::write(defaults, Baseline::learn(machine.sitter.frames(30),
                                                   machine.sitter.laptop.lidDeg, clock.now()));
    Store(defaults, clock, calendar).setGuideDone(true);
  }
  AppDelegate::Platform platform{machine.camera,
                                 machine.camera,
                                 machine.access,
                                 nullptr,
                                 machine.queue,
                                 machine.queue,
                                 machine.lidDevice(),
                                 machine.queue,
                                 machine.power,
                                 defaults,
                                 shell,
                                 shell,
                                 shell,
                                 shell,
                                 process,
                                 clock,
                                 scheduler,
                                 Calendar(TimeZone::fixed(9 * 3600)),
                                 std::nullopt,
                                 nullptr,
                                 &machine.cameras,
                                 &machine.cameras,
                                 link.get()};
  if (signedInAs) {
    cloud = std::make_unique<Cloud>();
    cloud->http = std::make_unique<CloudDouble::Http>(cloud->service, scheduler);
    cloud->keychain.write(Keychain::refreshAccount, cloud->service.addUser(*signedInAs));
    cloud->keychain.write(Keychain::userAccount,
                          toJson(CloudUser{*signedInAs, "나", "google", {}}).dump());
    platform.cloud.emplace(AppDelegate::Platform::Cloud{CloudConfig::loopback(1), *cloud->http,
                                                        cloud->keychain, [] { return nullptr; }});
  }
  app = std::make_unique<AppDelegate>(*lock, std::move(platform));
}

void AppHarness::settle() {
  for (int i = 0; i < 100; ++i)
    scheduler.runPosted();
}

void AppHarness::launch(bool loginLaunch) {
  app->finishLaunching(loginLaunch);
}

std::string AppHarness::pill() const {
  const auto& current = app->pills().current();
  if (!current) return "";
  return current->title.value_or("") + " | " + current->detail.value_or("");
}

bool AppHarness::runUntil(Monitor::Phase phase, double limitSeconds) {
  const Date end = clock.now() + limitSeconds;
  while (clock.now() < end) {
    scheduler.advance(0.05);
    if (app->monitor().phase() == phase) return true;
  }
  return false;
}

}  // namespace sodam::testing
