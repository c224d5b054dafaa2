// The watcher's life: the camera, the phases and calibration, and each
// camera result turned into a frame with its hand tests.
#include "focus/watch_engine.h"

#include <algorithm>
#include <cmath>

#include "support/numeric.h"

namespace sodam {

namespace {

constexpr std::size_t eyesKept = 600;
constexpr std::size_t handFramesKept = 6;
// The open-eye value is this far up the sorted apertures.
constexpr double openEyeQuantile = 0.8;
// Without a chin point, the chin lies this many eye distances below the eyes.
constexpr double chinBelowEyesIpd = 1.7;

// The hand tests, in face lengths (eyes to chin).
constexpr double handAtFaceDx = 0.8;
constexpr double handAtFaceAbove = -0.6;
constexpr double handAtFaceBelow = 1.1;
constexpr double chinRestBelow = 0.45;
constexpr double handsTogether = 1.2;
constexpr double handsLowFrom = 2.4;
constexpr double handsLowTo = 0.3;
// Pupils this low in their eyes look down.
constexpr double pupilDownY = 0.42;
// Eyes this far closed from the open value look down at something held.
constexpr double lookingDownAperture = 0.6;

}  // namespace

WatchEngine::WatchEngine(Ports ports) : ports_(ports) {
  said_.fill(Date::distantPast());
}

// Quietly: the views that follow the engine are gone by now.
WatchEngine::~WatchEngine() {
  *self_ = nullptr;
  stopCamera();
}

void WatchEngine::setPaused(bool paused) {
  if (paused == paused_) return;
  paused_ = paused;
  changed();
}

double WatchEngine::interval() const {
  return ports_.power.onBattery() ? batteryIntervalSeconds : mainsIntervalSeconds;
}

// The hold comes first, so the monitor has let the camera go before the
// feed takes it.
void WatchEngine::startCamera() {
  const bool phone = std::find(habits_.begin(), habits_.end(), WatchHabit::phone) != habits_.end();
  ports_.capture.setCheckPhone(phone);
  if (cameraOn_) return;
  ports_.capture.setLight(true);
  ports_.monitor.hold(std::string(hold));
  ports_.feed.onMeasure = weakCall(
      self_, [](WatchEngine& engine, const std::optional<Measurement>& m) { engine.take(m); });
  intervalInUse_ = interval();
  ports_.feed.start(intervalInUse_, true);
  cameraOn_ = true;
}

void WatchEngine::beginSetup() {
  startCamera();
  phase_ = Phase::setup;
  changed();
}

void WatchEngine::calibrate(std::vector<WatchHabit> habits, bool posture) {
  habits_ = std::move(habits);
  posture_ = posture;
  startCamera();
  calib_.clear();
  calibStart_ = ports_.clock.now();
  progress_ = 0;
  phase_ = Phase::calibrating;
  changed();
}

void WatchEngine::start(std::vector<WatchHabit> habits, bool posture) {
  if (active()) {
    update(std::move(habits), posture);
    return;
  }
  if (!reference_) {
    calibrate(std::move(habits), posture);
    return;
  }
  habits_ = std::move(habits);
  posture_ = posture;
  startCamera();
  phase_ = Phase::running;
  changed();
}

void WatchEngine::update(std::vector<WatchHabit> habits, bool posture) {
  habits_ = std::move(habits);
  posture_ = posture;
  if (cameraOn_) startCamera();
}

void WatchEngine::stopCamera() {
  if (!cameraOn_) return;
  ports_.feed.onMeasure = nullptr;
  ports_.feed.stop();
  // The feed only rests the capture when it ran; the watcher set these
  // whether or not the camera was allowed.
  ports_.capture.setCheckPhone(false);
  ports_.capture.setLight(false);
  ports_.monitor.release(std::string(hold));
  cameraOn_ = false;
}

void WatchEngine::stop() {
  stopCamera();
  phase_ = Phase::off;
  frames_.clear();
  calib_.clear();
  said_.fill(Date::distantPast());
  awaySince_.reset();
  awayFlagged_ = false;
  handsSeen_.clear();
  progress_ = 0;
  framing_ = {};
  state_ = MateState::focus;
  note_.reset();
  changed();
}

// Kept until the next aperture comes, since a frame asks for it twice.
std::optional<double> WatchEngine::openEye() const {
  if (openEyeKnown_) return openEye_;
  openEyeKnown_ = true;
  openEye_.reset();
  if (eyes_.size() < openEyeLeastCount) return openEye_;
  scratch_.assign(eyes_.begin(), eyes_.end());
  const auto at = static_cast<std::size_t>(static_cast<double>(scratch_.size()) * openEyeQuantile);
  std::nth_element(scratch_.begin(), scratch_.begin() + static_cast<std::ptrdiff_t>(at),
                   scratch_.end());
  openEye_ = scratch_[at];
  return openEye_;
}

void WatchEngine::take(const std::optional<Measurement>& m) {
  const Frame frame = frameOf(m);
  judgeFraming(m, frame);
  frames_.push_back(frame);
  const auto kept = std::find_if(frames_.begin(), frames_.end(),
                                 [&](const Frame& f) { return frame.at - f.at <= keptSeconds; });
  frames_.erase(frames_.begin(), kept);
  if (phase_ == Phase::calibrating) calibrating(frame);
  if (phase_ != Phase::running || paused_) return;
  judge(frame.at);
  tellWorkLife(frame);
  // A machine plugged in or out keeps the pace its power allows.
  if (const double wanted = interval(); wanted != intervalInUse_) {
    intervalInUse_ = wanted;
    ports_.capture.setFrameInterval(wanted);
  }
}

WatchEngine::Frame WatchEngine::frameOf(const std::optional<Measurement>& m) {
  Frame frame;
  frame.at = ports_.clock.now();
  if (!m || !m->usable()) return frame;
  frame.present = true;
  frame.face = !m->fromBody;
  frame.ipd = distance(m->eyeL, m->eyeR);
  frame.eyeY = m->eyeMid().y / m->size.height;
  frame.aperture = m->aperture;
  frame.phone = m->phone;
  if (m->aperture && !m->fromBody) {
    if (eyes_.size() < eyesKept) {
      eyes_.push_back(*m->aperture);
    } else {
      eyes_[eyesNext_] = *m->aperture;
      eyesNext_ = (eyesNext_ + 1) % eyesKept;
    }
    openEyeKnown_ = false;
  }
  readHands(*m, frame);
  return frame;
}

// A wrist close beside the chin is at the face: well under it, the chin
// rests on it; higher, it is at the mouth. Two wrists together below the
// chest with the gaze down hold a phone.
void WatchEngine::readHands(const Measurement& m, Frame& frame) const {
  const Point eyes = m.eyeMid();
  const Point chin = m.chin.value_or(Point{eyes.x, eyes.y - chinBelowEyesIpd * frame.ipd});
  const double face = distance(eyes, chin);
  if (!m.arms || !(face > 0)) return;
  const auto& wristL = m.arms->wristL;
  const auto& wristR = m.arms->wristR;
  for (const auto& wrist : {wristL, wristR}) {
    if (!wrist) continue;
    const double dx = std::abs(wrist->x - chin.x);
    const double dy = chin.y - wrist->y;
    if (dx < handAtFaceDx * face && dy > handAtFaceAbove * face && dy < handAtFaceBelow * face) {
      (dy > chinRestBelow * face ? frame.chinRest : frame.mouth) = true;
    }
  }
  if (!wristL || !wristR) return;
  const bool together = distance(*wristL, *wristR) < handsTogether * face;
  const double meanY = (wristL->y + wristR->y) / 2;
  const bool low = meanY > chin.y - handsLowFrom * face && meanY < chin.y - handsLowTo * face;
  if (m.pupil && m.pupil->y < pupilDownY) {
    frame.phoneHands = low && together;
  } else if (const auto open = m.aperture ? openEye() : std::nullopt) {
    frame.phoneHands = low && together && *m.aperture < lookingDownAperture * *open;
  }
}

void WatchEngine::judgeFraming(const std::optional<Measurement>& m, const Frame& frame) {
  const bool bothHands = m && m->arms && m->arms->wristL && m->arms->wristR;
  handsSeen_.push_back(bothHands);
  if (handsSeen_.size() > handFramesKept) handsSeen_.erase(handsSeen_.begin());
  const auto seen = std::count(handsSeen_.begin(), handsSeen_.end(), true);

  Framing next;
  next.face = frame.face;
  next.shoulders = m && m->shoulders().has_value();
  next.hands = 2 * static_cast<std::size_t>(seen) >= handsSeen_.size();
  if (!next.face) {
    next.hint = faceHint;
  } else if (!next.shoulders) {
    next.hint = shouldersHint;
  } else if (!next.hands) {
    next.hint = handsHint;
  }
  if (next == framing_) return;
  framing_ = std::move(next);
  changed();
}

void WatchEngine::calibrating(const Frame& frame) {
  calib_.push_back(frame);
  const double waited = frame.at - calibStart_;
  progress_ = clamp(waited / calibrationSeconds, 0, 1);
  if (waited >= calibrationSeconds) {
    finishCalibration();
  } else {
    changed();
  }
}

// A calibration that saw no face leaves no reference, and the posture then
// goes unjudged.
void WatchEngine::finishCalibration() {
  std::vector<double> eyeY, ipd;
  for (const auto& f : calib_) {
    if (!f.face) continue;
    eyeY.push_back(f.eyeY);
    ipd.push_back(f.ipd);
  }
  if (!eyeY.empty()) reference_ = Reference{*median(eyeY), *median(ipd)};
  calib_.clear();
  progress_ = 1;
  phase_ = Phase::running;
  changed();
}

void WatchEngine::tellWorkLife(const Frame& frame) {
  if (frame.present) {
    ports_.work.observed(true);
  } else if (awaySince_) {
    ports_.work.observed(false);
  }
}

}  // namespace sodam
