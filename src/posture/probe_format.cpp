#include "posture/probe_format.h"

#include <cmath>

#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {

std::string number(std::optional<double> value, const char* pattern) {
  if (!value || !std::isfinite(*value)) return "-";
  return format(pattern, *value);
}

std::string flag(std::optional<bool> value) {
  if (!value) return "-";
  return *value ? "true" : "false";
}

std::optional<double> shoulderTilt(const Measurement& m) {
  const auto pair = m.shoulders();
  if (!pair) return std::nullopt;
  const auto [left, right] = *pair;
  return deg(std::atan2(right.y - left.y, right.x - left.x));
}

std::optional<double> torsoInHeads(const SideBody& side) {
  if (!side.torso) return std::nullopt;
  const double width = side.torso->hi - side.torso->lo;
  return side.headWidth > 1 ? width / side.headWidth : width;
}

}  // namespace

std::string probeFrameLine(int frame, const std::optional<Measurement>& measurement,
                           std::optional<double> top) {
  if (!measurement) return format("probe frame %d no face", frame);
  const Measurement& m = *measurement;
  return format(
      "probe frame %d size=%.0fx%.0f ipd=%.0f top=%s torso=%s tilt=%s ratio=%s yaw=%.1f "
      "turn=%.1f pitch=%s aperture=%s fromBody=%s neck=%s shape=%s phone=%s",
      frame, m.size.width, m.size.height, distance(m.eyeL, m.eyeR), number(top, "%.0f").c_str(),
      number(m.torsoWidth, "%.0f").c_str(), number(shoulderTilt(m), "%.1f").c_str(),
      number(m.faceRatio, "%.3f").c_str(), deg(m.yaw), m.turn(), number(m.pitch, "%.1f").c_str(),
      number(m.aperture, "%.3f").c_str(), flag(m.fromBody).c_str(),
      number(m.neckShape(), "%.3f").c_str(), number(m.torsoShape(), "%.3f").c_str(),
      m.phone ? format("%.2f", double(*m.phone)).c_str() : "-");
}

std::string probeSideLine(const std::optional<SideBody>& side) {
  if (!side) return "probe side none";
  const std::optional<bool> clipped =
      side->torso ? std::optional<bool>(side->torso->clipped) : std::nullopt;
  return format(
      "probe side head=%.0f torso=%s clipped=%s confL=%.2f confR=%.2f sideways=%s "
      "face=%s",
      side->headWidth, number(torsoInHeads(*side), "%.2f").c_str(), flag(clipped).c_str(),
      side->confL, side->confR, flag(side->sideways).c_str(),
      number(side->faceRatio, "%.3f").c_str());
}

std::string probeNoPermissionLine() {
  return "probe no camera permission";
}

void ProbeTally::add(const std::optional<Measurement>& measurement) {
  ++frames;
  if (!measurement) return;
  if (!measurement->fromBody) ++faces;
  if (measurement->faceRatio) ++ratios;
}

std::string probeDoneLine(const ProbeTally& tally) {
  const std::string frames = std::to_string(tally.frames);
  const std::string faces = std::to_string(tally.faces);
  const std::string ratios = std::to_string(tally.ratios);
  return fill("probe done frames={n} faces={faces} ratios={ratios}",
              {{"n", frames}, {"faces", faces}, {"ratios", ratios}});
}

}  // namespace sodam
