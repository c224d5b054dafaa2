#pragma once

// Called on the main thread only, selfTest included; it has no callbacks.

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "alerts/overlay_presenter.h"

namespace sodam {

// The screen alerts' overlays: one click-through window per screen, with the
// blinking red frame or with the blur of what lies behind it. The presenter
// keeps every window it made until it is ordered out, and knows them by the
// window server's number. The header stays plain C++; the windows live in the
// implementation.
class MacOverlays final : public OverlayPresenter {
 public:
  MacOverlays();
  // Orders out the windows still up.
  ~MacOverlays() override;
  MacOverlays(const MacOverlays&) = delete;
  MacOverlays& operator=(const MacOverlays&) = delete;

  std::vector<Window> makeBorderWindows() override;
  std::vector<Window> makeBlurWindows(bool effectView, double alpha) override;
  void orderOut(Window window) override;

  bool blurCallAvailable() override;
  void setBackgroundAlpha(Window window, double blackAlpha) override;
  std::int32_t setBlurRadius(Window window, std::int32_t radius) override;
  void useEffectView(Window window, double alpha) override;
  void setAlpha(Window window, double alpha) override;

  // Tries the window server's blur once on a small, all but invisible window
  // in the main screen's lower left corner: the call's status, 0 on success.
  // Nothing when the call or the main screen is missing.
  static std::optional<std::int32_t> selfTest();

 private:
  struct Windows;
  std::unique_ptr<Windows> windows_;
};

}  // namespace sodam
