#include "platform/store.h"

#include <cmath>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

namespace sodam {

namespace {

constexpr int defaultWorkEndMinutes = 18 * 60 + 30;

std::optional<int> asInt(std::int64_t value) {
  if (!std::in_range<int>(value)) return std::nullopt;
  return static_cast<int>(value);
}

}  // namespace

std::string StoreKey::deskSetupOf(std::string_view placeId) {
  return std::string(deskSetupPrefix) + std::string(placeId);
}

// The four ways a setting is read. Which one a setting uses decides what an
// unset or damaged value gives, so each getter names its way.

bool Store::flagOff(std::string_view key) const {
  // Off unless a boolean true is stored.
  return defaults_.boolean(key).valueOr(false);
}

bool Store::flag(std::string_view key, bool fallback) const {
  // Taken only when a boolean is stored: anything else is the default.
  return defaults_.boolean(key).valueOr(fallback);
}

int Store::number(std::string_view key, int fallback) const {
  // Taken only when an integer is stored, else the default.
  auto value = defaults_.integer(key).value;
  if (!value) return fallback;
  return asInt(*value).value_or(fallback);
}

int Store::integerValue(std::string_view key) const {
  // What an integer read of the platform gives: 0 when unset, a double cut
  // to its whole part, a boolean as 0 or 1.
  auto stored = defaults_.object(key);
  if (!stored) return 0;
  if (auto* whole = std::get_if<std::int64_t>(&*stored)) return asInt(*whole).value_or(0);
  if (auto* real = std::get_if<double>(&*stored)) {
    if (!std::isfinite(*real) || std::abs(*real) > std::numeric_limits<int>::max()) return 0;
    return static_cast<int>(*real);
  }
  if (auto* boolean = std::get_if<bool>(&*stored)) return *boolean ? 1 : 0;
  return 0;
}

int Store::look(std::string_view key, int caseCount) const {
  int raw = integerValue(key);
  return raw >= 0 && raw < caseCount ? raw : 0;
}

bool Store::enabled() const {
  return flag(StoreKey::enabled, true);
}
void Store::setEnabled(bool value) {
  defaults_.setBool(StoreKey::enabled, value);
}

Sensitivity Store::sensitivity() const {
  return Sensitivity::fromRaw(number(StoreKey::sensitivity, Sensitivity::normal))
      .value_or(Sensitivity::normal);
}
void Store::setSensitivity(Sensitivity value) {
  defaults_.setInteger(StoreKey::sensitivity, value.raw());
}

AlertStyle Store::alertStyle() const {
  return AlertStyle::fromRaw(integerValue(StoreKey::alertStyle)).value_or(AlertStyle::border);
}
void Store::setAlertStyle(AlertStyle value) {
  defaults_.setInteger(StoreKey::alertStyle, value.raw());
}

CheckMode Store::checkMode() const {
  return CheckMode::fromRaw(integerValue(StoreKey::checkMode)).value_or(CheckMode::interval);
}
void Store::setCheckMode(CheckMode value) {
  defaults_.setInteger(StoreKey::checkMode, value.raw());
}

bool Store::pauseOnBattery() const {
  return flagOff(StoreKey::pauseOnBattery);
}
void Store::setPauseOnBattery(bool value) {
  defaults_.setBool(StoreKey::pauseOnBattery, value);
}

bool Store::sittingNudge() const {
  return flag(StoreKey::sittingNudge, true);
}
void Store::setSittingNudge(bool value) {
  defaults_.setBool(StoreKey::sittingNudge, value);
}

bool Store::wrapUp() const {
  return flag(StoreKey::wrapUp, true);
}
void Store::setWrapUp(bool value) {
  defaults_.setBool(StoreKey::wrapUp, value);
}

int Store::workEndMinutes() const {
  return number(StoreKey::workEndMinutes, defaultWorkEndMinutes);
}
void Store::setWorkEndMinutes(int value) {
  defaults_.setInteger(StoreKey::workEndMinutes, value);
}

bool Store::peekEyes() const {
  return flag(StoreKey::peekEyes, true);
}
void Store::setPeekEyes(bool value) {
  defaults_.setBool(StoreKey::peekEyes, value);
}

bool Store::buddyOften() const {
  return flagOff(StoreKey::buddyOften);
}
void Store::setBuddyOften(bool value) {
  defaults_.setBool(StoreKey::buddyOften, value);
}

bool Store::followFace() const {
  return flag(StoreKey::followFace, true);
}
void Store::setFollowFace(bool value) {
  defaults_.setBool(StoreKey::followFace, value);
}

int Store::pillEars(int caseCount) const {
  // The ears are read like the sensitivity: only an integer counts.
  int raw = number(StoreKey::pillEars, 0);
  return raw >= 0 && raw < caseCount ? raw : 0;
}
void Store::setPillEars(int raw) {
  defaults_.setInteger(StoreKey::pillEars, raw);
}
int Store::pillTrim(int caseCount) const {
  return look(StoreKey::pillTrim, caseCount);
}
void Store::setPillTrim(int raw) {
  defaults_.setInteger(StoreKey::pillTrim, raw);
}
int Store::pillBody(int caseCount) const {
  return look(StoreKey::pillBody, caseCount);
}
void Store::setPillBody(int raw) {
  defaults_.setInteger(StoreKey::pillBody, raw);
}
int Store::pillEyes(int caseCount) const {
  return look(StoreKey::pillEyes, caseCount);
}
void Store::setPillEyes(int raw) {
  defaults_.setInteger(StoreKey::pillEyes, raw);
}
int Store::pillFace(int caseCount) const {
  return look(StoreKey::pillFace, caseCount);
}
void Store::setPillFace(int raw) {
  defaults_.setInteger(StoreKey::pillFace, raw);
}
int Store::pillPattern(int caseCount) const {
  return look(StoreKey::pillPattern, caseCount);
}
void Store::setPillPattern(int raw) {
  defaults_.setInteger(StoreKey::pillPattern, raw);
}

int Store::doraniSeenLevel() const {
  return integerValue(StoreKey::doraniSeenLevel);
}
void Store::setDoraniSeenLevel(int value) {
  defaults_.setInteger(StoreKey::doraniSeenLevel, value);
}
int Store::doraniCelebrated() const {
  return integerValue(StoreKey::doraniCelebrated);
}
void Store::setDoraniCelebrated(int value) {
  defaults_.setInteger(StoreKey::doraniCelebrated, value);
}

bool Store::guideDone() const {
  return flagOff(StoreKey::guideDone);
}
void Store::setGuideDone(bool value) {
  defaults_.setBool(StoreKey::guideDone, value);
}
bool Store::deskHintSeen() const {
  return flagOff(StoreKey::deskHintSeen);
}
void Store::setDeskHintSeen(bool value) {
  defaults_.setBool(StoreKey::deskHintSeen, value);
}
bool Store::hideCameraFromCapture() const {
  return flag(StoreKey::hideCameraFromCapture, true);
}
void Store::setHideCameraFromCapture(bool value) {
  defaults_.setBool(StoreKey::hideCameraFromCapture, value);
}
bool Store::shareStatus() const {
  return flag(StoreKey::shareStatus, true);
}
void Store::setShareStatus(bool value) {
  defaults_.setBool(StoreKey::shareStatus, value);
}
bool Store::sharePlace() const {
  return flag(StoreKey::sharePlace, true);
}
void Store::setSharePlace(bool value) {
  defaults_.setBool(StoreKey::sharePlace, value);
}
bool Store::notifyCamera() const {
  return flag(StoreKey::notifyCamera, true);
}
void Store::setNotifyCamera(bool value) {
  defaults_.setBool(StoreKey::notifyCamera, value);
}

nlohmann::json Store::watchEvents() const {
  auto json = defaults_.jsonData(StoreKey::watchEvents);
  if (!json || !json->is_array()) return nlohmann::json::array();
  return std::move(*json);
}

void Store::setWatchEvents(const nlohmann::json& events) {
  if (!events.is_array()) {
    defaults_.remove(StoreKey::watchEvents);
    return;
  }
  defaults_.setJsonData(StoreKey::watchEvents, events);
}

std::vector<std::string> Store::seenKeys() const {
  return defaults_.strings(StoreKey::seenKeys).valueOr({});
}
void Store::setSeenKeys(std::vector<std::string> value) {
  defaults_.setStrings(StoreKey::seenKeys, std::move(value));
}

std::optional<Date> Store::lastSweep() const {
  return defaults_.date(StoreKey::lastSweep).value;
}
void Store::setLastSweep(std::optional<Date> value) {
  if (value) {
    defaults_.setDate(StoreKey::lastSweep, *value);
  } else {
    defaults_.remove(StoreKey::lastSweep);
  }
}

Date Store::watchSeenAt() const {
  return defaults_.date(StoreKey::watchSeenAt).valueOr(Date::distantPast());
}
void Store::setWatchSeenAt(Date value) {
  defaults_.setDate(StoreKey::watchSeenAt, value);
}

std::optional<Date> Store::workEnd() const {
  int minutes = workEndMinutes();
  if (minutes < 0) return std::nullopt;
  DateComponents today = calendar_.components(clock_.now());
  today.hour = minutes / 60;
  today.minute = minutes % 60;
  today.second = 0;
  return calendar_.date(today);
}

}  // namespace sodam
