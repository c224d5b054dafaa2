#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/lid_sensor.h"
#include "posture/capture.h"
#include "posture/measurement.h"
#include "posture/side_body.h"
#include "support/clock.h"
#include "support/signal.h"
#include "support/weak_call.h"

namespace sodam {

// The friendly face of the capture for guides and coaches: the last
// measurement, how ready the user is to be measured, a hint on how to sit,
// the hinge angle and the glass picture. Main thread only.
class LiveFeed {
 public:
  // What changed, for the views; readiness changes are meant to be shown with
  // an ease-out animation of readinessAnimationSeconds.
  enum class Property { measurement, lid, readiness, hint, glass, side, authorized };
  static constexpr double readinessAnimationSeconds = 0.19;

  struct Recent {
    bool face = false;
    bool shoulders = false;
    bool pitch = false;
    bool far = false;
  };

  static constexpr const char* centreHint = "얼굴이 화면 가운데 오게 앉아 주세요";
  static constexpr const char* closerHint = "조금 더 가까이 앉아 주세요";
  static constexpr const char* shoulderHint = "점선에 어깨를 맞춰 조금 뒤로 앉아 주세요";
  static constexpr const char* lookUpHint = "고개를 들어 화면을 바라봐 주세요";

  LiveFeed(Capture& capture, LidSensor& lidSensor, Clock& clock);
  ~LiveFeed();
  LiveFeed(const LiveFeed&) = delete;
  LiveFeed& operator=(const LiveFeed&) = delete;

  Signal<Property> onChange;
  std::function<void(std::optional<Measurement>)> onMeasure;
  // Whether the views show the glass picture; set before start.
  bool wantsGlass = false;

  // Only when authorised: sets the capture's pace, handlers, glass and arms,
  // and starts it.
  void start(double interval, bool arms);
  // Also returns the capture's costly settings to rest (no arms, no glass,
  // no phone check, no light thinning), so that no session leaves them on.
  void stop();
  void requestAccess(std::function<void(bool granted)> completion);

  const std::optional<Measurement>& measurement() const { return measurement_; }
  std::optional<double> lid() const { return lid_; }
  double readiness() const { return readiness_; }
  const std::optional<std::string>& hint() const { return hint_; }
  const std::optional<GlassImage>& glass() const { return glass_; }
  const std::optional<SideBody>& side() const { return side_; }
  bool authorized() const { return authorized_; }
  bool running() const { return running_; }
  const std::deque<Recent>& recent() const { return recent_; }
  // The shoulder hint is up: the user should line up with the dotted line.
  bool needsShoulders() const;

 private:
  void handle(std::optional<Measurement> m);
  void track(const std::optional<Measurement>& m);
  void updateReadiness();
  void updateHint();
  void readLid();
  void changed(Property property);

  Capture& capture_;
  LidSensor& lidSensor_;
  Clock& clock_;
  LifeToken<LiveFeed> self_ = lifeToken(this);

  std::optional<Measurement> measurement_;
  std::optional<double> lid_;
  double readiness_ = 0;
  std::optional<std::string> hint_;
  std::optional<GlassImage> glass_;
  std::optional<SideBody> side_;
  std::deque<Recent> recent_;
  Date hintAt_ = Date::distantPast();
  bool authorized_ = false;
  bool running_ = false;
  Date lidReadAt_ = Date::distantPast();
};

}  // namespace sodam
