#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/panel_page.h"
#include "platform/capture_shield.h"
#include "platform/store.h"
#include "posture/monitor.h"

namespace sodam {

// One user setting as the settings page and the command line show it. The
// value is a whole number: 0 or 1 for a switch, the raw value of a choice,
// minutes after midnight for a time of day.
struct SettingRow {
  enum class Kind { toggle, choice, timeOfDay };
  struct Choice {
    int value;
    std::string_view name;   // for the command line: "on", "live"
    std::string_view title;  // for the page: "켬", "실시간"
  };

  static constexpr int lastMinuteOfDay = 24 * 60 - 1;

  std::string_view key;  // the settings store's key
  std::string_view title;
  Kind kind = Kind::toggle;
  // Switches: off and on; choices: every case. Empty for a time of day.
  std::vector<Choice> choices;
  // The page that shows the row, and its heading there.
  PanelPage page = PanelPage::settings;
  std::string_view section;
  int value = 0;  // the stored value now

  bool allows(int candidate) const;
  // The command line's form of a value ("on", "live", "18:30"); nothing for
  // text that is not one of the row's values.
  std::optional<int> parse(std::string_view text) const;
  std::string name(int of) const;
  std::string valueName() const { return name(value); }
  // The page's words for the value now: "켬", "실시간", "오후 6:30".
  std::string valueTitle() const;
  // What the row takes: "on|off", "interval|live", "00:00-23:59".
  std::string allowedText() const;
};

struct SettingsSection {
  std::string_view title;
  std::vector<SettingRow> rows;
};

// Who follows a change at once; a missing one is a part the program does
// not run (the command line runs none).
struct SettingFollowers {
  // The posture checks: switched on and off, their strictness, their rhythm.
  Monitor* monitor = nullptr;
  // The windows that show the camera, when hiding them from capture changes.
  CaptureShield* shield = nullptr;
  // Everything that draws from the settings, such as the status item.
  std::function<void()> refresh;
};

// The settings page: every user setting of the settings store with its
// allowed values and its value now, the privacy lock's line, and the one
// way the page changes a setting. A change is stored at once, and the
// components that must react to it are told at once. Main thread only.
class SettingsPage {
 public:
  SettingsPage(Store& store, std::string lockdownLine, SettingFollowers followers = {});

  // Every user setting, those of the companion's page too.
  std::vector<SettingRow> rows() const;
  // The settings page's own rows under their headings.
  std::vector<SettingsSection> sections() const;
  std::optional<SettingRow> row(std::string_view key) const;
  const std::string& lockdownLine() const { return lockdownLine_; }

  // False, and nothing changes, for an unknown key or a value the setting
  // does not take.
  bool set(std::string_view key, int value);

 private:
  void tellFollowers(std::string_view key, int value);

  Store& store_;
  std::string lockdownLine_;
  SettingFollowers followers_;
};

}  // namespace sodam
