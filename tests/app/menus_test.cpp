#include "app/menus.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/panel_page.h"

namespace sodam {
namespace {

using Phase = Monitor::Phase;
using Kind = MenuItem::Kind;
using Lines = std::vector<std::string>;

// Titles with "--" for separators and "#" before section headings.
Lines outline(const std::vector<MenuItem>& menu) {
  Lines lines;
  for (const auto& item : menu)
    lines.push_back(item.kind == Kind::separator ? "--"
                    : item.kind == Kind::section ? "#" + item.title
                                                 : item.title);
  return lines;
}

// The item of that title; a disabled blank one when there is none.
MenuItem find(const std::vector<MenuItem>& menu, const std::string& title) {
  const auto found = std::find_if(menu.begin(), menu.end(),
                                  [&](const MenuItem& item) { return item.title == title; });
  if (found != menu.end()) return *found;
  MenuItem missing;
  missing.enabled = false;
  return missing;
}

bool has(const std::vector<MenuItem>& menu, const std::string& title) {
  return !find(menu, title).title.empty();
}

class MenusTest : public ::testing::Test {
 protected:
  MenusTest() {
    facts.enabled = true;
    facts.hasBaseline = true;
    facts.presets = {{"A-1", "노트북", "laptopcomputer", false}, {"B-2", "공부", "book", true}};
    facts.activePresetId = "A-1";
  }
  std::vector<MenuItem> quick() const { return quickMenu(facts, calendar); }

  StatusFacts facts;
  Calendar calendar{TimeZone::fixed(9 * 3600)};
};

TEST_F(MenusTest, QuickMenuInOrder) {
  facts.report = Monitor::Report{Date::fromUnix(1'700'000'000), Monitor::Outcome::good()};
  const auto menu = quick();
  EXPECT_EQ(outline(menu), (Lines{"자세 확인 켜짐",
                                  "오전 7:13 · 바른 자세예요",
                                  "--",
                                  "자세 확인",
                                  "지금 확인하기",
                                  "--",
                                  "#모드",
                                  "노트북",
                                  "공부",
                                  "--",
                                  "#바로 하기",
                                  "추천 스트레칭 시작",
                                  "1분 호흡",
                                  "--",
                                  "#열기",
                                  "소담자리 열기",
                                  "바로 가기",
                                  "--",
                                  "설정…",
                                  "소담자리 종료"}));
  EXPECT_FALSE(menu[0].enabled);
  EXPECT_TRUE(menu[0].bold);
  EXPECT_FALSE(menu[1].enabled);
  EXPECT_EQ(find(menu, "설정…").keyEquivalent, ",");
  EXPECT_EQ(find(menu, "소담자리 종료").keyEquivalent, "q");

  const auto& shortcuts = find(menu, "바로 가기").submenu;
  ASSERT_EQ(shortcuts.size(), 10u);
  for (std::size_t i = 0; i < shortcuts.size(); ++i) {
    EXPECT_EQ(shortcuts[i].action, MenuAction::openPage);
    EXPECT_EQ(pageForShortcut(shortcuts[i].tag.value_or(0)), orderedPanelPages()[i]);
  }

  facts.hasBaseline = false;
  facts.report.reset();
  const auto teaching = outline(quick());
  EXPECT_EQ(Lines(teaching.begin(), teaching.begin() + 4),
            (Lines{"바른 자세를 먼저 알려 주세요", "--", "바른 자세 알려 주기…", "--"}));
  EXPECT_EQ(find(quick(), "바른 자세 알려 주기…").action, MenuAction::relearn);
}

TEST_F(MenusTest, PostureItemsFollowTheMonitorState) {
  struct Case {
    const char* name;
    Phase phase;
    bool enabled, held;
    bool checkNow;
  };
  const Case cases[] = {
      {"idle and on", Phase::idle, true, false, true},
      {"held", Phase::idle, true, true, false},
      {"checking", Phase::sampling, true, false, false},
      {"alerting", Phase::alerting, true, false, false},
      {"off", Phase::idle, false, false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    facts.phase = c.phase;
    facts.enabled = c.enabled;
    facts.held = c.held;
    for (const auto& menu : {quick(), postureMenu(facts)}) {
      EXPECT_EQ(find(menu, "자세 확인").checked, c.enabled);
      EXPECT_TRUE(find(menu, "자세 확인").enabled);
      EXPECT_EQ(find(menu, "지금 확인하기").enabled, c.checkNow);
    }
  }
  EXPECT_EQ(outline(postureMenu(facts)),
            (Lines{"자세 확인", "지금 확인하기", "--", "바른 자세 다시 알려 주기",
                   "카메라로 자리 맞추기", "--", "추천 스트레칭 시작", "1분 호흡"}));
}

TEST_F(MenusTest, PresetsCarryTheirIdAndTheWatchItemFollowsTheActiveMode) {
  EXPECT_TRUE(find(quick(), "노트북").checked);
  EXPECT_FALSE(find(quick(), "공부").checked);
  EXPECT_EQ(find(quick(), "공부").representedObject, "B-2");
  EXPECT_FALSE(has(quick(), "집중코치 시작…"));

  facts.activePresetId = "B-2";
  EXPECT_EQ(find(quick(), "집중코치 시작…").action, MenuAction::toggleWatch);
  facts.watcherActive = true;
  EXPECT_TRUE(has(quick(), "집중코치 끝내기"));
  EXPECT_FALSE(has(quick(), "집중코치 시작…"));

  facts.activePresetId = "deleted";
  EXPECT_FALSE(find(quick(), "노트북").checked);
  EXPECT_FALSE(has(quick(), "집중코치 끝내기"));
}

TEST_F(MenusTest, RevokedCameraDisablesCameraItemsButNotTheWayOut) {
  facts.cameraRevoked = true;
  facts.activePresetId = "B-2";
  for (const char* title :
       {"자세 확인", "지금 확인하기", "노트북", "공부", "집중코치 시작…", "추천 스트레칭 시작"})
    EXPECT_FALSE(find(quick(), title).enabled) << title;
  for (const char* title : {"1분 호흡", "소담자리 열기", "바로 가기", "설정…", "소담자리 종료"})
    EXPECT_TRUE(find(quick(), title).enabled) << title;
  for (const char* title : {"바른 자세 다시 알려 주기", "카메라로 자리 맞추기"})
    EXPECT_FALSE(find(postureMenu(facts), title).enabled) << title;
  EXPECT_TRUE(find(postureMenu(facts), "1분 호흡").enabled);

  facts.watcherActive = true;
  EXPECT_TRUE(find(quick(), "집중코치 끝내기").enabled) << "stopping frees the camera";
}

TEST(MainMenuBarTest, MenusKeysAndPageGroups) {
  const auto bar = mainMenuBar();
  ASSERT_EQ(bar.size(), 4u);
  EXPECT_EQ(outline(bar[0].items),
            (Lines{"설정…", "--", "소담자리 가리기", "--", "소담자리 종료"}));
  EXPECT_EQ(bar[0].items[4].action, MenuAction::terminate);
  EXPECT_TRUE(bar[1].isPostureMenu);
  EXPECT_EQ(outline(bar[3].items), (Lines{"닫기", "최소화"}));

  const auto& view = bar[2].items;
  EXPECT_EQ(outline(view), (Lines{"홈", "집중", "모임", "도란이", "--", "스트레칭", "내 자리", "--",
                                  "리포트", "나의 건강코치", "--", "카메라 감시", "설정"}));
  EXPECT_EQ(find(view, "홈").keyEquivalent, "1");
  EXPECT_EQ(find(view, "카메라 감시").keyEquivalent, "9");
  EXPECT_EQ(find(view, "설정").tag, 10);
  EXPECT_EQ(find(view, "설정").keyEquivalent, "") << "shortcut 10 has no digit";
}

}  // namespace
}  // namespace sodam
