#include "alerts/pill_center.h"

#include <algorithm>
#include <utility>

namespace sodam {

namespace {

// The built-in display carries the camera the pill grows from; without one,
// the main display, else whatever there is. With no display at all the pill
// runs its course on an empty frame, so callers see the same behaviour.
ScreenInfo chooseScreen(const std::vector<ScreenInfo>& screens) {
  auto builtIn = std::find_if(screens.begin(), screens.end(), [](auto& s) { return s.builtIn; });
  if (builtIn != screens.end()) return *builtIn;
  auto main = std::find_if(screens.begin(), screens.end(), [](auto& s) { return s.main; });
  if (main != screens.end()) return *main;
  return screens.empty() ? ScreenInfo{} : screens.front();
}

// The menu bar's height, or the notch's where that is taller.
double barHeight(const ScreenInfo& screen) {
  double menuBar = screen.frame.maxY() - screen.visibleFrame.maxY();
  return std::max({screen.safeAreaTop, menuBar, PillCenter::minimumBar});
}

Rect panelRect(const ScreenInfo& screen) {
  return Rect{{screen.frame.minX(), screen.frame.maxY() - PillCenter::panelHeight},
              {screen.frame.size.width, PillCenter::panelHeight}};
}

// Delays between the steps of growing and shrinking.
constexpr double growStepSeconds = 0.13;
constexpr double growLastSeconds = 0.26;
constexpr double shrinkToDotSeconds = 0.07;
constexpr double shrinkToRestSeconds = 0.22;
constexpr double shrinkGoneSeconds = 0.41;

constexpr double cameraFraction = 0.45;
constexpr double offScreenDot = -8;

}  // namespace

Size PillModel::capsuleSize() const {
  return phase >= 2 ? size : Size{dotSide, dotSide};
}

double PillModel::capsuleCenterY() const {
  return phase == 0 ? cameraY : topY + capsuleSize().height / 2;
}

PillCenter::PillCenter(PillPresenter& presenter, const ScreenSource& screens, Scheduler& scheduler)
    : presenter_(presenter), screens_(screens), scheduler_(scheduler) {}

void PillCenter::show(Pill pill, std::optional<double> seconds, std::function<void()> action) {
  hideWork_.invalidate();
  const int g = ++generation_;
  screen_ = chooseScreen(screens_.screens());
  presenter_.showPanel(panelRect(screen_));
  place(pill);
  current_ = pill;
  growFrom(model_.phase, g);
  prepareCatcher(pill, std::move(action));
  if (seconds) {
    hideWork_ = scheduler_.schedule({*seconds, 0, 0}, [this] { hide(); });
  }
}

// Measures the new pill and where its dot starts and its top hangs.
void PillCenter::place(const Pill& pill) {
  model_.size = presenter_.contentSize(pill);
  model_.bubble = pill.isSay() ? presenter_.bubbleSize(pill) : Size{};
  double inset = screen_.safeAreaTop;
  model_.cameraY = inset > 0 ? cameraFraction * inset : offScreenDot;
  model_.look = look ? look() : PillLook{};
  const bool hat = pill.isBuddy() && model_.look.hasTop();
  model_.topY = barHeight(screen_) + PillCenter::topGap + (hat ? PillCenter::hatRoom : 0);
}

void PillCenter::growFrom(int phase, int g) {
  model_.pill = current_;
  if (phase >= 2) {
    // Something is up: the old pill morphs into the new one.
    setPhase(3, PillAnimation::spring(0.27, 0.8));
    return;
  }
  publish(PillAnimation::instant());
  if (phase == 1) {
    setPhase(2, PillAnimation::spring(0.33, 0.66));
    stepLater(growStepSeconds, g, [this] { setPhase(3, PillAnimation::easeOut(0.17)); });
    return;
  }
  // From rest the dot first appears on the next turn of the main loop.
  stepLater(0, g, [this, g] { growFromRest(g); });
}

void PillCenter::growFromRest(int g) {
  setPhase(1, PillAnimation::spring(0.22, 0.82));
  stepLater(growStepSeconds, g, [this] { setPhase(2, PillAnimation::spring(0.33, 0.66)); });
  stepLater(growLastSeconds, g, [this] { setPhase(3, PillAnimation::easeOut(0.17)); });
}

void PillCenter::prepareCatcher(const Pill& pill, std::function<void()> action) {
  presenter_.hideCatcher();
  catcherFrame_.reset();
  catcherAction_ = std::move(action);
  if (!catcherAction_) return;
  catcherFrame_ = catcherRect(pill);
  // Not guarded by generation: the catcher belongs to this pill value.
  keep(scheduler_.schedule({catcherDelay, 0, 0}, [this, pill] {
    if (current_ == pill && catcherFrame_) presenter_.showCatcher(*catcherFrame_);
  }));
}

// Over the pill, and over its speech bubble too, in screen coordinates.
Rect PillCenter::catcherRect(const Pill& pill) const {
  const Size& size = model_.size;
  const Size& bubble = model_.bubble;
  double width = size.width + (pill.isSay() ? bubble.width + PillModel::bubbleGap : 0);
  double height = std::max(size.height, bubble.height);
  double centerY = screen_.frame.maxY() - model_.topY - size.height / 2;
  return Rect{{screen_.frame.midX() - size.width / 2, centerY - height / 2}, {width, height}};
}

void PillCenter::hide() {
  hideWork_.invalidate();
  current_.reset();
  presenter_.hideCatcher();
  catcherFrame_.reset();
  catcherAction_ = nullptr;
  const int g = ++generation_;
  if (model_.phase < 1) {
    clearDrawing();
    return;
  }
  shrink(g);
}

void PillCenter::click() {
  if (!catcherAction_) return;
  auto action = std::move(catcherAction_);
  hide();
  action();
}

// The content fades first, then the shape falls back into the dot.
void PillCenter::shrink(int g) {
  setPhase(2, PillAnimation::easeIn(0.08));
  stepLater(shrinkToDotSeconds, g, [this] { setPhase(1, PillAnimation::spring(0.23, 0.9)); });
  stepLater(shrinkToRestSeconds, g, [this] { setPhase(0, PillAnimation::easeIn(0.15)); });
  stepLater(shrinkGoneSeconds, g, [this] { clearDrawing(); });
}

void PillCenter::clearDrawing() {
  model_.pill.reset();
  publish(PillAnimation::instant());
  presenter_.hidePanel();
}

void PillCenter::setPhase(int phase, PillAnimation animation) {
  model_.phase = phase;
  publish(animation);
}

void PillCenter::publish(PillAnimation animation) {
  presenter_.update(model_, animation);
}

void PillCenter::stepLater(double seconds, int g, std::function<void()> step) {
  keep(scheduler_.schedule({seconds, 0, 0}, [this, g, step = std::move(step)] {
    if (generation_ == g) step();
  }));
}

void PillCenter::keep(Timer timer) {
  std::erase_if(pending_, [](const Timer& t) { return !t.isValid(); });
  pending_.push_back(std::move(timer));
}

}  // namespace sodam
