// What the watcher makes of its recent frames: shares over short windows,
// the state they add up to, and the habits reported.
#include <algorithm>

#include "focus/watch_engine.h"
#include "support/numeric.h"

namespace sodam {

namespace {

constexpr double awayWindowSeconds = 6;
constexpr double eyesWindowSeconds = 4;
constexpr double mainWindowSeconds = 10;

constexpr std::size_t eyesLeastFrames = 3;
constexpr double closedApertureShare = 0.62;  // of the open-eye value
constexpr double closedShare = 0.7;
constexpr std::size_t sunkMoreThanFrames = 5;
constexpr double sunkPresentShare = 0.8;
constexpr double sunkFaceShare = 0.2;
// A face seen in fewer than half of the frames of a present user.
constexpr double faceGoneShare = 0.5;
constexpr float phoneScoreLeast = 0.25f;
constexpr std::size_t handsLeastFrames = 4;
constexpr double phoneHandsShare = 0.7;
constexpr double handAtFaceShare = 0.6;
constexpr double turtleDrop = 0.03;
constexpr double slouchDrop = 0.08;
constexpr double closerIpdRatio = 1.12;

double share(std::size_t part, std::size_t whole) {
  return whole == 0 ? 0 : static_cast<double>(part) / static_cast<double>(whole);
}

}  // namespace

struct WatchEngine::Findings {
  bool away = false;      // away long enough for the state
  bool awayLong = false;  // away long enough to report
  bool sunk = false;
  bool faceGone = false;
  bool drowsy = false;
  bool phone = false;
  bool chinRest = false;
  bool mouth = false;
  bool turtle = false;
  bool slouch = false;
};

// Counts over the frames not older than a window, newest first.
template <class Test>
std::size_t countRecent(const std::vector<WatchEngine::Frame>& frames, Date now, double seconds,
                        Test test) {
  std::size_t n = 0;
  for (auto it = frames.rbegin(); it != frames.rend() && now - it->at <= seconds; ++it)
    n += test(*it) ? 1 : 0;
  return n;
}

WatchEngine::Findings WatchEngine::find(Date now) {
  using F = const Frame&;
  Findings found;
  auto recent = [&](double seconds, auto test) { return countRecent(frames_, now, seconds, test); };

  if (recent(awayWindowSeconds, [](F f) { return f.present; }) == 0) {
    if (!awaySince_) awaySince_ = now;
  } else {
    awaySince_.reset();
    awayFlagged_ = false;
  }
  const double awayFor = awaySince_ ? now - *awaySince_ : 0;
  found.away = awaySince_ && awayFor >= awayStateSeconds;
  found.awayLong = awaySince_ && awayFor > awayReportSeconds;

  const std::size_t withAperture = recent(eyesWindowSeconds, [](F f) { return f.aperture; });
  bool closed = false;
  if (withAperture >= eyesLeastFrames) {
    if (const auto open = openEye()) {
      const double limit = closedApertureShare * *open;
      const auto shut =
          recent(eyesWindowSeconds, [limit](F f) { return f.aperture && *f.aperture < limit; });
      closed = share(shut, withAperture) >= closedShare;
    }
  }

  const std::size_t n = recent(mainWindowSeconds, [](F) { return true; });
  const double present = share(recent(mainWindowSeconds, [](F f) { return f.present; }), n);
  const double face = share(recent(mainWindowSeconds, [](F f) { return f.face; }), n);
  if (n > sunkMoreThanFrames && present >= sunkPresentShare) {
    found.sunk = face <= sunkFaceShare;
    found.faceGone = !found.sunk && face < faceGoneShare;
  }
  found.drowsy = closed || found.sunk;

  const auto phoneScored =
      recent(mainWindowSeconds, [](F f) { return f.phone && *f.phone >= phoneScoreLeast; });
  found.phone = phoneScored > 1;
  if (n >= handsLeastFrames) {
    auto shareOf = [&](bool Frame::*field) {
      return share(recent(mainWindowSeconds, [field](F f) { return f.*field; }), n);
    };
    found.phone = found.phone || shareOf(&Frame::phoneHands) >= phoneHandsShare;
    found.chinRest = shareOf(&Frame::chinRest) >= handAtFaceShare;
    found.mouth = shareOf(&Frame::mouth) >= handAtFaceShare;
  }
  judgePosture(found, now);
  return found;
}

// The eyes against the calibrated reference: sunk and nearer the camera is a
// turtle neck, sunk much further a slouch.
void WatchEngine::judgePosture(Findings& found, Date now) {
  if (!posture_ || !reference_) return;
  if (countRecent(frames_, now, mainWindowSeconds, [](const Frame&) { return true; }) <
      handsLeastFrames)
    return;
  const auto eyeY = presentMedian(now, &Frame::eyeY);
  const auto ipd = presentMedian(now, &Frame::ipd);
  if (!eyeY || !ipd) return;
  const double drop = reference_->eyeY - *eyeY;
  const bool closer = *ipd > closerIpdRatio * reference_->ipd;
  found.turtle = drop > turtleDrop && closer;
  found.slouch = drop > slouchDrop && !found.turtle;
}

std::optional<double> WatchEngine::presentMedian(Date now, double Frame::*field) const {
  scratch_.clear();
  for (auto it = frames_.rbegin(); it != frames_.rend() && now - it->at <= mainWindowSeconds;
       ++it) {
    if (it->present) scratch_.push_back((*it).*field);
  }
  // In place, so that judging allocates nothing; the fields are finite.
  const std::size_t n = scratch_.size();
  if (n == 0) return std::nullopt;
  std::sort(scratch_.begin(), scratch_.end());
  return n % 2 == 1 ? scratch_[n / 2] : (scratch_[n / 2 - 1] + scratch_[n / 2]) / 2;
}

void WatchEngine::judge(Date now) {
  const Findings found = find(now);
  MateState next = MateState::focus;
  if (found.away) {
    next = MateState::away;
  } else if (found.phone) {
    next = MateState::phone;
  } else if (found.drowsy) {
    next = MateState::drowsy;
  } else if (found.turtle) {
    next = MateState::turtle;
  } else if (found.slouch) {
    next = MateState::slouch;
  }
  std::optional<std::string> note;
  if (found.away) {
    note = awayNote;
  } else if (found.sunk) {
    note = headDownNote;
  } else if (found.faceGone) {
    note = faceGoneNote;
  }
  setState(next, std::move(note));

  if (found.awayLong && !awayFlagged_) {
    awayFlagged_ = true;
    flag(WatchHabit::away, now);
  }
  if (found.phone) flag(WatchHabit::phone, now);
  if (found.drowsy) flag(WatchHabit::drowsy, now);
  if (found.chinRest) flag(WatchHabit::chinRest, now);
  if (found.mouth) flag(WatchHabit::mouth, now);
  if (found.turtle || found.slouch) flag(WatchHabit::posture, now);
}

void WatchEngine::setState(MateState state, std::optional<std::string> note) {
  if (state == state_ && note == note_) return;
  state_ = state;
  note_ = std::move(note);
  changed();
}

void WatchEngine::flag(WatchHabit habit, Date now) {
  if (habit == WatchHabit::posture) {
    if (!posture_) return;
  } else if (std::find(habits_.begin(), habits_.end(), habit) == habits_.end()) {
    return;
  }
  Date& last = said_[static_cast<std::size_t>(static_cast<WatchHabit::Value>(habit))];
  if (now - last <= habitPauseSeconds) return;
  last = now;
  if (onHabit) onHabit(habit);
}

}  // namespace sodam
