// sodamjari on Linux, for now: the virtual sitter stands in for the camera.
// It learns a baseline from an upright sitter, then shows how a few posture
// changes read.

#include <cstdio>
#include <string>
#include <vector>

#include "posture/baseline.h"
#include "posture/evaluation.h"
#include "sim/virtual_sitter.h"
#include "support/clock.h"

namespace {

using sodam::SitterPosture;

constexpr int framesPerCheck = 30;
constexpr double noisePx = 1.0;

struct Scene {
  const char* name;
  SitterPosture posture;
};

std::vector<Scene> scenes() {
  auto with = [](auto change) {
    SitterPosture p;
    change(p);
    return p;
  };
  return {
      {"upright", SitterPosture{}},
      {"forward head 6 cm", with([](SitterPosture& p) { p.forwardHeadCm = 6; })},
      {"slouch", with([](SitterPosture& p) {
         p.headDropCm = 5;
         p.forwardHeadCm = 2;
       })},
      {"head down 12°", with([](SitterPosture& p) { p.headPitchDeg = 12; })},
      {"shoulder tilt 8°", with([](SitterPosture& p) { p.shoulderRollDeg = 8; })},
      {"lean 6 cm", with([](SitterPosture& p) { p.leanCm = 6; })},
      {"closer 15 cm", with([](SitterPosture& p) { p.distanceCm -= 15; })},
  };
}

void printReading(const char* name, const sodam::Reading& reading) {
  std::printf("%s\n  %s\n", name, reading.metrics.summary().c_str());
  if (reading.away) std::printf("  (looking away)\n");
  if (reading.tooFar) std::printf("  (too far to judge)\n");
  if (!reading.bad() && !reading.away && !reading.tooFar) std::printf("  good posture\n");
  for (const sodam::Issue& issue : reading.issues) {
    std::printf("  - %s: %s (%.2f)\n", std::string(issue.kind.title()).c_str(),
                issue.detail.c_str(), issue.score);
  }
}

}  // namespace

int main() {
  sodam::VirtualSitter sitter;
  sitter.setNoise(noisePx, 1);
  const double lid = sitter.laptop.lidDeg;
  const auto base =
      sodam::Baseline::learn(sitter.frames(framesPerCheck), lid, sodam::SystemClock().now());
  if (!base) {
    std::printf("no baseline could be learned\n");
    return 1;
  }
  std::printf("baseline: eyes %.1f cm from the camera, lid %.0f°\n\n", base->eyeDistance, lid);

  for (const Scene& scene : scenes()) {
    sitter.posture = scene.posture;
    std::vector<sodam::Metrics> frames;
    for (const sodam::Measurement& m : sitter.frames(framesPerCheck))
      frames.emplace_back(m, *base, lid);
    printReading(scene.name, sodam::Reading(frames, sodam::Sensitivity::normal));
  }
  return 0;
}
