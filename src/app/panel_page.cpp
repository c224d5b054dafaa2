#include "app/panel_page.h"

#include <algorithm>

namespace sodam {
namespace {

struct PageText {
  std::string_view title;
  std::string_view caption;
  std::string_view symbol;
};

PageText text(PanelPage page) {
  switch (page) {
    case PanelPage::home:
      return {"홈", "오늘을 한눈에", "house"};
    case PanelPage::focus:
      return {"집중", "모드와 집중 시간", "scope"};
    case PanelPage::dorani:
      return {"도란이", "함께하는 자세 친구", "pawprint"};
    case PanelPage::groups:
      return {"모임", "모임 방·랭킹·캘린더", "person.3"};
    case PanelPage::ranking:
      return {"랭킹", "누가 바르게 앉았나", "trophy"};
    case PanelPage::doctor:
      return {"나의 건강코치", "습관 분석과 상담", "stethoscope"};
    case PanelPage::desk:
      return {"내 자리", "의자·책상·화면 맞추기", "lamp.desk"};
    case PanelPage::stretch:
      return {"스트레칭", "따라 하는 맞춤 운동", "figure.cooldown"};
    case PanelPage::history:
      return {"리포트", "오늘·이번 주 요약과 기록", "chart.bar"};
    case PanelPage::calendar:
      return {"캘린더", "모임 시간과 집중한 날", "calendar"};
    case PanelPage::camera:
      return {"카메라 감시", "카메라 쓴 앱 기록", "video"};
    case PanelPage::settings:
      return {"설정", "확인 방식·알림·보안", "gearshape"};
  }
  return {};
}

}  // namespace

const std::vector<PanelSection>& panelSections() {
  static const std::vector<PanelSection> sections = {
      {std::nullopt, {PanelPage::home, PanelPage::focus, PanelPage::groups, PanelPage::dorani}},
      {"바로잡기", {PanelPage::stretch, PanelPage::desk}},
      {"살펴보기", {PanelPage::history, PanelPage::doctor}},
      {std::nullopt, {PanelPage::camera, PanelPage::settings}, true},
  };
  return sections;
}

const std::array<PanelPage, 10>& orderedPanelPages() {
  static const std::array<PanelPage, 10> pages = [] {
    std::array<PanelPage, 10> flat{};
    std::size_t next = 0;
    for (const auto& section : panelSections())
      for (PanelPage page : section.pages)
        flat.at(next++) = page;
    return flat;
  }();
  return pages;
}

std::vector<PanelPage> pageFamily(PanelPage page) {
  switch (page) {
    case PanelPage::groups:
    case PanelPage::ranking:
    case PanelPage::calendar:
      return {PanelPage::groups, PanelPage::ranking, PanelPage::calendar};
    default:
      return {page};
  }
}

PanelPage sidebarPage(PanelPage page) {
  return pageFamily(page).front();
}

std::string_view pageTitle(PanelPage page) {
  return text(page).title;
}
std::string_view pageCaption(PanelPage page) {
  return text(page).caption;
}
std::string_view pageSymbol(PanelPage page) {
  return text(page).symbol;
}

std::optional<int> pageShortcut(PanelPage page) {
  const auto& pages = orderedPanelPages();
  const auto found = std::find(pages.begin(), pages.end(), page);
  if (found == pages.end()) return std::nullopt;
  return static_cast<int>(found - pages.begin()) + 1;
}

std::optional<PanelPage> pageForShortcut(int shortcut) {
  const auto& pages = orderedPanelPages();
  if (shortcut < 1 || shortcut > static_cast<int>(pages.size())) return std::nullopt;
  return pages[static_cast<std::size_t>(shortcut - 1)];
}

std::optional<char> pageKeyEquivalent(PanelPage page) {
  const auto shortcut = pageShortcut(page);
  if (!shortcut || *shortcut > 9) return std::nullopt;
  return static_cast<char>('0' + *shortcut);
}

}  // namespace sodam
