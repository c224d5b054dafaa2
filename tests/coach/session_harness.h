#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/app_harness.h"
#include "coach/stretch_library.h"

namespace sodam::testing {

// The application on the simulated laptop with a learned posture, the sitter
// still before the camera: a coach session as the panel would start it.
struct SessionHarness : AppHarness {
  explicit SessionHarness(bool camera = true) {
    launch();
    // The feed learns of a refusal by asking.
    machine.access.granted = camera;
    app->feed().requestAccess({});
    scheduler.advance(1);
  }

  CoachSession& start(const std::vector<std::string>& ids) {
    std::vector<Stretch> items;
    for (const auto& id : ids)
      items.push_back(*StretchLibrary::find(id));
    app->panelModel().start(std::move(items));
    return *app->panelModel().session();
  }
  CoachSession& session() { return *app->panelModel().session(); }
  // Steps a tenth at a time until the condition holds; false at the limit.
  bool runUntil(const std::function<bool()>& done, double limitSeconds) {
    const Date end = clock.now() + limitSeconds;
    while (clock.now() < end) {
      if (done()) return true;
      scheduler.advance(0.1);
    }
    return done();
  }
  bool runUntil(CoachSession::Phase::Kind kind, double limitSeconds) {
    return runUntil([&] { return session().phase().is(kind); }, limitSeconds);
  }
};

}  // namespace sodam::testing
