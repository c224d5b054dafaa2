#include "linux/simulate_command.h"

#include <chrono>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <thread>
#include <variant>

#include "linux/file_defaults.h"
#include "linux/linux_process_inspector.h"
#include "sim/simulation.h"
#include "support/text.h"

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

// The value after an option, or a problem naming the option.
std::optional<std::string> valueOf(const std::vector<std::string>& args, std::size_t& i,
                                   std::optional<Problem>& problem) {
  if (i + 1 >= args.size()) {
    problem = Problem{args[i] + " needs a value"};
    return std::nullopt;
  }
  return args[++i];
}

std::optional<Problem> readOption(const std::vector<std::string>& args, std::size_t& i,
                                  Request& request) {
  std::optional<Problem> problem;
  const std::string& name = args[i];
  if (name == "--realtime") {
    request.options.speed = 1;
    return std::nullopt;
  }
  if (name == "--group") {
    request.options.group = true;
    return std::nullopt;
  }
  auto value = valueOf(args, i, problem);
  if (!value) return problem;
  if (name == "--mode") {
    if (*value != "interval" && *value != "live") return Problem{"--mode is interval or live"};
    request.options.live = *value == "live";
  } else if (name == "--speed") {
    char* end = nullptr;
    const double speed = std::strtod(value->c_str(), &end);
    if (end == value->c_str() || *end != '\0' || !(speed > 0) || speed > 1e9) {
      return Problem{"--speed takes a positive number of simulated seconds per second"};
    }
    request.options.speed = speed;
  } else if (name == "--data-dir") {
    request.dataDir = *value;
  } else if (name == "--sensitivity") {
    if (*value == "strict")
      request.options.sensitivity = Sensitivity::strict;
    else if (*value == "normal")
      request.options.sensitivity = Sensitivity::normal;
    else if (*value == "relaxed")
      request.options.sensitivity = Sensitivity::relaxed;
    else
      return Problem{"--sensitivity is strict, normal or relaxed"};
  } else if (name == "--style") {
    if (*value != "border" && *value != "blur") return Problem{"--style is border or blur"};
    request.options.style = *value == "blur" ? AlertStyle::blur : AlertStyle::border;
  } else {
    return Problem{"unknown option " + name};
  }
  return std::nullopt;
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
      return Problem{"only one scenario at a time: " + args[i]};
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
    return Problem{"unknown scenario \"" + name + "\"; the built-in ones are" + names};
  }
  std::ifstream file(name);
  std::stringstream text;
  if (!file || !(text << file.rdbuf())) return Problem{"cannot read the scenario file " + name};
  auto parsed = Scenario::parse(text.str(), name);
  if (!parsed.scenario) return Problem{name + ": " + parsed.error};
  return *parsed.scenario;
}

Calendar localCalendar() {
  if (auto zone = TimeZone::load("/etc/localtime")) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

}  // namespace

const char* simulateUsage() {
  return usage;
}

int runSimulate(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                Confined confined) {
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
  std::filesystem::path directory;
  if (request.dataDir) {
    directory = *request.dataDir;
  } else if (auto found = FileDefaults::defaultDirectory()) {
    directory = *found;
  } else {
    err << "sodamjari simulate: no settings folder: set HOME or XDG_CONFIG_HOME, or give "
           "--data-dir\n";
    return 2;
  }
  std::unique_ptr<ProductRun> product;
  if (confined == Confined::yes) {
    product = std::make_unique<ProductRun>(directory);
    request.options.confinement = &product->confinement();
  }
  FileDefaults defaults(directory);
  const LinuxProcessInspector process;
  request.options.process = &process;
  request.options.sleep = [](double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  };
  const Calendar calendar = localCalendar();
  const Date day = Simulation::dayToSimulate(defaults, calendar, SystemClock().now());
  const auto date = calendar.components(day);
  out << "소담자리 시뮬레이션: " << request.scenario
      << format(" · %d년 %d월 %d일 · 기록: ", date.year, date.month, date.day) << directory.string()
      << "\n";
  Simulation simulation(
      std::get<Scenario>(std::move(loaded)), defaults, calendar, day,
      [&out](const std::string& line) { out << line << "\n"; }, request.options);
  if (product) product->host().connect();
  out << "보안: " << simulation.lock().summary() << "\n";
  const auto summary = simulation.run();
  for (const auto& line : summary.lines())
    out << line << "\n";
  if (product) out << product->host().nowLine() << "\n";
  out.flush();
  return 0;
}

}  // namespace sodam
