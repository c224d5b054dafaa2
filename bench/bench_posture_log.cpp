// The posture log at its largest: a month of one check a minute. Measures a
// record (encoding the whole log), the day queries, loading, and the memory
// the loaded log holds. The store's own cost is measured in bench_store.

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <random>

#include "platform/store.h"
#include "posture/posture_log.h"
#include "posture/posture_log_text.h"

namespace sodam {
namespace {

constexpr int monthOfMinutes = 43'200;
constexpr double start = 740'000'000.318;  // sub-second, as a real clock gives

// A check as the monitor records it, with measured-looking numbers.
PostureEntry entryAt(Date t, std::mt19937& random) {
  std::normal_distribution<double> cm(0, 3);
  std::uniform_int_distribution<int> roll(0, 99);
  int kind = roll(random);
  PostureEntry entry{t, PostureEntry::Kind::good, {}, std::nullopt};
  if (kind >= 95) {
    entry.k = kind % 2 ? PostureEntry::Kind::absent : PostureEntry::Kind::away;
    return entry;
  }
  if (kind >= 85) {
    entry.k = PostureEntry::Kind::alert;
    entry.i = {IssueKind::forwardHead};
    if (kind % 2) entry.i.push_back(IssueKind::slouch);
  } else if (kind >= 80) {
    entry.k = PostureEntry::Kind::corrected;
  }
  Metrics metrics;
  metrics.headForward = cm(random);
  metrics.neckDrop = cm(random);
  metrics.flexion = cm(random) * 3;
  metrics.shoulderTilt = cm(random);
  metrics.headTilt = cm(random);
  metrics.lean = cm(random);
  metrics.closer = cm(random);
  metrics.viewDistance = 55 + cm(random);
  entry.m = Snapshot::of(metrics);
  return entry;
}

Bytes monthOfEntries() {
  std::mt19937 random(42);
  std::deque<PostureEntry> entries;
  PostureLogText text;
  for (int i = 0; i < monthOfMinutes; ++i) {
    entries.push_back(entryAt(Date{start + i * 60.0 + (i % 13) * 0.0137}, random));
    text.append(entries.back());
  }
  return text.encode(entries);
}

std::size_t heapInUse() {
  struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// A full log over the given defaults, the clock a minute past its last entry.
struct FullLog {
  ManualClock clock{Date{start + monthOfMinutes * 60.0}};
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  std::unique_ptr<PostureLog> log;
  Metrics metrics;
  std::size_t heapBeforeLog = 0;

  explicit FullLog(Defaults& defaults) {
    defaults.setData(StoreKey::postureLog, monthOfEntries());
    heapBeforeLog = heapInUse();
    log = std::make_unique<PostureLog>(defaults, clock, calendar);
    metrics.headForward = 1.234567;
    metrics.headTilt = -0.75321;
    metrics.closer = 2.0416;
    metrics.viewDistance = 54.3219;
  }
  void recordOne() {
    clock.advance(60);
    log->record(PostureEntry::Kind::good, {}, metrics);
  }
};

void BM_RecordInMemory(benchmark::State& state) {
  MemoryDefaults defaults;
  FullLog full(defaults);
  for (auto _ : state)
    full.recordOne();
  // The log after many records; its stored copy is about as large as at the
  // start and so left out.
  state.counters["held_MB"] = (heapInUse() - full.heapBeforeLog) / 1e6;
  state.counters["stored_MB"] = defaults.data(StoreKey::postureLog).value->size() / 1e6;
}
BENCHMARK(BM_RecordInMemory)->Unit(benchmark::kMillisecond);

void BM_Load(benchmark::State& state) {
  MemoryDefaults defaults;
  defaults.setData(StoreKey::postureLog, monthOfEntries());
  ManualClock clock;
  Calendar calendar;
  std::size_t held = 0;
  for (auto _ : state) {
    std::size_t before = heapInUse();
    PostureLog log(defaults, clock, calendar);
    held = heapInUse() - before;
    benchmark::DoNotOptimize(log.entries().size());
  }
  state.counters["loaded_MB"] = held / 1e6;
}
BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond);

void BM_Queries(benchmark::State& state) {
  MemoryDefaults defaults;
  FullLog full(defaults);
  Date lastDay = full.clock.now() - 3600;
  for (auto _ : state) {
    switch (state.range(0)) {
      case 0:
        benchmark::DoNotOptimize(full.log->day(lastDay));
        break;
      case 1:
        benchmark::DoNotOptimize(full.log->hourly(lastDay));
        break;
      case 2:
        benchmark::DoNotOptimize(full.log->issueCounts(30));
        break;
      case 3:
        benchmark::DoNotOptimize(full.log->lastDays(30));
        break;
    }
  }
  const char* names[] = {"day", "hourly", "issueCounts(30)", "lastDays(30)"};
  state.SetLabel(names[state.range(0)]);
}
BENCHMARK(BM_Queries)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace sodam
