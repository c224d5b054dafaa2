// PoseReader.read on a 1280x720 frame whose person mask has the frame's own
// resolution, so the shoulder walk and the torso scan cover the most pixels
// they ever will. Every heap allocation of the program is counted, and the
// benchmark reports how many fall inside the measured loop per frame.

#include <benchmark/benchmark.h>

#include "counting_allocator.h"
#include "posture/pose_reader.h"
#include "sim/sim_detections.h"
#include "sim/virtual_sitter.h"

namespace sodam {
namespace {

Detections fullFrame(bool arms) {
  VirtualSitter sitter;
  const auto person = sitter.render();
  SimDetections draw;
  draw.maskSize = {1280, 720};
  FramePlan plan;
  plan.bodyAndHands = arms;
  plan.person = true;
  Detections d;
  draw.render(person, {1280, 720}, plan, d);
  return d;
}

void readFrames(benchmark::State& state, bool arms) {
  const Detections detections = fullFrame(arms);
  PoseReader reader;
  for (int i = 0; i < 8; ++i)  // warm: the reader's buffers reach their size
    benchmark::DoNotOptimize(reader.read(detections, arms, false, false));
  bool measured = true;
  const long long before = bench::allocations.load();
  for (auto _ : state) {
    auto result = reader.read(detections, arms, false, false);
    measured = measured && result.measurement && result.measurement->torsoWidth;
    benchmark::DoNotOptimize(result);
  }
  const long long during = bench::allocations.load() - before;
  state.counters["allocs_per_frame"] =
      benchmark::Counter(static_cast<double>(during) / static_cast<double>(state.iterations()));
  if (!measured) state.SkipWithError("the frame gave no torso width");
}

void BM_ReadWithMask(benchmark::State& state) {
  readFrames(state, false);
}
void BM_ReadWithMaskAndArms(benchmark::State& state) {
  readFrames(state, true);
}

BENCHMARK(BM_ReadWithMask)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_ReadWithMaskAndArms)->Repetitions(9)->ReportAggregatesOnly(true);

}  // namespace
}  // namespace sodam
