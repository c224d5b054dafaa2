#pragma once

#include <cstdint>
#include <vector>

namespace sodam {

// The shell's whole-screen overlays: click-through windows, one for each
// display, that join every space and never take focus. Main thread only.
class OverlayPresenter {
 public:
  // The window server's number of an overlay window.
  using Window = std::int64_t;

  virtual ~OverlayPresenter() = default;

  // One overlay per display at the screen-saver level with the blinking red
  // frame, ordered to the front. Empty without displays.
  virtual std::vector<Window> makeBorderWindows() = 0;
  // One overlay per display just above floating windows, black at a faint
  // alpha, ordered to the front. With `effectView` its content is a
  // behind-window effect view and the window's alpha is `alpha`.
  virtual std::vector<Window> makeBlurWindows(bool effectView, double alpha) = 0;
  virtual void orderOut(Window window) = 0;

  // Whether the window server's private background-blur call was found.
  virtual bool blurCallAvailable() = 0;
  virtual void setBackgroundAlpha(Window window, double blackAlpha) = 0;
  // Blurs what lies behind the window; the call's status, 0 on success.
  virtual std::int32_t setBlurRadius(Window window, std::int32_t radius) = 0;
  // Replaces the content with the behind-window effect view.
  virtual void useEffectView(Window window, double alpha) = 0;
  virtual void setAlpha(Window window, double alpha) = 0;
};

}  // namespace sodam
