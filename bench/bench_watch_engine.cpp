// The focus watcher's cost per camera sample: turning a measurement into a
// frame with its hand tests, then judging the twelve seconds kept, as it
// runs twice a second for a whole study session. Every heap allocation of
// the program is counted, to report those of one sample.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "focus/watch_engine.h"
#include "platform/power.h"
#include "platform/store.h"
#include "posture/capture.h"
#include "posture/capture_frame_source.h"
#include "posture/live_feed.h"
#include "posture/monitor.h"
#include "posture/posture_log.h"
#include "sim/sim_machine.h"
#include "support/manual_scheduler.h"
#include "worklife/work_life.h"

#include "counting_allocator.h"

namespace sodam {
namespace {

// A student about 85 cm away, swaying a little, whose hands rest on the
// desk, hold a phone or prop the chin in turn every twenty samples.
Measurement sample(int i) {
  const double sway = std::sin(i * 0.7);
  const double ipd = 72 + sway, eyeY = 520 + 2 * sway;
  Measurement m;
  m.size = {1280, 720};
  m.eyeL = {640 - ipd / 2 + sway, eyeY};
  m.eyeR = {640 + ipd / 2 + sway, eyeY};
  m.chin = Point{640 + sway, eyeY - 1.8 * ipd};
  m.nose = Point{640 + sway, eyeY - 0.6 * ipd};
  m.shoulderL = Point{640 - 2.2 * ipd, eyeY - 3 * ipd};
  m.shoulderR = Point{640 + 2.2 * ipd, eyeY - 3 * ipd};
  m.aperture = 0.3 + 0.01 * sway;
  m.pupil = Point{0.5, 0.5};
  m.arms = Arms{};
  const double face = 1.8 * ipd;
  switch ((i / 20) % 3) {
    case 0:
      m.arms->wristL = Point{640 - 2.3 * ipd, eyeY - 6.5 * ipd};
      m.arms->wristR = Point{640 + 2.3 * ipd, eyeY - 6.5 * ipd};
      break;
    case 1:
      m.arms->wristL = Point{640 - 0.2 * face, m.chin->y - 1.4 * face};
      m.arms->wristR = Point{640 + 0.2 * face, m.chin->y - 1.4 * face};
      m.pupil = Point{0.5, 0.3};
      m.phone = i % 2 == 0 ? 0.6f : 0.0f;
      break;
    default:
      m.arms->wristL = Point{640 - 2.3 * ipd, eyeY - 6.5 * ipd};
      m.arms->wristR = Point{640 + 0.1 * face, m.chin->y - 0.7 * face};
      break;
  }
  return m;
}

struct Watcher {
  ManualClock clock{Date::fromUnix(1'795'000'000)};
  ManualScheduler scheduler{clock};
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  MemoryDefaults defaults;
  Store store{defaults, clock, calendar};
  SimMachine machine{scheduler, clock};
  Power power{machine.power};
  Capture capture{{machine.camera, machine.camera, machine.access, nullptr, scheduler, clock,
                   machine.queue, machine.queue}};
  CaptureFrameSource frames{capture};
  LidSensor lid{machine.lidDevice(), machine.queue, scheduler};
  PostureLog log{defaults, clock, calendar};
  WorkLife work{defaults, store, power, scheduler, clock, calendar};
  Monitor monitor{{frames, lid, log, store, defaults, power, clock, scheduler}};
  LiveFeed feed{capture, lid, clock};
  WatchEngine engine{{feed, capture, monitor, power, work, clock}};
  int reported = 0;

  Watcher() {
    engine.onHabit = [this](WatchHabit) { ++reported; };
    engine.calibrate({WatchHabit::phone, WatchHabit::drowsy, WatchHabit::chinRest}, true);
    for (int i = 0; i < 40; ++i)
      take(sample(0));
  }
  void take(const Measurement& m) {
    clock.advance(0.5);
    engine.take(m);
  }
};

void BM_WatchTakeAndJudge(benchmark::State& state) {
  Watcher watcher;
  std::vector<Measurement> samples;
  for (int i = 0; i < 600; ++i)
    samples.push_back(sample(i));
  std::size_t next = 0;
  const long long before = bench::allocations.load();
  for (auto _ : state) {
    watcher.take(samples[next]);
    next = (next + 1) % samples.size();
  }
  const long long during = bench::allocations.load() - before;
  benchmark::DoNotOptimize(watcher.reported);
  state.counters["kept"] = static_cast<double>(watcher.engine.frames().size());
  state.counters["allocs_per_sample"] =
      benchmark::Counter(static_cast<double>(during) / static_cast<double>(state.iterations()));
}
BENCHMARK(BM_WatchTakeAndJudge);

// The same with nobody in the chair: the away window and an empty frame.
void BM_WatchTakeEmptyChair(benchmark::State& state) {
  Watcher watcher;
  for (auto _ : state)
    watcher.take(Measurement{});
  benchmark::DoNotOptimize(watcher.engine.state());
}
BENCHMARK(BM_WatchTakeEmptyChair);

}  // namespace
}  // namespace sodam
