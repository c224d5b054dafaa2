#include "posture/posture_log.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include "platform/store.h"
#include "posture/posture_log_text.h"
#include "support/json.h"

namespace sodam {

namespace {

using nlohmann::json;

constexpr double secondsPerDay = 86'400;
constexpr double weightDays = 7;
constexpr std::array<std::string_view, 5> kindNames{"good", "alert", "corrected", "absent", "away"};

std::size_t indexOf(IssueKind kind) {
  return static_cast<std::size_t>(static_cast<IssueKind::Value>(kind));
}

std::optional<float> narrowed(double value) {
  if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max()) {
    return std::nullopt;
  }
  return static_cast<float>(value);
}

std::optional<float> narrowed(const std::optional<double>& value) {
  return value ? narrowed(*value) : std::nullopt;
}

// An optional float field: false only when it holds something unreadable.
bool optionalFloat(const json& object, const char* key, std::optional<float>& out) {
  std::optional<double> wide;
  if (!jsonOptional(object, key, wide)) return false;
  out = narrowed(wide);
  return out.has_value() == wide.has_value();
}

std::optional<std::vector<IssueKind>> issuesFrom(const json& value) {
  if (!value.is_array()) return std::nullopt;
  std::vector<IssueKind> issues;
  issues.reserve(value.size());
  for (const auto& element : value) {
    auto name = jsonAs<std::string>(element);
    auto kind = name ? IssueKind::fromRaw(*name) : std::nullopt;
    if (!kind) return std::nullopt;
    issues.push_back(*kind);
  }
  return issues;
}

// Decodes a stored list element by element, so one bad entry costs only
// itself, and hands each element over as soon as it is parsed: a month of
// entries as one JSON tree would take many times the memory of the records.
template <class T>
std::deque<T> decodeList(const std::optional<Bytes>& data,
                         std::optional<T> (*decode)(const json&)) {
  std::deque<T> list;
  if (!data) return list;
  bool first = true;
  bool isArray = false;
  auto each = [&](int depth, json::parse_event_t event, json& parsed) {
    if (first) {
      first = false;
      isArray = event == json::parse_event_t::array_start;
    }
    bool elementDone = event == json::parse_event_t::object_end ||
                       event == json::parse_event_t::array_end ||
                       event == json::parse_event_t::value;
    if (!isArray || depth != 1 || !elementDone) return true;
    if (auto item = decode(parsed)) list.push_back(std::move(*item));
    return false;
  };
  auto text = reinterpret_cast<const char*>(data->data());
  auto result = json::parse(text, text + data->size(), each, /*allow_exceptions=*/false);
  if (result.is_discarded() || !isArray) return {};
  return list;
}

}  // namespace

std::optional<Snapshot> Snapshot::of(const Metrics& metrics) {
  auto tilt = narrowed(metrics.headTilt);
  auto close = narrowed(metrics.closer);
  if (!tilt || !close) return std::nullopt;
  Snapshot snapshot;
  snapshot.forward = narrowed(metrics.headForward);
  snapshot.drop = narrowed(metrics.neckDrop);
  snapshot.nod = narrowed(metrics.flexion);
  snapshot.shoulder = narrowed(metrics.shoulderTilt);
  snapshot.tilt = *tilt;
  snapshot.lean = narrowed(metrics.lean);
  snapshot.close = *close;
  snapshot.dist = narrowed(metrics.viewDistance);
  return snapshot;
}

std::optional<Snapshot> Snapshot::fromJson(const json& object) {
  if (!object.is_object()) return std::nullopt;
  auto tilt = jsonRequired<double>(object, "tilt");
  auto close = jsonRequired<double>(object, "close");
  Snapshot snapshot;
  auto narrowTilt = tilt ? narrowed(*tilt) : std::nullopt;
  auto narrowClose = close ? narrowed(*close) : std::nullopt;
  if (!narrowTilt || !narrowClose) return std::nullopt;
  snapshot.tilt = *narrowTilt;
  snapshot.close = *narrowClose;
  bool read =
      optionalFloat(object, "forward", snapshot.forward) &&
      optionalFloat(object, "drop", snapshot.drop) && optionalFloat(object, "nod", snapshot.nod) &&
      optionalFloat(object, "shoulder", snapshot.shoulder) &&
      optionalFloat(object, "lean", snapshot.lean) && optionalFloat(object, "dist", snapshot.dist);
  if (!read) return std::nullopt;
  return snapshot;
}

std::string_view PostureEntry::raw(Kind kind) {
  return kindNames[static_cast<std::size_t>(kind)];
}

std::optional<PostureEntry::Kind> PostureEntry::kindFromRaw(std::string_view raw) {
  for (std::size_t i = 0; i < kindNames.size(); ++i) {
    if (kindNames[i] == raw) return static_cast<Kind>(i);
  }
  return std::nullopt;
}

std::optional<PostureEntry> PostureEntry::fromJson(const json& object) {
  auto t = jsonRequired<Date>(object, "t");
  auto name = jsonRequired<std::string>(object, "k");
  auto kind = name ? kindFromRaw(*name) : std::nullopt;
  auto issues = issuesFrom(jsonField(object, "i"));
  if (!t || !kind || !issues) return std::nullopt;
  PostureEntry entry{*t, *kind, std::move(*issues), std::nullopt};
  const json& snapshot = jsonField(object, "m");
  if (!snapshot.is_null()) {
    entry.m = Snapshot::fromJson(snapshot);
    if (!entry.m) return std::nullopt;
  }
  return entry;
}

std::optional<StretchEntry> StretchEntry::fromJson(const json& object) {
  auto t = jsonRequired<Date>(object, "t");
  auto seconds = jsonRequired<int>(object, "seconds");
  const json& ids = jsonField(object, "ids");
  if (!t || !seconds || !ids.is_array()) return std::nullopt;
  StretchEntry entry{*t, {}, *seconds, std::nullopt};
  for (const auto& id : ids) {
    auto text = jsonAs<std::string>(id);
    if (!text) return std::nullopt;
    entry.ids.push_back(std::move(*text));
  }
  if (!jsonOptional(object, "accuracy", entry.accuracy)) return std::nullopt;
  return entry;
}

json StretchEntry::toJson() const {
  json object = json::object();
  jsonPut(object, "t", t);
  object["ids"] = ids;
  jsonPut(object, "seconds", seconds);
  jsonPut(object, "accuracy", accuracy);
  return object;
}

std::optional<double> PostureLog::Day::ratio() const {
  if (checks == 0) return std::nullopt;
  return static_cast<double>(good) / checks;
}

PostureLog::PostureLog(Defaults& defaults, const Clock& clock, const Calendar& calendar)
    : defaults_(defaults),
      clock_(clock),
      calendar_(calendar),
      entries_(decodeList(defaults.data(StoreKey::postureLog).value, &PostureEntry::fromJson)),
      stretches_(decodeList(defaults.data(StoreKey::stretchLog).value, &StretchEntry::fromJson)),
      numbers_(std::make_unique<PostureLogText>()) {
  numbers_->rebuild(entries_);
}

PostureLog::~PostureLog() = default;

void PostureLog::record(PostureEntry::Kind kind, std::vector<IssueKind> issues,
                        const std::optional<Metrics>& metrics) {
  Date now = clock_.now();
  PostureEntry entry{now, kind, std::move(issues), metrics ? Snapshot::of(*metrics) : std::nullopt};
  numbers_->append(entry);
  entries_.push_back(std::move(entry));
  pruneEntries(now - keepSeconds);
  // Each save rewrites a whole list; the other list is written only when
  // pruning changed it.
  if (pruneStretches(now - keepSeconds)) saveStretches();
  saveEntries();
  changed();
}

void PostureLog::recordStretch(std::vector<std::string> ids, int seconds,
                               std::optional<double> accuracy) {
  Date now = clock_.now();
  // A number JSON can't hold would block every later save of the list.
  if (accuracy && !std::isfinite(*accuracy)) accuracy.reset();
  stretches_.push_back({now, std::move(ids), seconds, accuracy});
  pruneStretches(now - keepSeconds);
  if (pruneEntries(now - keepSeconds)) saveEntries();
  saveStretches();
  changed();
}

bool PostureLog::pruneEntries(Date cutoff) {
  auto old = [cutoff](const PostureEntry& entry) { return entry.t < cutoff; };
  auto firstKept = std::find_if_not(entries_.begin(), entries_.end(), old);
  auto leading = static_cast<std::size_t>(firstKept - entries_.begin());
  bool laterOld = std::any_of(firstKept, entries_.end(), old);
  if (leading == 0 && !laterOld) return false;
  if (!laterOld) {
    // The usual case: the oldest entries go from the front.
    numbers_->dropFront(entries_, leading);
    entries_.erase(entries_.begin(), firstKept);
    return true;
  }
  // The clock went back at some time: old entries lie between newer ones.
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(), old), entries_.end());
  numbers_->rebuild(entries_);
  return true;
}

bool PostureLog::pruneStretches(Date cutoff) {
  auto size = stretches_.size();
  stretches_.erase(std::remove_if(stretches_.begin(), stretches_.end(),
                                  [cutoff](const StretchEntry& entry) { return entry.t < cutoff; }),
                   stretches_.end());
  return stretches_.size() != size;
}

void PostureLog::saveEntries() {
  defaults_.setData(StoreKey::postureLog, numbers_->encode(entries_));
}

void PostureLog::saveStretches() {
  json list = json::array();
  for (const auto& entry : stretches_)
    list.push_back(entry.toJson());
  // A list that fails to encode is not saved; memory stays ahead until the
  // next write.
  if (auto bytes = encodeJsonData(list)) defaults_.setData(StoreKey::stretchLog, std::move(*bytes));
}

void PostureLog::changed() {
  onChange.notify();
}

PostureLog::DayRange PostureLog::rangeOf(Date date) const {
  Date start = calendar_.startOfDay(date);
  auto next = calendar_.addingDays(start, 1);
  return {start, next ? calendar_.startOfDay(*next) : start + secondsPerDay};
}

PostureLog::Day PostureLog::day(Date date) const {
  DayRange range = rangeOf(date);
  Day day{range.start};
  for (const auto& entry : entries_) {
    if (!entry.judged() || !range.contains(entry.t)) continue;
    ++day.checks;
    if (entry.k == PostureEntry::Kind::alert) ++day.alerts;
    if (entry.k == PostureEntry::Kind::good || entry.k == PostureEntry::Kind::corrected) {
      ++day.good;
    }
  }
  return day;
}

std::vector<PostureLog::Day> PostureLog::lastDays(int n) const {
  std::vector<DayRange> ranges;
  Date today = calendar_.startOfDay(clock_.now());
  for (int back = n - 1; back >= 0; --back) {
    ranges.push_back(rangeOf(calendar_.addingDays(today, -back).value_or(today)));
  }
  std::vector<Day> days;
  for (const auto& range : ranges)
    days.push_back(Day{range.start});
  if (ranges.empty()) return days;
  for (const auto& entry : entries_) {
    if (!entry.judged() || entry.t < ranges.front().start || !(entry.t < ranges.back().end)) {
      continue;
    }
    auto after = std::upper_bound(ranges.begin(), ranges.end(), entry.t,
                                  [](Date t, const DayRange& range) { return t < range.start; });
    Day& day = days[static_cast<std::size_t>(after - ranges.begin() - 1)];
    ++day.checks;
    if (entry.k == PostureEntry::Kind::alert) ++day.alerts;
    if (entry.k == PostureEntry::Kind::good || entry.k == PostureEntry::Kind::corrected) {
      ++day.good;
    }
  }
  return days;
}

std::vector<PostureLog::IssueCount> PostureLog::issueCounts(int days) const {
  Date now = clock_.now();
  double window = days * secondsPerDay;
  std::array<int, IssueKind::count> counts{};
  for (const auto& entry : entries_) {
    if (entry.k != PostureEntry::Kind::alert || !(now - entry.t < window)) continue;
    for (IssueKind kind : entry.i)
      ++counts[indexOf(kind)];
  }
  std::vector<IssueCount> result;
  for (IssueKind kind : IssueKind::all()) {
    int count = counts[indexOf(kind)];
    if (count > 0) result.push_back({kind, count});
  }
  std::stable_sort(result.begin(), result.end(),
                   [](const IssueCount& a, const IssueCount& b) { return a.count > b.count; });
  return result;
}

std::vector<PostureLog::Hour> PostureLog::hourly(Date date) const {
  std::vector<Hour> hours(24);
  for (int h = 0; h < 24; ++h)
    hours[static_cast<std::size_t>(h)].hour = h;
  DayRange range = rangeOf(date);
  for (const auto& entry : entries_) {
    if (!entry.judged() || !range.contains(entry.t)) continue;
    Hour& hour = hours[static_cast<std::size_t>(std::clamp(calendar_.hour(entry.t), 0, 23))];
    if (entry.k == PostureEntry::Kind::alert) {
      ++hour.bad;
    } else {
      ++hour.good;
    }
  }
  return hours;
}

int PostureLog::stretchesToday() const {
  DayRange today = rangeOf(clock_.now());
  return static_cast<int>(
      std::count_if(stretches_.begin(), stretches_.end(),
                    [&](const StretchEntry& e) { return today.contains(e.t); }));
}

int PostureLog::alertsLastHour() const {
  Date now = clock_.now();
  return static_cast<int>(std::count_if(entries_.begin(), entries_.end(), [now](const auto& e) {
    return e.k == PostureEntry::Kind::alert && now - e.t < 3600;
  }));
}

std::map<IssueKind, double> PostureLog::issueWeights() const {
  std::map<IssueKind, double> weights;
  auto counts = issueCounts(static_cast<int>(weightDays));
  if (counts.empty()) return weights;
  double most = counts.front().count;
  for (const auto& [kind, count] : counts)
    weights.emplace(kind, count / most);
  return weights;
}

}  // namespace sodam
