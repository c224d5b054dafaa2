#include "app/menus.h"

#include <utility>

#include "app/panel_page.h"
#include "support/korean_format.h"

namespace sodam {
namespace {

MenuItem item(std::string title, std::optional<std::string> symbol, MenuAction action) {
  MenuItem made;
  made.title = std::move(title);
  made.symbol = std::move(symbol);
  made.action = action;
  return made;
}

// Items that use the camera or start something that does.
MenuItem cameraItem(std::string title, std::string symbol, MenuAction action,
                    const StatusFacts& facts) {
  MenuItem made = item(std::move(title), std::move(symbol), action);
  made.enabled = !facts.cameraRevoked;
  return made;
}

MenuItem withKey(MenuItem made, std::string key) {
  made.keyEquivalent = std::move(key);
  return made;
}

MenuItem pageItem(PanelPage page) {
  MenuItem made =
      item(std::string(pageTitle(page)), std::string(pageSymbol(page)), MenuAction::openPage);
  made.tag = pageShortcut(page);
  return made;
}

void addPostureItems(std::vector<MenuItem>& menu, const StatusFacts& facts) {
  if (!facts.hasBaseline) {
    menu.push_back(cameraItem("바른 자세 알려 주기…", "figure.stand", MenuAction::relearn, facts));
    return;
  }
  MenuItem toggle = cameraItem("자세 확인", "figure.stand", MenuAction::toggle, facts);
  toggle.checked = facts.enabled;
  menu.push_back(std::move(toggle));
  MenuItem checkNow = item("지금 확인하기", "camera.viewfinder", MenuAction::checkNow);
  checkNow.enabled = facts.canCheckNow();
  menu.push_back(std::move(checkNow));
}

void addStretchAndBreath(std::vector<MenuItem>& menu, const StatusFacts& facts) {
  menu.push_back(
      cameraItem("추천 스트레칭 시작", "figure.cooldown", MenuAction::startRoutine, facts));
  // Breathing needs no camera, so it stays on even when the camera is revoked.
  menu.push_back(item("1분 호흡", "wind", MenuAction::breatheNow));
}

void addModes(std::vector<MenuItem>& menu, const StatusFacts& facts) {
  menu.push_back(MenuItem::section("모드"));
  for (const auto& preset : facts.presets) {
    MenuItem choice = cameraItem(preset.name, preset.symbol, MenuAction::pickMode, facts);
    choice.checked = facts.activePresetId == preset.id;
    choice.representedObject = preset.id;
    menu.push_back(std::move(choice));
  }
  const PresetChoice* active = facts.activePreset();
  if (!active || !active->watchMode) return;
  MenuItem watch = item(facts.watcherActive ? "집중코치 끝내기" : "집중코치 시작…", "eye.fill",
                        MenuAction::toggleWatch);
  // Ending a running watcher frees the camera, so only starting one is refused.
  watch.enabled = !facts.cameraRevoked || facts.watcherActive;
  menu.push_back(std::move(watch));
}

MenuItem reportLine(const Monitor::Report& report, const Calendar& calendar) {
  MenuItem line = item(Fmt::clock(report.time, calendar) + " · " + report.outcome.text(),
                       std::nullopt, MenuAction::none);
  line.enabled = false;
  return line;
}

MenuItem shortcutsSubmenu() {
  MenuItem shortcuts = item("바로 가기", "list.bullet", MenuAction::none);
  for (PanelPage page : orderedPanelPages())
    shortcuts.submenu.push_back(pageItem(page));
  return shortcuts;
}

std::vector<MenuItem> viewMenu() {
  std::vector<MenuItem> menu;
  for (const auto& section : panelSections()) {
    if (!menu.empty()) menu.push_back(MenuItem::separator());
    for (PanelPage page : section.pages) {
      MenuItem made = pageItem(page);
      if (const auto key = pageKeyEquivalent(page)) made.keyEquivalent = std::string(1, *key);
      menu.push_back(std::move(made));
    }
  }
  return menu;
}

}  // namespace

MenuItem MenuItem::separator() {
  MenuItem made;
  made.kind = Kind::separator;
  return made;
}

MenuItem MenuItem::section(std::string title) {
  MenuItem made;
  made.kind = Kind::section;
  made.title = std::move(title);
  return made;
}

std::vector<MenuItem> quickMenu(const StatusFacts& facts, const Calendar& calendar) {
  std::vector<MenuItem> menu;
  MenuItem status = item(statusLine(facts), std::nullopt, MenuAction::none);
  status.enabled = false;
  status.bold = true;
  menu.push_back(std::move(status));
  if (facts.report) menu.push_back(reportLine(*facts.report, calendar));
  menu.push_back(MenuItem::separator());
  addPostureItems(menu, facts);
  menu.push_back(MenuItem::separator());
  addModes(menu, facts);
  menu.push_back(MenuItem::separator());
  menu.push_back(MenuItem::section("바로 하기"));
  addStretchAndBreath(menu, facts);
  menu.push_back(MenuItem::separator());
  menu.push_back(MenuItem::section("열기"));
  menu.push_back(item("소담자리 열기", "macwindow", MenuAction::openHome));
  menu.push_back(shortcutsSubmenu());
  menu.push_back(MenuItem::separator());
  menu.push_back(withKey(item("설정…", "gearshape", MenuAction::openSettings), ","));
  menu.push_back(withKey(item("소담자리 종료", "power", MenuAction::quit), "q"));
  return menu;
}

std::vector<MenuItem> postureMenu(const StatusFacts& facts) {
  std::vector<MenuItem> menu;
  addPostureItems(menu, facts);
  menu.push_back(MenuItem::separator());
  menu.push_back(
      cameraItem("바른 자세 다시 알려 주기", "figure.stand", MenuAction::relearn, facts));
  menu.push_back(
      cameraItem("카메라로 자리 맞추기", "laptopcomputer", MenuAction::setupDesk, facts));
  menu.push_back(MenuItem::separator());
  addStretchAndBreath(menu, facts);
  return menu;
}

std::vector<MenuBarMenu> mainMenuBar() {
  MenuBarMenu application{"소담자리", {}, false};
  application.items = {
      withKey(item("설정…", std::nullopt, MenuAction::openSettings), ","),
      MenuItem::separator(),
      withKey(item("소담자리 가리기", std::nullopt, MenuAction::hide), "h"),
      MenuItem::separator(),
      withKey(item("소담자리 종료", std::nullopt, MenuAction::terminate), "q"),
  };
  MenuBarMenu window{"윈도우", {}, false};
  window.items = {
      withKey(item("닫기", std::nullopt, MenuAction::performClose), "w"),
      withKey(item("최소화", std::nullopt, MenuAction::performMiniaturize), "m"),
  };
  return {application, {"자세", {}, true}, {"보기", viewMenu(), false}, window};
}

}  // namespace sodam
