#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/geometry.h"

namespace sodam {

// The machine's raw answers about power, input, windows and the session, as
// the platform reads them. Every answer may be missing; the rules in `Power`
// treat a missing answer as false or absent. Main thread.
class PowerSource {
 public:
  // One power source's description; a capacity that is not an integer there
  // is absent.
  struct Capacity {
    std::optional<std::int64_t> current;
    std::optional<std::int64_t> max;
  };
  // Assertion counts of the power manager.
  struct DisplayAssertions {
    std::int64_t preventUserIdleDisplaySleep = 0;
    std::int64_t noDisplaySleep = 0;
  };
  // One on-screen window; a field the window list lacks is absent.
  struct Window {
    std::optional<std::int64_t> ownerPid;
    std::optional<std::int64_t> layer;
    std::optional<double> width;
    std::optional<double> height;
  };

  virtual ~PowerSource() = default;

  // The source providing power now is the battery.
  virtual bool providingBattery() const = 0;
  // Every power source's capacities, in the platform's order.
  virtual std::vector<Capacity> capacities() const = 0;
  virtual bool lowPowerMode() const = 0;
  // Seconds since the last input event of any kind.
  virtual double idleSeconds() const = 0;
  // Nothing when the power manager could not be asked.
  virtual std::optional<DisplayAssertions> displayAssertions() const = 0;
  // Nothing without a frontmost application.
  virtual std::optional<std::int64_t> frontmostPid() const = 0;
  // On-screen windows without desktop elements, front to back; nothing when
  // the window server gave no list.
  virtual std::optional<std::vector<Window>> windows() const = 0;
  virtual std::vector<Size> screenSizes() const = 0;
  // The session's screen-is-locked flag; nothing when the session doesn't say.
  virtual std::optional<bool> sessionScreenLocked() const = 0;
};

// Whether the camera may be used now, whether anybody is there and how often
// a check may run. Two flags are stored, written by the application core on
// the main thread; everything else is read fresh from the source each time.
class Power {
 public:
  explicit Power(const PowerSource& source) : source_(source) {}

  bool onBattery() const;
  // Percent of the first source with both capacities; a max of 0 gives 0.
  std::optional<int> batteryLevel() const;
  bool lowPowerMode() const;
  bool saving() const;
  double checkInterval() const;
  // The power line of the settings page.
  std::string label() const;
  double idleSeconds() const;
  bool displayHeldAwake() const;
  bool fullscreenFront() const;
  bool sessionLocked() const;

  bool screenLocked() const { return screenLocked_; }
  void setScreenLocked(bool locked) { screenLocked_ = locked; }
  bool displaysAsleep() const { return displaysAsleep_; }
  void setDisplaysAsleep(bool asleep) { displaysAsleep_ = asleep; }

  // A window of the front application on the normal layer that matches a
  // screen's size to within 2 points in both directions.
  static bool fullscreen(const std::vector<PowerSource::Window>& windows, std::int64_t frontPid,
                         const std::vector<Size>& screens);

 private:
  const PowerSource& source_;
  bool screenLocked_ = false;
  bool displaysAsleep_ = false;
};

}  // namespace sodam
