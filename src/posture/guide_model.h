#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/store.h"
#include "posture/baseline.h"
#include "posture/live_feed.h"
#include "posture/monitor.h"
#include "support/scheduler.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The logic behind the learning guide, which takes a new user from the first
// launch to a working baseline. The views draw it and animate towards the
// values it states. Main thread only.
class GuideModel {
 public:
  enum class Step : int { welcome = 0, privacy = 1, posture = 2, setup = 3, learn = 4, done = 5 };

  struct Learn {
    enum class State { countdown, failed, concern, idle, capturing, done };
    State state = State::idle;
    int count = 0;                      // countdown
    std::string message;                // failed
    std::vector<std::string> concerns;  // concern

    static Learn countdown(int n) { return {State::countdown, n, {}, {}}; }
    static Learn failed(std::string why) { return {State::failed, 0, std::move(why), {}}; }
    static Learn concern(std::vector<std::string> list) {
      return {State::concern, 0, {}, std::move(list)};
    }
    static Learn idle() { return {}; }
    static Learn capturing() { return {State::capturing, 0, {}, {}}; }
    static Learn done() { return {State::done, 0, {}, {}}; }
    bool is(State s) const { return state == s; }
    bool operator==(const Learn&) const = default;
  };

  // The views' motion: a spring between steps, a linear progress bar.
  static constexpr double stepSpringResponse = 0.32;
  static constexpr double stepSpringDamping = 0.88;
  static constexpr double captureSeconds = 3.0;
  static constexpr double feedInterval = 0.1;
  static constexpr const char* cameraSettingsUrl =
      "x-apple.systempreferences:com.apple.preference.security?Privacy_Camera";

  struct Ports {
    LiveFeed& feed;
    Monitor& monitor;
    Store& store;
    Scheduler& scheduler;
    const Clock& clock;
    // Opens a system settings page; the platform answers.
    std::function<void(const std::string& url)> openUrl;
  };

  // `close` is called when the guide ends, and is what the window's close
  // button calls too.
  GuideModel(Step start, Ports ports, std::function<void()> close);
  ~GuideModel();
  GuideModel(const GuideModel&) = delete;
  GuideModel& operator=(const GuideModel&) = delete;

  ChangeSignal onChange;

  Step step() const { return step_; }
  const Learn& learn() const { return learn_; }
  // The bar's value; while capturing it runs to 1 over progressSeconds().
  double progress() const { return progress_; }
  double progressSeconds() const { return progressSeconds_; }
  const std::optional<std::string>& note() const { return note_; }
  bool usesCamera() const { return step_ == Step::setup || step_ == Step::learn; }

  void syncCamera();
  void go(Step step);
  void next();
  void back();
  void allowCamera();
  // Asks for the camera on a step that needs it, and stays on the step:
  // granted, the camera starts; refused, the system's camera settings open.
  // For a guide opened straight at setup or learn without access.
  void askCamera();
  void startLearning();
  void acceptAnyway();
  void finish();
  void close();

 private:
  void requestCamera(std::function<void(GuideModel&)> granted);
  void count(int n);
  void gather(const std::optional<Measurement>& m);
  void finishLearning();
  void adopt(Baseline baseline);
  void setLearn(Learn learn);
  void announce() { onChange.notify(); }

  Ports ports_;
  std::function<void()> close_;
  LifeToken<GuideModel> self_;
  Step step_;
  Learn learn_;
  double progress_ = 0;
  double progressSeconds_ = 0;
  std::optional<std::string> note_;
  std::vector<Measurement> frames_;
  std::optional<Baseline> pending_;
  Timer timer_;
};

}  // namespace sodam
