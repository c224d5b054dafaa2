#include "coach/motion.h"

#include <cmath>
#include <utility>

namespace sodam {

namespace {

// Below this a loop counts as this long, so that time can be divided by it.
constexpr double shortestLoopSeconds = 0.01;

// Slow in, slow out: a cubic each half.
double ease(double u) {
  if (u < 0.5) return 4 * u * u * u;
  const double v = 2 - 2 * u;
  return 1 - v * v * v / 2;
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  std::size_t at = 0;
  while ((at = text.find(from, at)) != std::string::npos) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
}

Key mirroredKey(const Key& key) {
  Key m = key;
  Pose& p = m.pose;
  p.spineSide = -p.spineSide;
  p.twist = -p.twist;
  p.neckSide = -p.neckSide;
  p.headTurn = -p.headTurn;
  std::swap(p.shrugL, p.shrugR);
  std::swap(p.armL, p.armR);
  if (m.cue) m.cue = Sidedness::swap(*m.cue);
  return m;
}

}  // namespace

double Motion::duration() const {
  double total = 0;
  for (const auto& key : keys)
    total += key.move + key.hold;
  return total;
}

Motion::Moment Motion::pose(double seconds) const {
  if (keys.empty()) return {Pose(), nullptr};
  const double total = std::max(duration(), shortestLoopSeconds);
  double t = std::fmod(seconds, total);
  if (t < 0) t += total;
  const std::string* running = keys.back().cue ? &*keys.back().cue : nullptr;
  const Key* previous = &keys.back();
  for (const auto& key : keys) {
    const std::string* cue = key.cue ? &*key.cue : running;
    if (t < key.move) {
      return {Pose::lerp(previous->pose, key.pose, ease(t / key.move)), cue};
    }
    t -= key.move;
    if (t < key.hold) return {key.pose, cue};
    t -= key.hold;
    running = cue;
    previous = &key;
  }
  return {keys.back().pose, running};
}

Motion Motion::mirrored() const {
  Motion m;
  m.keys.reserve(keys.size());
  for (const auto& key : keys)
    m.keys.push_back(mirroredKey(key));
  return m;
}

std::string Sidedness::swap(std::string_view text) {
  // A placeholder that no designed line holds lets the two words change places.
  const std::string_view placeholder = "\x01";
  std::string result(text);
  replaceAll(result, "오른", placeholder);
  replaceAll(result, "왼", "오른");
  replaceAll(result, placeholder, "왼");
  return result;
}

}  // namespace sodam
