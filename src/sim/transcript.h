#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "alerts/overlay_presenter.h"
#include "alerts/pill_center.h"
#include "app/app_delegate.h"
#include "support/calendar.h"
#include "support/clock.h"

namespace sodam {

// The simulation's screen: every visible event becomes one line of text,
// stamped with the virtual clock, as a person at the desk would notice it.
// Main thread only.
class Transcript final : public AppShell,
                         public PillPresenter,
                         public ScreenSource,
                         public OverlayPresenter {
 public:
  using Sink = std::function<void(const std::string& line)>;

  Transcript(const Clock& clock, const Calendar& calendar, Sink sink)
      : clock_(clock), calendar_(calendar), sink_(std::move(sink)) {}

  // A line of the simulation's own, with the time in front.
  void say(const std::string& text);

  void drawStatus(const StatusItem::Refresh& refresh) override;
  void openPanel(PanelPage page) override;
  void presentGuide(GuideModel& model) override;
  void closeGuide() override;
  void openUrl(const std::string& url) override;
  void terminate() override;

  Size contentSize(const Pill& pill) override;
  Size bubbleSize(const Pill& pill) override;
  void showPanel(Rect) override {}
  void hidePanel() override {}
  void update(const PillModel& model, PillAnimation animation) override;
  void showCatcher(Rect) override {}
  void hideCatcher() override {}

  std::vector<ScreenInfo> screens() const override;

  std::vector<Window> makeBorderWindows() override;
  std::vector<Window> makeBlurWindows(bool effectView, double alpha) override;
  void orderOut(Window window) override;
  bool blurCallAvailable() override { return true; }
  void setBackgroundAlpha(Window, double) override {}
  std::int32_t setBlurRadius(Window, std::int32_t) override { return 0; }
  void useEffectView(Window, double) override {}
  void setAlpha(Window, double) override {}

 private:
  std::string stamp() const;

  const Clock& clock_;
  const Calendar& calendar_;
  Sink sink_;
  std::optional<StatusLook> look_;
  std::optional<Pill> shownPill_;
  std::set<Window> borderWindows_;
  Window nextWindow_ = 1;
};

}  // namespace sodam
