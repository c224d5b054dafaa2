#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace sodam {

// The pages of the panel. `PanelModel::Page` names this type.
enum class PanelPage {
  home,
  focus,
  dorani,
  groups,
  ranking,
  doctor,
  desk,
  stretch,
  history,
  calendar,
  camera,
  settings,
};

// One group of the sidebar; the first has no heading and the footer neither.
struct PanelSection {
  std::optional<std::string_view> title;
  std::vector<PanelPage> pages;
  bool footer = false;
};

// The sidebar flattened, top to bottom. `ranking` and `calendar` are reached
// from inside the group pages and have no place here.
const std::array<PanelPage, 10>& orderedPanelPages();
const std::vector<PanelSection>& panelSections();

// The pages reached through one header inside the group pages: `groups`,
// `ranking`, `calendar`; every other page is a family of its own.
std::vector<PanelPage> pageFamily(PanelPage page);
// The sidebar's row that stands for the page: the first of its family.
PanelPage sidebarPage(PanelPage page);

std::string_view pageTitle(PanelPage page);
std::string_view pageCaption(PanelPage page);
// An SF Symbol name for the sidebar and the menus.
std::string_view pageSymbol(PanelPage page);

// The 1-based position in the sidebar; nothing for pages outside it.
std::optional<int> pageShortcut(PanelPage page);
// The page whose shortcut this is; nothing for a number that fits none.
std::optional<PanelPage> pageForShortcut(int shortcut);
// The menu key of a page: its shortcut digit up to 9, none beyond.
std::optional<char> pageKeyEquivalent(PanelPage page);

}  // namespace sodam
