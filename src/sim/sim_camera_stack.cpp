#include "sim/sim_camera_stack.h"

#include "camerawatch/camera_findings.h"
#include "camerawatch/log_entry.h"

namespace sodam {

namespace {
// What the program calls itself on the menu bar's indicator.
constexpr const char* ownName = "소담자리";
}  // namespace

// The pipe to the in-process helper: a command is answered at once, and the
// answer reaches the link on the scheduler's next turn, as a pipe's would.
class SimCameraStack::Channel final : public HelperChannel {
 public:
  explicit Channel(SimCameraStack& stack) : stack_(&stack) { stack_->channel_ = this; }
  ~Channel() override {
    if (stack_) stack_->channel_ = nullptr;
  }

  bool write(std::string_view bytes) override {
    if (!stack_) return false;
    auto line = bytes;
    if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
    stack_->helper_.answer(line);
    stack_->deliver();
    return true;
  }
  void startReading(ChunkHandler onChunk) override { onChunk_ = std::move(onChunk); }
  void stopReading() override { onChunk_ = nullptr; }
  void hand(std::string bytes) {
    if (onChunk_ && !bytes.empty()) onChunk_(std::move(bytes));
  }
  void forget() { stack_ = nullptr; }

 private:
  SimCameraStack* stack_;
  ChunkHandler onChunk_;
};

SimCameraStack::SimCameraStack(const SimCamera& camera, const Clock& clock)
    : camera_(camera), clock_(clock) {}

SimCameraStack::~SimCameraStack() {
  if (channel_) channel_->forget();
}

std::unique_ptr<LogLink> SimCameraStack::link(Scheduler& scheduler) {
  return std::make_unique<LogLink>(std::make_unique<Channel>(*this), scheduler);
}

void SimCameraStack::deliver() {
  std::string bytes = written_.str();
  written_.str("");
  if (channel_) channel_->hand(std::move(bytes));
}

void SimCameraStack::otherStarts(const std::string& nameOrPath) {
  Program program;
  const bool isPath = nameOrPath.find('/') != std::string::npos;
  program.name = isPath ? lastPathComponent(nameOrPath) : nameOrPath;
  program.path =
      isPath ? nameOrPath : "/Applications/" + nameOrPath + ".app/Contents/MacOS/" + nameOrPath;
  program.identifier = "sim." + program.name;
  program.pid = nextPid_++;
  program.since = clock_.now().unixSeconds();
  other_ = program;
  opened_.push_back(program);
  poll();
}

void SimCameraStack::otherStops() {
  other_.reset();
  poll();
}

bool SimCameraStack::deviceRunning() const {
  return camera_.running() || other_.has_value();
}

std::vector<CameraUser> SimCameraStack::users() const {
  std::vector<CameraUser> users;
  if (other_) users.push_back({other_->name, other_->identifier});
  if (camera_.running()) users.push_back({ownName, std::string(LogHelper::ownIdentifier)});
  return users;
}

void SimCameraStack::poll() {
  if (deviceRunning() != lastRunning_) {
    lastRunning_ = !lastRunning_;
    const auto listeners = listeners_;
    for (const auto& listener : listeners)
      listener();
  }
  auto now = users();
  if (now == lastUsers_) return;
  lastUsers_ = now;
  changes_.push_back({clock_.now().unixSeconds(), std::move(now)});
  if (stream_) {
    stream_(changes_.back());
    deliver();
  }
}

std::optional<bool> SimCameraStack::running(DeviceId device) {
  if (device != builtIn) return std::nullopt;
  return deviceRunning();
}

void SimCameraStack::onRunningChange(DeviceId device, std::function<void()> listener) {
  if (device == builtIn) listeners_.push_back(std::move(listener));
}

std::vector<CameraRecord> SimCameraStack::clients(double from, double to) {
  std::vector<LogEntry> entries;
  for (const auto& run : opened_) {
    if (run.since >= from && run.since <= to)
      entries.push_back({run.since, run.pid, run.path, run.name, "CMIO_DAL_System.cpp: start"});
  }
  return clientRecords(entries, HelperSelf{0, {}, macSystemFolders()});
}

// Each run of another program asked the permission daemon first, and the
// user had allowed it.
std::vector<CameraRecord> SimCameraStack::requests(double from, double to) {
  std::vector<CameraRecord> records;
  for (const auto& run : opened_) {
    if (run.since < from || run.since > to) continue;
    CameraRecord record;
    record.time = run.since;
    record.key =
        "sim." + std::to_string(run.pid) + "@" + std::to_string(static_cast<long long>(run.since));
    record.identifier = run.identifier;
    record.path = run.path;
    record.pid = run.pid;
    record.allowed = true;
    records.push_back(std::move(record));
  }
  return records;
}

std::optional<IndicatorUpdate> SimCameraStack::indicator(double from, double to) {
  for (auto it = changes_.rbegin(); it != changes_.rend(); ++it) {
    if (it->time >= from && it->time <= to) return *it;
  }
  return std::nullopt;
}

void SimCameraStack::startStream(StreamHandler handler) {
  if (!stream_) stream_ = std::move(handler);
}

std::string SimCameraStack::applicationPath(const std::string& identifier) {
  for (const auto& run : opened_) {
    if (run.identifier == identifier) return run.path;
  }
  return {};
}

}  // namespace sodam
