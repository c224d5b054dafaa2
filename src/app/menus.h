#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/status_item.h"
#include "support/calendar.h"

namespace sodam {

// What a menu item asks of the application core when chosen. The last four
// are the platform's standard window and application commands.
enum class MenuAction {
  none,
  toggle,
  checkNow,
  relearn,
  setupDesk,
  pickMode,  // the item carries the preset's UUID string
  toggleWatch,
  openHome,
  openDorani,
  openSettings,
  openPage,  // the item's tag is the page's shortcut
  startRoutine,
  breatheNow,
  quit,
  hide,
  terminate,
  performClose,
  performMiniaturize,
};

struct MenuItem {
  enum class Kind { item, separator, section };

  Kind kind = Kind::item;
  std::string title;
  std::optional<std::string> symbol;
  MenuAction action = MenuAction::none;
  bool enabled = true;
  bool checked = false;
  bool bold = false;
  // With the command key; empty for none.
  std::string keyEquivalent;
  std::optional<int> tag;
  std::optional<std::string> representedObject;
  std::vector<MenuItem> submenu;

  static MenuItem separator();
  static MenuItem section(std::string title);
};

// One menu of the main menu bar. The posture menu's items are not fixed: the
// shell fills it from `postureMenu` each time it opens.
struct MenuBarMenu {
  std::string title;
  std::vector<MenuItem> items;
  bool isPostureMenu = false;
};

// The status item's menu, rebuilt each time it opens; the report's time is
// read on the calendar.
std::vector<MenuItem> quickMenu(const StatusFacts& facts, const Calendar& calendar);
// The menu bar's "자세" menu, rebuilt each time it opens.
std::vector<MenuItem> postureMenu(const StatusFacts& facts);
// The main menu bar, made once at launch and fixed for the run.
std::vector<MenuBarMenu> mainMenuBar();

}  // namespace sodam
