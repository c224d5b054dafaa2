#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "platform/alert_style.h"
#include "platform/check_mode.h"
#include "platform/defaults.h"
#include "platform/sensitivity.h"
#include "support/calendar.h"
#include "support/clock.h"

namespace sodam {

// Every key on the shared defaults, the store's own and those of the
// components that keep their records there themselves.
namespace StoreKey {
// Settings read and written through Store.
inline constexpr std::string_view enabled = "enabled";
inline constexpr std::string_view sensitivity = "sensitivity";
inline constexpr std::string_view alertStyle = "alertStyle";
inline constexpr std::string_view checkMode = "checkMode";
inline constexpr std::string_view pauseOnBattery = "pauseOnBattery";
inline constexpr std::string_view sittingNudge = "sittingNudge";
inline constexpr std::string_view wrapUp = "wrapUp";
inline constexpr std::string_view workEndMinutes = "workEndMinutes";
inline constexpr std::string_view peekEyes = "peekEyes";
inline constexpr std::string_view buddyOften = "buddyOften";
inline constexpr std::string_view followFace = "followFace";
inline constexpr std::string_view pillEars = "pillEars";
inline constexpr std::string_view pillTrim = "pillTrim";
inline constexpr std::string_view pillBody = "pillBody";
inline constexpr std::string_view pillEyes = "pillEyes";
inline constexpr std::string_view pillFace = "pillFace";
inline constexpr std::string_view pillPattern = "pillPattern";
inline constexpr std::string_view doraniSeenLevel = "doraniSeenLevel";
inline constexpr std::string_view doraniCelebrated = "doraniCelebrated";
inline constexpr std::string_view guideDone = "guideDone";
inline constexpr std::string_view deskHintSeen = "deskHintSeen";
inline constexpr std::string_view hideCameraFromCapture = "hideCameraFromCapture";
inline constexpr std::string_view shareStatus = "shareStatus";
inline constexpr std::string_view sharePlace = "sharePlace";
inline constexpr std::string_view notifyCamera = "notifyCamera";
inline constexpr std::string_view baseline = "baseline";
inline constexpr std::string_view watchEvents = "watchEvents";
inline constexpr std::string_view seenKeys = "watchSeenKeys";
inline constexpr std::string_view lastSweep = "watchLastSweep";
inline constexpr std::string_view watchSeenAt = "watchSeenAt";

// Records kept by their own components on the same defaults.
inline constexpr std::string_view doraniDays = "doraniDays";      // dictionary String→Int
inline constexpr std::string_view focusPresets = "focusPresets";  // JSON data
inline constexpr std::string_view focusActive = "focusActive";    // string, a UUID
inline constexpr std::string_view focusRecords = "focusRecords";  // JSON data
inline constexpr std::string_view mateLook = "mateLook";          // JSON data
inline constexpr std::string_view places = "places";              // JSON data
inline constexpr std::string_view placeCurrent = "placeCurrent";  // string, a UUID
inline constexpr std::string_view deskSetup = "deskSetup";        // JSON data
// The desk of one place: this prefix, then the place's UUID string.
inline constexpr std::string_view deskSetupPrefix = "deskSetup.";
inline constexpr std::string_view postureLog = "postureLog";    // JSON data
inline constexpr std::string_view stretchLog = "stretchLog";    // JSON data
inline constexpr std::string_view workDays = "workDays";        // JSON data
inline constexpr std::string_view workWrapped = "workWrapped";  // date
inline constexpr std::string_view setupMode = "setupMode";      // integer

std::string deskSetupOf(std::string_view placeId);
}  // namespace StoreKey

// The user's plain settings over the shared defaults. It keeps no copy: every
// read goes to the defaults, so a value a settings view wrote is seen at the
// next read. An unset or unreadable value reads as the setting's default; a
// value that cannot be encoded clears its key.
class Store {
 public:
  // The clock and calendar place `workEnd` on today.
  Store(Defaults& defaults, const Clock& clock, const Calendar& calendar)
      : defaults_(defaults), clock_(clock), calendar_(calendar) {}

  bool enabled() const;
  void setEnabled(bool value);
  Sensitivity sensitivity() const;
  void setSensitivity(Sensitivity value);
  AlertStyle alertStyle() const;
  void setAlertStyle(AlertStyle value);
  CheckMode checkMode() const;
  void setCheckMode(CheckMode value);
  bool pauseOnBattery() const;
  void setPauseOnBattery(bool value);
  bool sittingNudge() const;
  void setSittingNudge(bool value);
  bool wrapUp() const;
  void setWrapUp(bool value);
  // Minutes after midnight.
  int workEndMinutes() const;
  void setWorkEndMinutes(int value);
  bool peekEyes() const;
  void setPeekEyes(bool value);
  bool buddyOften() const;
  void setBuddyOften(bool value);
  bool followFace() const;
  void setFollowFace(bool value);

  // The companion's looks as raw values of their enumerations, which know
  // their own number of cases: a value outside 0..<caseCount reads as 0.
  int pillEars(int caseCount) const;
  void setPillEars(int raw);
  int pillTrim(int caseCount) const;
  void setPillTrim(int raw);
  int pillBody(int caseCount) const;
  void setPillBody(int raw);
  int pillEyes(int caseCount) const;
  void setPillEyes(int raw);
  int pillFace(int caseCount) const;
  void setPillFace(int raw);
  int pillPattern(int caseCount) const;
  void setPillPattern(int raw);

  int doraniSeenLevel() const;
  void setDoraniSeenLevel(int value);
  int doraniCelebrated() const;
  void setDoraniCelebrated(int value);
  bool guideDone() const;
  void setGuideDone(bool value);
  bool deskHintSeen() const;
  void setDeskHintSeen(bool value);
  bool hideCameraFromCapture() const;
  void setHideCameraFromCapture(bool value);
  bool shareStatus() const;
  void setShareStatus(bool value);
  bool sharePlace() const;
  void setSharePlace(bool value);
  bool notifyCamera() const;
  void setNotifyCamera(bool value);

  // The camera-use records as a JSON array whose elements the camera watch
  // codes itself; empty when absent or unreadable. Anything but an array, or
  // an array JSON cannot hold, clears the key.
  nlohmann::json watchEvents() const;
  void setWatchEvents(const nlohmann::json& events);
  std::vector<std::string> seenKeys() const;
  void setSeenKeys(std::vector<std::string> value);
  std::optional<Date> lastSweep() const;
  void setLastSweep(std::optional<Date> value);
  Date watchSeenAt() const;
  void setWatchSeenAt(Date value);

  // Today at workEndMinutes, second 0, in the calendar; nothing when the
  // calendar cannot make that time.
  std::optional<Date> workEnd() const;

 private:
  bool flagOff(std::string_view key) const;
  bool flag(std::string_view key, bool fallback) const;
  int number(std::string_view key, int fallback) const;
  int integerValue(std::string_view key) const;
  int look(std::string_view key, int caseCount) const;

  Defaults& defaults_;
  const Clock& clock_;
  const Calendar& calendar_;
};

}  // namespace sodam
