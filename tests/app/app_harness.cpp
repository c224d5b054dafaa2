#include "app/app_harness.h"

#include "posture/baseline_store.h"

namespace sodam::testing {

AppHarness::AppHarness(bool learned) {
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
  app = std::make_unique<AppDelegate>(*lock, std::move(platform));
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
