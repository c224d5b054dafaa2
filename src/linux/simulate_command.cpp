#include "linux/simulate_command.h"

#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <thread>
#include <variant>

#include "linux/linux_process_inspector.h"
#include "linux/record_store.h"
#include "linux/sqlite_defaults.h"
#include "linux/stop_signals.h"
#include "sim/simulation.h"
#include "support/text.h"
#include "support/utf8.h"

namespace sodam {

namespace {

struct Request {
  std::string scenario = "workday";
  Simulation::Options options;
  std::optional<std::string> dataDir;
};

struct Problem {
  std::string message;
};

const char* usage =
    "usage: sodamjari simulate [SCENARIO] [--mode interval|live] [--speed N | --realtime]\n"
    "                          [--data-dir DIR] [--sensitivity strict|normal|relaxed]\n"
    "                          [--style border|blur] [--group]\n"
    "SCENARIO is one of workday, live, first-run, week, study, or a scenario file.\n"
    "--group: signed in, with a study group of two simulated friends.";

// Virtual seconds per real second: from a crawl to as fast as a machine goes.
constexpr double slowest = 0.01;
constexpr double fastest = 1e6;

// A real-time wait that a stopping signal cuts short.
constexpr double sleepSliceSeconds = 0.05;

// The user's text, fit to quote in a message.
std::string shown(std::string_view text) {
  return utf8::printable(text);
}

// One whole line at a time, so that a reader never sees half of one.
void writeLine(std::ostream& out, const std::string& line) {
  out << line << '\n' << std::flush;
}

bool takesValue(std::string_view name) {
  return name == "--mode" || name == "--speed" || name == "--sensitivity" || name == "--style";
}

std::optional<double> speedOf(const std::string& text) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text.front()))) return std::nullopt;
  char* end = nullptr;
  const double speed = std::strtod(text.c_str(), &end);
  if (*end != '\0' || !(speed >= slowest && speed <= fastest)) return std::nullopt;
  return speed;
}

std::optional<Problem> readValue(std::string_view name, const std::string& value,
                                 Request& request) {
  if (name == "--mode") {
    if (value != "interval" && value != "live") return Problem{"--mode is interval or live"};
    request.options.live = value == "live";
  } else if (name == "--speed") {
    request.options.speed = speedOf(value);
    if (!request.options.speed) {
      return Problem{format("--speed takes simulated seconds per real second, from %g to %.0f",
                            slowest, fastest)};
    }
  } else if (name == "--sensitivity") {
    if (value == "strict")
      request.options.sensitivity = Sensitivity::strict;
    else if (value == "normal")
      request.options.sensitivity = Sensitivity::normal;
    else if (value == "relaxed")
      request.options.sensitivity = Sensitivity::relaxed;
    else
      return Problem{"--sensitivity is strict, normal or relaxed"};
  } else if (name == "--style") {
    if (value != "border" && value != "blur") return Problem{"--style is border or blur"};
    request.options.style = value == "blur" ? AlertStyle::blur : AlertStyle::border;
  }
  return std::nullopt;
}

std::optional<Problem> readOption(const std::vector<std::string>& args, std::size_t& i,
                                  Request& request) {
  const std::string& name = args[i];
  if (name == "--realtime") {
    request.options.speed = 1;
    return std::nullopt;
  }
  if (name == "--group") {
    request.options.group = true;
    return std::nullopt;
  }
  if (name == "--data-dir") {
    if (auto problem = takeDataDir(args, i, request.dataDir)) return Problem{*problem};
    return std::nullopt;
  }
  if (!takesValue(name)) return Problem{"unknown option " + shown(name)};
  if (i + 1 >= args.size()) return Problem{name + " needs a value"};
  return readValue(name, args[++i], request);
}

std::optional<Problem> readArguments(const std::vector<std::string>& args, Request& request) {
  bool named = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i].rfind("--", 0) == 0) {
      if (auto problem = readOption(args, i, request)) return problem;
    } else if (!named) {
      request.scenario = args[i];
      named = true;
    } else {
      return Problem{"only one scenario at a time: " + shown(args[i])};
    }
  }
  return std::nullopt;
}

bool looksLikeFile(const std::string& name) {
  return name.find('/') != std::string::npos || name.find('.') != std::string::npos;
}

std::variant<Scenario, Problem> loadScenario(const std::string& name) {
  if (!looksLikeFile(name)) {
    if (auto scenario = Scenario::builtIn(name)) return *scenario;
    std::string names;
    for (const auto& known : Scenario::builtInNames())
      names += " " + known;
    return Problem{"unknown scenario \"" + shown(name) + "\"; the built-in ones are" + names};
  }
  errno = 0;
  std::ifstream file(name, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file.is_open() || file.bad()) {
    return Problem{"cannot read the scenario file " + shown(name) +
                   (errno ? std::string(": ") + std::strerror(errno) : std::string())};
  }
  auto parsed = Scenario::parse(text, name);
  if (!parsed.scenario) return Problem{shown(name) + ": " + parsed.error};
  return *parsed.scenario;
}

void sleepUnlessStopped(double seconds, const StopSignals& signals) {
  while (seconds > 0 && !signals.caught()) {
    const double slice = std::min(seconds, sleepSliceSeconds);
    std::this_thread::sleep_for(std::chrono::duration<double>(slice));
    seconds -= slice;
  }
}

// The day itself, with the store's troubles told in the transcript as they
// happen. The exit status: 0, 1 after a failed write, 128 + the signal
// that stopped the run.
int runDay(Scenario scenario, Request request, SqliteDefaults& defaults, ProductRun* product,
           const StopSignals& signals, std::ostream& out, std::ostream& err) {
  request.options.stopRequested = [&signals] { return signals.caught() != 0; };
  request.options.sleep = [&signals](double seconds) { sleepUnlessStopped(seconds, signals); };
  Simulation* running = nullptr;
  auto say = [&](const std::string& text) {
    if (running) {
      running->say(text);
    } else {
      writeLine(out, text);
    }
  };
  defaults.onFailure = [&](const StoreFailure& failure) {
    say("기록을 저장하지 못했어요: " + failure.describe());
  };
  defaults.onValueKeptAside = [&](const std::string& key) {
    say("읽을 수 없는 값을 따로 보관했어요: " + key);
  };
  const Calendar calendar = localCalendar();
  const Date day = Simulation::dayToSimulate(defaults, calendar, SystemClock().now());
  const auto date = calendar.components(day);
  writeLine(out, "소담자리 시뮬레이션: " + request.scenario +
                     format(" · %d년 %d월 %d일 · 기록: ", date.year, date.month, date.day) +
                     defaults.path().parent_path().string());
  SimulationSummary summary;
  {
    Simulation simulation(
        std::move(scenario), defaults, calendar, day,
        [&out](const std::string& line) { writeLine(out, line); }, request.options);
    running = &simulation;
    if (product) product->host().connect();
    writeLine(out, "보안: " + simulation.lock().summary());
    summary = simulation.run();
    if (summary.stopped) {
      simulation.say("시뮬레이션을 멈췄어요 (" + StopSignals::name(signals.caught()) + ")");
    }
    running = nullptr;
  }
  defaults.onFailure = nullptr;
  defaults.onValueKeptAside = nullptr;
  if (!summary.stopped) {
    for (const auto& line : summary.lines())
      writeLine(out, line);
    if (product) writeLine(out, product->host().nowLine());
  }
  int status = 0;
  if (auto failure = defaults.firstFailure()) {
    err << "sodamjari simulate: a write to the settings store failed: " << failure->describe()
        << "\n";
    if (auto unsaved = defaults.unsavedChanges()) {
      err << "sodamjari simulate: " << unsaved << " changed settings or records were not saved\n";
    }
    status = 1;
  }
  return summary.stopped ? 128 + signals.caught() : status;
}

}  // namespace

const char* simulateUsage() {
  return usage;
}

int runSimulate(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                Confined confined) {
  // From here on a stopping signal ends the run at its next step.
  const StopSignals signals;
  Request request;
  if (auto problem = readArguments(args, request)) {
    err << "sodamjari simulate: " << problem->message << "\n" << usage << "\n";
    return 2;
  }
  auto loaded = loadScenario(request.scenario);
  if (auto* problem = std::get_if<Problem>(&loaded)) {
    err << "sodamjari simulate: " << problem->message << "\n";
    return 2;
  }
  const RecordStore store = RecordStore::open(request.dataDir, true);
  if (const int status = store.complain("simulate", err)) return status;
  SqliteDefaults& defaults = *store.defaults;
  std::unique_ptr<ProductRun> product;
  if (confined == Confined::yes) {
    product = std::make_unique<ProductRun>(defaults.path().parent_path());
    request.options.confinement = &product->confinement();
  }
  const LinuxProcessInspector process;
  request.options.process = &process;
  return runDay(std::get<Scenario>(std::move(loaded)), std::move(request), defaults, product.get(),
                signals, out, err);
}

}  // namespace sodam
