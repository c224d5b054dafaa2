#include "camerawatch/camera_findings.h"

#include <cmath>
#include <map>
#include <set>

#include "camerawatch/log_helper.h"
#include "camerawatch/log_messages.h"
#include "support/json.h"
#include "support/text.h"

namespace sodam {

namespace {

// "{id}@{seconds}", the seconds cut to a whole number.
std::string recordKey(const std::string& id, double time) {
  const double whole = std::trunc(time);
  if (!std::isfinite(whole) || std::fabs(whole) > 1e18) return id + "@0";
  return id + format("@%lld", static_cast<long long>(whole));
}

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

bool isSystemProgram(const std::string& path, const HelperSelf& self) {
  for (const auto& folder : self.systemFolders) {
    if (startsWith(path, folder)) return true;
  }
  return false;
}

// The three tables one request's messages are sorted into, by message id.
struct Requests {
  struct Context {
    double time = 0;
    bool preflight = false;
  };
  struct Parties {
    LogParty app;
    std::optional<LogParty> actor;
  };
  std::vector<std::string> order;  // message ids in the order their context first came
  std::map<std::string, Context> contexts;
  std::map<std::string, Parties> parties;
  std::map<std::string, bool> results;

  void read(const LogEntry& entry) {
    const auto id = messageId(entry.message);
    if (!id) return;
    const std::string_view message = entry.message;
    if (startsWith(message, "AUTHREQ_CTX")) {
      if (message.find("service=kTCCServiceCamera,") == std::string_view::npos) return;
      if (!contexts.contains(*id)) order.push_back(*id);
      contexts[*id] = {entry.time, message.find("preflight=yes") != std::string_view::npos};
    } else if (startsWith(message, "AUTHREQ_RESULT")) {
      if (const auto answer = authAnswer(message)) results[*id] = *answer;
    } else if (startsWith(message, "AUTHREQ_ATTRIBUTION")) {
      if (parties.contains(*id)) return;
      auto accessing = logParty(message, "accessing");
      if (!accessing) accessing = logParty(message, "requesting");
      auto responsible = logParty(message, "responsible");
      if (!accessing && !responsible) return;
      parties[*id] = {responsible ? *responsible : *accessing, accessing};
    }
  }
};

bool isOwnRequest(const Requests::Parties& parties, const HelperSelf& self) {
  const LogParty& app = parties.app;
  return app.identifier == LogHelper::ownIdentifier || app.pid == self.parentPid ||
         (parties.actor && parties.actor->pid == self.parentPid) ||
         (!self.ownPath.empty() && app.path == self.ownPath);
}

}  // namespace

std::vector<std::string> macSystemFolders() {
  return {"/System/Library/", "/usr/", "/Library/Apple/"};
}

std::vector<CameraRecord> clientRecords(const std::vector<LogEntry>& entries,
                                        const HelperSelf& self) {
  std::vector<CameraRecord> records;
  std::set<std::int64_t> seen;
  for (const auto& entry : entries) {
    if (entry.pid == self.parentPid) continue;
    if (entry.path.empty() || entry.path == self.ownPath) continue;
    if (isSystemProgram(entry.path, self)) continue;
    if (!seen.insert(entry.pid).second) continue;
    CameraRecord record;
    record.client = true;
    record.time = entry.time;
    record.key = recordKey(format("c%lld", static_cast<long long>(entry.pid)), entry.time);
    record.identifier = entry.process;
    record.path = entry.path;
    record.pid = entry.pid;
    records.push_back(std::move(record));
  }
  return records;
}

std::vector<CameraRecord> privacyRecords(const std::vector<LogEntry>& entries,
                                         const HelperSelf& self) {
  Requests requests;
  for (const auto& entry : entries)
    requests.read(entry);
  std::vector<CameraRecord> records;
  for (const auto& id : requests.order) {
    const auto parties = requests.parties.find(id);
    if (parties == requests.parties.end() || isOwnRequest(parties->second, self)) continue;
    const auto& context = requests.contexts.at(id);
    const LogParty& app = parties->second.app;
    const auto& actor = parties->second.actor;
    CameraRecord record;
    record.time = context.time;
    record.preflight = context.preflight;
    record.key = recordKey(id, context.time);
    record.identifier = app.identifier;
    record.path = app.path;
    record.pid = app.pid;
    if (actor && actor->path != app.path) record.actor = actor->path;
    if (const auto result = requests.results.find(id); result != requests.results.end())
      record.allowed = result->second;
    records.push_back(std::move(record));
  }
  return records;
}

std::optional<IndicatorUpdate> lastIndicator(const std::vector<LogEntry>& entries) {
  if (entries.empty()) return std::nullopt;
  return IndicatorUpdate{entries.back().time, cams(entries.back().message)};
}

std::optional<IndicatorUpdate> streamedIndicator(std::string_view line, double now) {
  const auto parsed = parseJson(line);
  if (!parsed || !parsed->is_object()) return std::nullopt;
  const auto message = jsonRequired<std::string>(*parsed, "eventMessage");
  if (!message) return std::nullopt;
  return IndicatorUpdate{now, cams(*message)};
}

}  // namespace sodam
