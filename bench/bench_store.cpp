// The Linux settings store under the load of a month-long posture log: what
// one check costs (time, and the bytes the process hands the kernel to
// write) and what a whole simulated workday costs on the real store.

#include <benchmark/benchmark.h>

#include <stdlib.h>

#include <cstdio>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "platform/store.h"
#include "posture/posture_log.h"
#include "posture/posture_log_text.h"
#include "sim/simulation.h"

#include "linux/sqlite_defaults.h"

namespace sodam {
namespace {

constexpr int monthOfMinutes = 43'200;

struct TempDir {
  std::filesystem::path path;
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "sodam-bench-XXXXXX").string();
    path = ::mkdtemp(pattern.data());
  }
  ~TempDir() { std::filesystem::remove_all(path); }
};

// Bytes this process has passed to write(2) and friends so far.
double bytesWritten() {
  std::ifstream io("/proc/self/io");
  std::string name;
  double value = 0;
  while (io >> name >> value) {
    if (name == "wchar:") return value;
  }
  return 0;
}

std::unique_ptr<SqliteDefaults> openStore(const std::filesystem::path& dir) {
  auto opened = SqliteDefaults::open(dir);
  if (auto* failure = std::get_if<StoreFailure>(&opened)) {
    std::fprintf(stderr, "cannot open the store: %s\n", failure->describe().c_str());
    std::exit(1);
  }
  return std::move(std::get<std::unique_ptr<SqliteDefaults>>(opened));
}

// A month of one check a minute, ending at `end`.
Bytes monthOfEntries(Date end) {
  std::mt19937 random(7);
  std::normal_distribution<double> cm(0, 3);
  std::deque<PostureEntry> entries;
  PostureLogText text;
  for (int i = monthOfMinutes; i > 0; --i) {
    Metrics metrics;
    metrics.headForward = cm(random);
    metrics.neckDrop = cm(random);
    metrics.headTilt = cm(random);
    metrics.closer = cm(random);
    metrics.viewDistance = 55 + cm(random);
    entries.push_back({end - i * 60.0, PostureEntry::Kind::good, {}, Snapshot::of(metrics)});
    text.append(entries.back());
  }
  return text.encode(entries);
}

// One check as the monitor records it, on a store that holds a month.
void BM_CheckWithMonthLog(benchmark::State& state) {
  TempDir dir;
  auto store = openStore(dir.path);
  ManualClock clock(Date::fromUnix(1'795'000'000));
  Calendar calendar(TimeZone::fixed(9 * 3600));
  store->setData(StoreKey::postureLog, monthOfEntries(clock.now()));
  PostureLog log(*store, clock, calendar);
  Metrics metrics;
  metrics.headForward = 1.25;
  metrics.headTilt = -0.5;
  metrics.closer = 2;
  const double before = bytesWritten();
  for (auto _ : state) {
    clock.advance(60);
    log.record(PostureEntry::Kind::good, {}, metrics);
  }
  const double checks = static_cast<double>(state.iterations());
  state.counters["written_KB_per_check"] = (bytesWritten() - before) / checks / 1e3;
  state.counters["entries"] = static_cast<double>(log.entries().size());
}
BENCHMARK(BM_CheckWithMonthLog)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3);

// Start-up: the store opened and a month-long log read from it.
void BM_OpenWithMonthLog(benchmark::State& state) {
  TempDir dir;
  ManualClock clock(Date::fromUnix(1'795'000'000));
  Calendar calendar(TimeZone::fixed(9 * 3600));
  openStore(dir.path)->setData(StoreKey::postureLog, monthOfEntries(clock.now()));
  for (auto _ : state) {
    auto store = openStore(dir.path);
    PostureLog log(*store, clock, calendar);
    benchmark::DoNotOptimize(log.entries().size());
  }
}
BENCHMARK(BM_OpenWithMonthLog)->Unit(benchmark::kMillisecond);

// A whole `simulate workday` on the store, fresh or after a month of
// records; the simulation's records held until the day's end, or written
// through at every step as a run with --speed writes them.
void BM_WorkdayRun(benchmark::State& state) {
  const bool withMonth = state.range(0) != 0;
  const bool writeThrough = state.range(1) != 0;
  const Calendar calendar(TimeZone::fixed(9 * 3600));
  const Date today = Date::fromUnix(1'795'000'000);
  Simulation::Options options;
  if (writeThrough) {
    options.speed = 1e6;
    options.sleep = [](double) {};
  }
  double written = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TempDir dir;
    auto store = openStore(dir.path);
    if (withMonth) store->setData(StoreKey::postureLog, monthOfEntries(today - 86'400));
    const double before = bytesWritten();
    state.ResumeTiming();
    Simulation simulation(
        *Scenario::builtIn("workday"), *store, calendar, today, [](const std::string&) {}, options);
    benchmark::DoNotOptimize(simulation.run());
    written += bytesWritten() - before;
  }
  state.counters["written_MB"] = written / static_cast<double>(state.iterations()) / 1e6;
  state.SetLabel(std::string(withMonth ? "after a month of records" : "fresh") +
                 (writeThrough ? ", written through" : ", held to the day's end"));
}
BENCHMARK(BM_WorkdayRun)
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

}  // namespace
}  // namespace sodam
