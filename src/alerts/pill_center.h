#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "alerts/pill.h"
#include "companion/pill_look.h"
#include "support/geometry.h"
#include "support/scheduler.h"

namespace sodam {

// How a change of the pill's model is to be animated by the shell. It
// applies to the phase, the pill and its size; the positions (camera dot,
// top, bubble) of a new pill take effect at once.
struct PillAnimation {
  enum class Curve { none, spring, easeOut, easeIn };
  Curve curve = Curve::none;
  double seconds = 0;  // a spring's response, an ease's duration
  double damping = 0;  // springs only

  static constexpr PillAnimation instant() { return {}; }
  static constexpr PillAnimation spring(double response, double damping) {
    return {Curve::spring, response, damping};
  }
  static constexpr PillAnimation easeOut(double seconds) { return {Curve::easeOut, seconds, 0}; }
  static constexpr PillAnimation easeIn(double seconds) { return {Curve::easeIn, seconds, 0}; }
  bool operator==(const PillAnimation&) const = default;
};

// What the pill's views draw. Vertical positions are points down from the
// top of the drawing panel.
struct PillModel {
  // 0 dot in the camera, 1 dot below the notch, 2 full-size shape,
  // 3 content visible.
  int phase = 0;
  std::optional<Pill> pill;
  Size size;    // fitted size of the content
  Size bubble;  // fitted size of a speech bubble, zero for other arts
  double cameraY = -8;
  double topY = 40;
  // The companion's look at the show, for `buddy` and `say` arts.
  PillLook look;

  static constexpr double dotSide = 12;
  static constexpr double bubbleGap = 14;
  static constexpr PillAnimation contentFade = PillAnimation::easeOut(0.13);
  static constexpr PillAnimation decorSpring = PillAnimation::spring(0.24, 0.55);
  static constexpr double decorStartScale = 0.3;
  static constexpr PillAnimation bubbleSpring = PillAnimation::spring(0.25, 0.72);
  static constexpr double bubbleStartScale = 0.6;

  // The capsule is a dot until the shape grows in phase 2.
  Size capsuleSize() const;
  // The dot sits in the camera in phase 0, then hangs from `topY`.
  double capsuleCenterY() const;
  // Text and art show only once the shape is full.
  double contentOpacity() const { return phase >= 3 ? 1 : 0; }
  // Ears and hats of the companion come in with the content.
  bool decorShown() const { return phase >= 3 && pill && pill->isBuddy(); }
  // A speech bubble stands right of the capsule, centre to centre.
  double bubbleOffsetX() const { return size.width / 2 + bubble.width / 2 + bubbleGap; }
  bool bubbleShown() const { return phase >= 3 && pill && pill->isSay(); }
};

// One display as the pill and the overlays need it, in screen coordinates
// (origin at the lower left, y up).
struct ScreenInfo {
  Rect frame;
  Rect visibleFrame;       // without menu bar and dock
  double safeAreaTop = 0;  // the notch's height, 0 without one
  bool builtIn = false;
  bool main = false;  // holds the key window
};

// The displays attached now, in the platform's order. Main thread.
class ScreenSource {
 public:
  virtual ~ScreenSource() = default;
  virtual std::vector<ScreenInfo> screens() const = 0;
};

// The shell's side of the pill: a click-through drawing panel across the top
// of the screen, and a click panel over the pill while it has an action.
// Every call comes on the main thread.
class PillPresenter {
 public:
  virtual ~PillPresenter() = default;
  // Fitting size of the pill's content (art and text in a row).
  virtual Size contentSize(const Pill& pill) = 0;
  // Fitting size of the speech bubble holding the pill's title and detail.
  virtual Size bubbleSize(const Pill& pill) = 0;
  // Sets the drawing panel to the frame and orders it to the front.
  virtual void showPanel(Rect frame) = 0;
  virtual void hidePanel() = 0;
  // The model changed; redraw with the animation.
  virtual void update(const PillModel& model, PillAnimation animation) = 0;
  // Orders the click panel to the front at the frame; its click calls
  // `PillCenter::click`.
  virtual void showCatcher(Rect frame) = 0;
  virtual void hideCatcher() = 0;
};

// The system's one voice: shows one pill at a time under the menu bar. The
// newest `show` replaces what is up; nothing queues. The pill grows out of
// the camera dot in steps and shrinks back into it, each delayed step
// guarded by `generation` so that a newer show or hide wins at once.
// Main thread only.
class PillCenter {
 public:
  static constexpr double defaultSeconds = 3;
  // Pass as `seconds` for a pill that stays until replaced or hidden.
  static constexpr std::optional<double> untilReplaced = std::nullopt;

  static constexpr double panelHeight = 170;
  // The gap between the menu bar and a pill's top, and the room a companion
  // pill leaves above that when its look wears something on its head.
  static constexpr double topGap = 8;
  static constexpr double hatRoom = 12;
  static constexpr double minimumBar = 24;
  static constexpr double catcherDelay = 0.29;

  PillCenter(PillPresenter& presenter, const ScreenSource& screens, Scheduler& scheduler);

  // Shows the pill. Without a `seconds` argument it hides after 3 seconds;
  // `untilReplaced` keeps it up. A pill with an action takes clicks, which
  // hide it and then run the action.
  void show(Pill pill, std::optional<double> seconds = defaultSeconds,
            std::function<void()> action = {});
  void hide();
  // The click panel was clicked.
  void click();

  // The pill that is up from the callers' view; absent from `hide` on, even
  // while the drawing still shrinks.
  const std::optional<Pill>& current() const { return current_; }
  const PillModel& model() const { return model_; }
  int generation() const { return generation_; }
  // Where clicks are caught for the current pill; absent without an action.
  const std::optional<Rect>& catcherFrame() const { return catcherFrame_; }

  // The companion's look, read at each show; a companion pill whose look
  // wears something on its head hangs lower, to keep it below the menu bar.
  // Unset: the default look.
  std::function<PillLook()> look;

 private:
  void place(const Pill& pill);
  void growFrom(int phase, int g);
  void growFromRest(int g);
  void prepareCatcher(const Pill& pill, std::function<void()> action);
  Rect catcherRect(const Pill& pill) const;
  void shrink(int g);
  void clearDrawing();
  void setPhase(int phase, PillAnimation animation);
  void publish(PillAnimation animation);
  // Runs the step after the delay only while no newer show or hide came.
  void stepLater(double seconds, int g, std::function<void()> step);
  void keep(Timer timer);

  PillPresenter& presenter_;
  const ScreenSource& screens_;
  Scheduler& scheduler_;

  PillModel model_;
  std::optional<Pill> current_;
  int generation_ = 0;
  ScreenInfo screen_;
  Timer hideWork_;
  std::optional<Rect> catcherFrame_;
  std::function<void()> catcherAction_;
  // Handles of pending delayed steps, so none outlives this object.
  std::vector<Timer> pending_;
};

}  // namespace sodam
