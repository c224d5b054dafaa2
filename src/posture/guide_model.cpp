#include "posture/guide_model.h"
#include "support/weak_call.h"

namespace sodam {

namespace {
constexpr const char* failedText =
    "얼굴이 잘 보이지 않았어요. 밝은 곳에서 화면을 보며 다시 해 주세요.";
constexpr const char* faceOnlyNote =
    "어깨가 보이지 않아 얼굴로만 살펴봐요. 조금 뒤로 앉아 다시 하면 더 정확해요.";
constexpr const char* acceptedNote =
    "알려 드린 점이 있는 자세로 학습했어요. 나중에 바르게 앉아 다시 학습하면 더 정확해요.";
constexpr int countdownStart = 3;
// A little past the capture, so the last frames of the window are in.
constexpr double learnAfterSeconds = 3.05;
// The user watches the countdown and the bar: a tick that comes half a
// second late, as the loose timer tolerance allows, reads as a stumble.
constexpr double tickToleranceSeconds = 0.02;

}  // namespace

GuideModel::GuideModel(Step start, Ports ports, std::function<void()> close)
    : ports_(std::move(ports)), close_(std::move(close)), self_(lifeToken(this)), step_(start) {
  ports_.feed.onMeasure =
      weakCall(self_, [](GuideModel& g, std::optional<Measurement> m) { g.gather(m); });
}

GuideModel::~GuideModel() {
  *self_ = nullptr;
  ports_.feed.onMeasure = nullptr;
}

void GuideModel::syncCamera() {
  ports_.feed.wantsGlass = true;
  if (usesCamera() && ports_.feed.authorized()) {
    if (!ports_.feed.running()) ports_.feed.start(feedInterval, false);
  } else {
    ports_.feed.stop();
  }
}

void GuideModel::go(Step step) {
  step_ = step;
  announce();
  syncCamera();
}

void GuideModel::next() {
  if (step_ == Step::done) {
    finish();
    return;
  }
  go(static_cast<Step>(static_cast<int>(step_) + 1));
}

void GuideModel::back() {
  if (step_ == Step::welcome) return;
  go(static_cast<Step>(static_cast<int>(step_) - 1));
}

void GuideModel::allowCamera() {
  if (ports_.feed.authorized()) {
    next();
    return;
  }
  requestCamera([](GuideModel& g) { g.next(); });
}

void GuideModel::askCamera() {
  requestCamera([](GuideModel& g) {
    g.syncCamera();
    g.announce();
  });
}

// Camera access refused is answered by opening the system's settings for it,
// not with a message.
void GuideModel::requestCamera(std::function<void(GuideModel&)> granted) {
  ports_.feed.requestAccess(
      weakCall(self_, [granted = std::move(granted)](GuideModel& g, bool allowed) {
        if (allowed) {
          granted(g);
        } else if (g.ports_.openUrl) {
          g.ports_.openUrl(cameraSettingsUrl);
        }
      }));
}

void GuideModel::startLearning() {
  if (learn_.is(Learn::State::capturing)) return;
  progress_ = 0;
  progressSeconds_ = 0;
  setLearn(Learn::idle());
  count(countdownStart);
}

void GuideModel::count(int n) {
  if (step_ != Step::learn) {
    setLearn(Learn::idle());
    return;
  }
  if (n > 0) {
    setLearn(Learn::countdown(n));
    timer_ = ports_.scheduler.schedule({1.0, 0, tickToleranceSeconds},
                                       weakCall(self_, [n](GuideModel& g) { g.count(n - 1); }));
    return;
  }
  frames_.clear();
  progress_ = 0;
  setLearn(Learn::capturing());
  progress_ = 1;
  progressSeconds_ = captureSeconds;
  announce();
  timer_ = ports_.scheduler.schedule({learnAfterSeconds, 0, tickToleranceSeconds},
                                     weakCall(self_, [](GuideModel& g) { g.finishLearning(); }));
}

void GuideModel::gather(const std::optional<Measurement>& m) {
  if (m && learn_.is(Learn::State::capturing)) frames_.push_back(*m);
}

void GuideModel::finishLearning() {
  if (!learn_.is(Learn::State::capturing)) return;
  auto learned = Baseline::learn(frames_, ports_.feed.lid(), ports_.clock.now());
  if (!learned) {
    setLearn(Learn::failed(failedText));
    return;
  }
  auto concerns = Baseline::concerns(frames_, *learned);
  if (!concerns.empty()) {
    pending_ = std::move(learned);
    setLearn(Learn::concern(std::move(concerns)));
    return;
  }
  note_ = learned->hasShoulders() ? std::nullopt : std::optional<std::string>(faceOnlyNote);
  adopt(std::move(*learned));
  setLearn(Learn::done());
}

void GuideModel::acceptAnyway() {
  if (!pending_) return;
  Baseline accepted = std::move(*pending_);
  pending_.reset();
  note_ = acceptedNote;
  adopt(std::move(accepted));
  setLearn(Learn::done());
}

// The user learned in order to be watched: a finished learning switches the
// checks on.
void GuideModel::adopt(Baseline baseline) {
  ports_.monitor.setBaseline(std::move(baseline));
  if (!ports_.monitor.enabled()) ports_.monitor.setEnabled(true);
}

void GuideModel::finish() {
  ports_.store.setGuideDone(true);
  close();
}

void GuideModel::close() {
  timer_.invalidate();
  ports_.feed.stop();
  ports_.feed.wantsGlass = false;
  if (close_) close_();
}

void GuideModel::setLearn(Learn learn) {
  learn_ = std::move(learn);
  announce();
}

}  // namespace sodam
