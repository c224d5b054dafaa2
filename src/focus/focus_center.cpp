#include "focus/focus_center.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "platform/store.h"
#include "support/uuid.h"

namespace sodam {

namespace {

template <class Record>
std::vector<Record> storedList(const Defaults& defaults, std::string_view key) {
  std::vector<Record> list;
  const auto stored = defaults.jsonData(key);
  if (!stored || !stored->is_array()) return list;
  for (const auto& element : *stored) {
    if (auto record = Record::fromJson(element)) list.push_back(std::move(*record));
  }
  return list;
}

template <class Record>
nlohmann::json jsonList(const std::vector<Record>& list) {
  nlohmann::json array = nlohmann::json::array();
  for (const auto& record : list)
    array.push_back(record.toJson());
  return array;
}

}  // namespace

FocusCenter::FocusCenter(Defaults& defaults, const Clock& clock, const Calendar& calendar)
    : defaults_(defaults),
      clock_(clock),
      calendar_(calendar),
      presets_(storedList<FocusPreset>(defaults, StoreKey::focusPresets)),
      activeID_(defaults.string(StoreKey::focusActive).valueOr("")),
      records_(storedList<FocusRecord>(defaults, StoreKey::focusRecords)) {
  if (presets_.empty()) presets_ = FocusPreset::defaults();
}

const FocusPreset& FocusCenter::active() const {
  if (const FocusPreset* found = preset(activeID_)) return *found;
  return presets_.front();
}

const FocusPreset* FocusCenter::preset(const std::string& id) const {
  for (const auto& p : presets_) {
    if (p.id == id) return &p;
  }
  return nullptr;
}

void FocusCenter::activate(const FocusPreset& preset) {
  stop();
  const FocusPreset old = active();
  activeID_ = preset.id;
  defaults_.setString(StoreKey::focusActive, activeID_);
  notifyChange(old);
}

// Saving the active preset is a change of what it watches, which the
// application follows like a change of preset.
void FocusCenter::save(FocusPreset preset) {
  const FocusPreset old = active();
  auto same = std::find_if(presets_.begin(), presets_.end(),
                           [&](const FocusPreset& p) { return p.id == preset.id; });
  if (same != presets_.end()) {
    *same = std::move(preset);
  } else {
    presets_.push_back(std::move(preset));
  }
  storePresets();
  if (active().id == old.id && !(active() == old)) {
    notifyChange(old);
  } else {
    onUpdate.notify();
  }
}

void FocusCenter::notifyChange(const FocusPreset& old) {
  const FocusPreset now = active();
  if (onChange) onChange(old, now);
  onUpdate.notify();
}

void FocusCenter::tick(MateState state, bool present) {
  const Date now = clock_.now();
  if (!session_) {
    if (!present) return;
    session_ = Session{now, 0, {}, now, now, state, false, false};
  }
  Session& s = *session_;
  const double counted = std::clamp(now - s.lastTick, 0.0, tickCapSeconds);
  s.lastTick = now;
  if (present) {
    s.focused += counted;
    s.lastPresent = now;
    s.away = false;
  } else {
    s.away = true;
    if (now - s.lastPresent >= breakGapSeconds) {
      stop();
      return;
    }
  }
  const int goal = active().goal;
  if (goal > 0 && !s.goalSaid && s.focused / 60 >= goal) {
    s.goalSaid = true;
    if (onGoal) onGoal(goal);
  }
  s.state = state;
  onUpdate.notify();
}

void FocusCenter::count(WatchHabit habit) {
  if (!session_) return;
  ++session_->habits[std::string(habit.raw())];
  onUpdate.notify();
}

void FocusCenter::stop() {
  if (!session_) return;
  const Session ended = std::move(*session_);
  session_.reset();
  const Date now = clock_.now();
  if (ended.focused >= shortestSeconds) {
    const FocusPreset& preset = active();
    records_.push_back(FocusRecord{newUuid(), ended.start, now, ended.focused, preset.name,
                                   preset.mode, ended.habits});
  }
  std::erase_if(records_, [&](const FocusRecord& r) { return now - r.start > keepSeconds; });
  storeRecords();
  onUpdate.notify();
}

bool FocusCenter::sessionOn(Date day) const {
  return session_ && calendar_.isSameDay(session_->start, day);
}

double FocusCenter::minutes(Date day) const {
  double seconds = sessionOn(day) ? session_->focused : 0;
  for (const auto& record : records_) {
    if (calendar_.isSameDay(record.start, day)) seconds += record.focused;
  }
  return seconds / 60;
}

std::vector<FocusRecord> FocusCenter::records(Date day) const {
  std::vector<FocusRecord> found;
  for (const auto& record : records_) {
    if (calendar_.isSameDay(record.start, day)) found.push_back(record);
  }
  return found;
}

int FocusCenter::habitCount(WatchHabit habit, Date day) const {
  const std::string raw(habit.raw());
  auto countIn = [&](const std::map<std::string, int>& habits) {
    const auto found = habits.find(raw);
    return found == habits.end() ? 0 : found->second;
  };
  int total = sessionOn(day) ? countIn(session_->habits) : 0;
  for (const auto& record : records_) {
    if (calendar_.isSameDay(record.start, day)) total += countIn(record.habits);
  }
  return total;
}

void FocusCenter::storePresets() {
  defaults_.setJsonData(StoreKey::focusPresets, jsonList(presets_));
}

void FocusCenter::storeRecords() {
  defaults_.setJsonData(StoreKey::focusRecords, jsonList(records_));
}

}  // namespace sodam
