#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/check_mode.h"
#include "posture/monitor.h"

namespace sodam {

// The faces the menu-bar icon can make; the shell draws them with the ears.
struct StatusIcon {
  enum class Eyes { open, looking, closed };
};

// A focus preset as the quick menu lists it.
struct PresetChoice {
  std::string id;  // the preset's UUID string, carried by its menu item
  std::string name;
  std::string symbol;
  bool watchMode = false;  // the preset's mode is the focus watcher
};

// What the status item and the menus read from the live components. The
// application core fills it afresh at each refresh and each menu opening.
struct StatusFacts {
  Monitor::Phase phase = Monitor::Phase::idle;
  bool enabled = false;
  bool held = false;
  bool hasBaseline = false;
  CheckMode checkMode = CheckMode::interval;
  std::optional<Monitor::Report> report;
  // A hardening check took the camera away for the rest of the run.
  bool cameraRevoked = false;
  // Camera uses by other applications the user has not looked at yet.
  int unseenCameraUses = 0;
  // The raw value of the companion's ears, drawn on the icon.
  int ears = 0;
  std::vector<PresetChoice> presets;
  std::optional<std::string> activePresetId;
  bool watcherActive = false;

  // A check by hand can start at once: on, idle, not held, camera allowed.
  bool canCheckNow() const;
  const PresetChoice* activePreset() const;
};

// The colour over the template icon; `accent` is the system's accent colour.
enum class StatusTint { none, red, orange, accent };

// Everything the shell needs to draw the status item once.
struct StatusLook {
  StatusIcon::Eyes eyes = StatusIcon::Eyes::open;
  int ears = 0;
  StatusTint tint = StatusTint::none;
  bool appearsDisabled = false;
  std::string tooltip;
};

// One line that says what the monitor is doing, for the tooltip and the top
// of the quick menu.
std::string statusLine(const StatusFacts& facts);
StatusLook statusLook(const StatusFacts& facts);

// Remembers the icon last drawn, so the image is made again only when its
// eyes or ears change; a change of tint or tooltip alone keeps the image.
class StatusItem {
 public:
  struct Refresh {
    StatusLook look;
    bool redrawImage = false;
  };

  Refresh refresh(const StatusFacts& facts);
  // Records an icon the shell drew outside a refresh (the first one at launch).
  void drawn(StatusIcon::Eyes eyes, int ears);

  const std::optional<StatusIcon::Eyes>& iconEyes() const { return iconEyes_; }
  const std::optional<int>& iconEars() const { return iconEars_; }

 private:
  std::optional<StatusIcon::Eyes> iconEyes_;
  std::optional<int> iconEars_;
};

}  // namespace sodam
