#include "posture/live_feed.h"

#include <cmath>

#include "support/numeric.h"

namespace sodam {

namespace {

constexpr std::size_t recentKept = 6;
// Eyes closer together than this share of the frame's width: too far away.
constexpr double farEyeShare = 0.055;
constexpr double hintHoldSeconds = 1.2;
constexpr double lidReadEverySeconds = 0.3;
constexpr double startingGlassRadius = 10;

struct Shares {
  double face = 0, shoulders = 0, pitch = 0, far = 0;
};

Shares sharesOf(const std::deque<LiveFeed::Recent>& recent) {
  Shares s;
  if (recent.empty()) return s;
  for (const auto& e : recent) {
    s.face += e.face;
    s.shoulders += e.shoulders;
    s.pitch += e.pitch;
    s.far += e.far;
  }
  const double n = static_cast<double>(recent.size());
  return {s.face / n, s.shoulders / n, s.pitch / n, s.far / n};
}

std::optional<std::string> hintFor(const Shares& s) {
  if (s.face < 0.8) return LiveFeed::centreHint;
  if (s.far >= 0.5) return LiveFeed::closerHint;
  if (s.shoulders < 0.8) return LiveFeed::shoulderHint;
  if (s.pitch < 0.8) return LiveFeed::lookUpHint;
  return std::nullopt;
}

}  // namespace

LiveFeed::LiveFeed(Capture& capture, LidSensor& lidSensor, Clock& clock)
    : capture_(capture), lidSensor_(lidSensor), clock_(clock), authorized_(capture.authorized()) {}

// Leaves the capture without handlers that point here; the views are gone
// by now and hear nothing.
LiveFeed::~LiveFeed() {
  *self_ = nullptr;
  if (!running_) return;
  capture_.onMeasurement = nullptr;
  capture_.onSide = nullptr;
  capture_.onGlass = nullptr;
  capture_.stop();
}

void LiveFeed::start(double interval, bool arms) {
  if (!authorized_) return;
  capture_.setFrameInterval(interval);
  capture_.onMeasurement = weakCall(
      self_, [](LiveFeed& feed, std::optional<Measurement>& m) { feed.handle(std::move(m)); });
  capture_.onSide = weakCall(self_, [](LiveFeed& feed, std::optional<SideBody>& side) {
    feed.side_ = std::move(side);
    feed.changed(Property::side);
  });
  capture_.onGlass = weakCall(self_, [](LiveFeed& feed, std::optional<GlassImage>& image) {
    feed.glass_ = std::move(image);
    feed.changed(Property::glass);
  });
  capture_.setGlassRadius(wantsGlass ? std::optional<double>(startingGlassRadius) : std::nullopt);
  capture_.setTrackArms(arms);
  capture_.start();
  running_ = true;
}

void LiveFeed::stop() {
  if (!running_) return;
  capture_.onMeasurement = nullptr;
  capture_.onSide = nullptr;
  capture_.onGlass = nullptr;
  capture_.stop();
  capture_.setTrackArms(false);
  capture_.setGlassRadius(std::nullopt);
  capture_.setCheckPhone(false);
  capture_.setLight(false);
  side_.reset();
  measurement_.reset();
  hint_.reset();
  glass_.reset();
  recent_.clear();
  readiness_ = 0;
  running_ = false;
  for (auto p : {Property::side, Property::measurement, Property::hint, Property::glass,
                 Property::readiness}) {
    changed(p);
  }
}

void LiveFeed::requestAccess(std::function<void(bool)> completion) {
  // The completion is told even when the feed is gone by then.
  auto remember = weakCall(self_, [](LiveFeed& feed, bool granted) {
    feed.authorized_ = granted;
    feed.changed(Property::authorized);
  });
  capture_.authorize([remember, completion = std::move(completion)](bool granted) {
    remember(granted);
    if (completion) completion(granted);
  });
}

bool LiveFeed::needsShoulders() const {
  return hint_ && *hint_ == shoulderHint;
}

void LiveFeed::handle(std::optional<Measurement> m) {
  measurement_ = std::move(m);
  changed(Property::measurement);
  if (onMeasure) onMeasure(measurement_);
  track(measurement_);
  if (clock_.now() - lidReadAt_ > lidReadEverySeconds) readLid();
}

void LiveFeed::track(const std::optional<Measurement>& m) {
  Recent entry;
  entry.face = m.has_value();
  if (m) {
    entry.shoulders = m->shoulderL && m->shoulderR;
    entry.pitch = m->pitch.has_value();
    entry.far = distance(m->eyeL, m->eyeR) < farEyeShare * m->size.width;
  }
  recent_.push_back(entry);
  while (recent_.size() > recentKept)
    recent_.pop_front();
  updateReadiness();
  if (wantsGlass) {
    capture_.setGlassRadius(readiness_ < 0.95 ? std::optional<double>((1 - readiness_) * 9 + 1.5)
                                              : std::nullopt);
  }
  updateHint();
}

void LiveFeed::updateReadiness() {
  double next = 0;
  if (recent_.size() > 2) {
    const Shares s = sharesOf(recent_);
    next = (0.45 * s.face + 0.35 * s.shoulders + 0.2 * s.pitch) * (1 - 0.25 * s.far);
  }
  // Changes of a hundredth or less are not worth a redraw.
  if (std::abs(next - readiness_) <= 0.01) return;
  readiness_ = next;
  changed(Property::readiness);
}

// A new hint shows at once; replacing or clearing one waits until it has
// stood for the hold time, so that hints don't flicker.
void LiveFeed::updateHint() {
  const auto next = hintFor(sharesOf(recent_));
  if (next == hint_) return;
  const Date now = clock_.now();
  if (hint_ && now - hintAt_ < hintHoldSeconds) return;
  hint_ = next;
  hintAt_ = now;
  changed(Property::hint);
}

void LiveFeed::readLid() {
  lidReadAt_ = clock_.now();
  lidSensor_.read(weakCall(self_, [](LiveFeed& feed, std::optional<double> angle) {
    feed.lid_ = angle;
    feed.changed(Property::lid);
  }));
}

void LiveFeed::changed(Property property) {
  onChange.notify(property);
}

}  // namespace sodam
