#pragma once

// Main thread only: the pill's center calls it there, and the catcher's
// click and the moving arts' frame ticks fire on the main thread.

#include <functional>
#include <memory>
#include <optional>

#include "alerts/pill_center.h"
#include "support/weak_call.h"

namespace sodam {

// Draws the pill in a click-through panel across the top of the screen and
// takes its clicks in a second, nearly invisible panel over it. Both panels
// are made on first use and kept for the whole run.
class MacPillPresenter final : public PillPresenter {
 public:
  MacPillPresenter();
  ~MacPillPresenter() override;
  MacPillPresenter(const MacPillPresenter&) = delete;
  MacPillPresenter& operator=(const MacPillPresenter&) = delete;

  // Set by the application once the core exists.
  // The catcher was clicked: point it at the pill center's click.
  std::function<void()> onCatcherClick;
  // Where the companion looks now, x and y from −1 to 1 with y down; none
  // rests the eyes, and an unset function never moves them. The companion's
  // look comes with each model.
  std::function<std::optional<Point>()> gaze;

  Size contentSize(const Pill& pill) override;
  Size bubbleSize(const Pill& pill) override;
  void showPanel(Rect frame) override;
  void hidePanel() override;
  void update(const PillModel& model, PillAnimation animation) override;
  void showCatcher(Rect frame) override;
  void hideCatcher() override;

 private:
  struct Panels;

  Panels& drawingPanel();
  Panels& catcherPanel();
  // Runs the frame ticker exactly while the pill on screen has a moving art.
  void followMovingArt(const PillModel& model);
  void stopTicker();
  void tick();

  std::unique_ptr<Panels> panels_;
  LifeToken<MacPillPresenter> self_;
};

}  // namespace sodam
