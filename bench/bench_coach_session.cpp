// One tick of a coach session in the middle of a stretch: the framing checks,
// the mirror of the latest camera result, the steadying filter, the live match
// and the repetition count. The application runs on the simulated laptop with
// the virtual sitter; once the stretch plays, the tick is called directly with
// the camera's last result in place. Every heap allocation of the program is
// counted, and the benchmark reports how many fall inside the measured loop
// per tick.

#include <benchmark/benchmark.h>

#include <memory>

#include "app/app_delegate.h"
#include "coach/stretch_library.h"
#include "counting_allocator.h"
#include "platform/guard.h"
#include "posture/baseline_store.h"
#include "sim/sim_machine.h"
#include "sim/stretch_follower.h"
#include "sim/transcript.h"
#include "support/manual_scheduler.h"

namespace sodam {
namespace {

struct Desk {
  ManualClock clock{Date::fromUnix(1'795'000'000)};
  ManualScheduler scheduler{clock};
  MemoryDefaults defaults;
  SimMachine machine{scheduler, clock};
  Calendar calendar{TimeZone::utc()};
  Transcript shell{clock, calendar, [](const std::string&) {}};
  NoConfinement confinement;
  QuietProcess process;
  std::unique_ptr<Lockdown> lock = Lockdown::engage(confinement, scheduler);
  std::unique_ptr<AppDelegate> app;
  std::unique_ptr<StretchFollower> follower;

  explicit Desk(const char* id) {
    machine.sitter.setNoise(0.5, 3);
    BaselineStore::write(defaults, Baseline::learn(machine.sitter.frames(30),
                                                   machine.sitter.laptop.lidDeg, clock.now()));
    Store(defaults, clock, calendar).setGuideDone(true);
    app = std::make_unique<AppDelegate>(
        *lock, AppDelegate::Platform{machine.camera, machine.camera, machine.access, nullptr,
                                     machine.queue, machine.queue, machine.lidDevice(),
                                     machine.queue, machine.power, defaults, shell, shell, shell,
                                     shell, process, clock, scheduler, calendar, std::nullopt});
    app->finishLaunching(true);
    app->panelModel().start({*StretchLibrary::find(id)});
    follower = std::make_unique<StretchFollower>(
        machine.sitter, [this] { return app->panelModel().session(); }, scheduler, clock,
        StretchFollower::good());
  }

  // Into the stretch, at its peak.
  CoachSession* playing(double secondsIn) {
    CoachSession* s = app->panelModel().session();
    for (int i = 0; i < 600 && !s->phase().is(CoachSession::Phase::Kind::active); ++i)
      scheduler.advance(0.1);
    scheduler.advance(secondsIn);
    return s->phase().is(CoachSession::Phase::Kind::active) ? s : nullptr;
  }
};

void tickAt(benchmark::State& state, const char* id, double secondsIn) {
  Desk desk(id);
  CoachSession* session = desk.playing(secondsIn);
  if (!session || !session->userPose()) {
    state.SkipWithError("the stretch is not being followed");
    return;
  }
  for (int i = 0; i < 20; ++i)  // warm: the lists reach their size
    session->tick();
  const long long before = bench::allocations.load();
  for (auto _ : state) {
    session->tick();
    benchmark::DoNotOptimize(session->userPose());
  }
  const long long during = bench::allocations.load() - before;
  state.counters["allocs_per_tick"] =
      benchmark::Counter(static_cast<double>(during) / static_cast<double>(state.iterations()));
  if (!session->phase().is(CoachSession::Phase::Kind::active))
    state.SkipWithError("the stretch ended while measured");
}

// Facing the camera: neck and arms of the levator stretch at its hold.
void BM_TickFacing(benchmark::State& state) {
  tickAt(state, "levator", 6);
}
// Sideways: the cat and cow against the user's neutral side posture.
void BM_TickSideways(benchmark::State& state) {
  tickAt(state, "catCow", 3);
}

BENCHMARK(BM_TickFacing)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_TickSideways)->Repetitions(9)->ReportAggregatesOnly(true);

}  // namespace
}  // namespace sodam
