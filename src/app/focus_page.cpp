#include "app/focus_page.h"

#include <array>

#include "support/korean_format.h"
#include "support/numeric.h"
#include "support/text.h"
#include "support/uuid.h"

namespace sodam {

namespace {

constexpr std::array presetColors{Theme::green, Theme::red,   Theme::orange,
                                  Theme::blue,  Theme::coral, Theme::gray};

std::string habitList(const FocusPreset& preset) {
  std::string list;
  for (WatchHabit habit : preset.habits)
    list += (list.empty() ? "" : ", ") + std::string(habit.title());
  return list;
}

std::string presetDetail(const FocusPreset& preset) {
  std::string detail(preset.mode.shortTitle());
  if (preset.mode == UseMode::watch && !preset.habits.empty()) detail += " · " + habitList(preset);
  if (preset.goal > 0) detail += format(" · 목표 %d분", preset.goal);
  return detail;
}

std::vector<FocusPage::Count> countsOf(const std::map<std::string, int>& counts) {
  std::vector<FocusPage::Count> list;
  for (int i = 0; i < WatchHabit::count; ++i) {
    const WatchHabit habit(static_cast<WatchHabit::Value>(i));
    const auto found = counts.find(std::string(habit.raw()));
    if (found != counts.end() && found->second > 0)
      list.push_back({habit, std::string(habit.title()), found->second});
  }
  return list;
}

std::string countsText(const std::vector<FocusPage::Count>& counts) {
  std::string text;
  for (const auto& c : counts)
    text += (text.empty() ? "" : " · ") + c.title + format(" %d번", c.count);
  return text;
}

FocusPage::Session sessionOf(const FocusCenter::Session& s, const FocusPreset& preset,
                             const Calendar& calendar) {
  FocusPage::Session view;
  view.started = Fmt::clock(s.start, calendar) + "부터";
  view.focused = hm(s.focused / 60);
  if (preset.goal > 0) {
    const double share = std::min(1.0, s.focused / 60 / preset.goal);
    view.goalShare = share;
    view.goal = format("목표 %d분 · %lld%%", preset.goal, roundedInt(share * 100));
  }
  view.habits = countsOf(s.habits);
  view.state = s.state;
  view.away = s.away;
  return view;
}

std::string watcherStatus(const WatchEngine& watcher) {
  switch (watcher.phase()) {
    case WatchEngine::Phase::off:
      return "꺼져 있어요";
    case WatchEngine::Phase::setup:
      return "자리를 맞추는 중";
    case WatchEngine::Phase::calibrating:
      return "바른 자세를 재는 중";
    case WatchEngine::Phase::running:
      return watcher.paused() ? "잠시 쉬는 중" : "지켜보는 중";
  }
  return "";
}

FocusPage::Watcher watcherOf(const WatchEngine& engine) {
  FocusPage::Watcher view;
  view.phase = engine.phase();
  view.status = watcherStatus(engine);
  const auto& framing = engine.framing();
  view.checks = {{"얼굴", framing.face}, {"어깨", framing.shoulders}, {"손과 책상", framing.hands}};
  view.hint = framing.hint;
  view.progress = engine.calibrationProgress();
  view.state = engine.state();
  view.note = engine.note();
  view.canStart = engine.phase() == WatchEngine::Phase::setup && framing.face;
  return view;
}

}  // namespace

Theme presetColor(int tint) {
  const int count = static_cast<int>(presetColors.size());
  return presetColors[static_cast<std::size_t>(((tint % count) + count) % count)];
}

FocusPreset presetDraft(std::size_t count) {
  FocusPreset draft = FocusPreset::defaults()[1];
  draft.id = newUuid();
  draft.name = "새 모드";
  draft.symbol = "book.fill";
  draft.tint = static_cast<int>(count % presetColors.size());
  return draft;
}

FocusPage FocusPage::make(const FocusCenter& focus, const WatchEngine* watcher,
                          const Calendar& calendar, Date now) {
  FocusPage page;
  const FocusPreset& active = focus.active();
  for (const auto& preset : focus.presets()) {
    page.presets.push_back({preset.id, preset.name, preset.symbol, presetColor(preset.tint),
                            preset.id == active.id, presetDetail(preset)});
  }
  page.watchMode = active.mode == UseMode::watch;
  if (focus.session()) page.session = sessionOf(*focus.session(), active, calendar);
  if (watcher) page.watcher = watcherOf(*watcher);
  page.todayTotal = "오늘 " + hm(focus.minutes(now)) + " 집중";
  std::map<std::string, int> today;
  for (int i = 0; i < WatchHabit::count; ++i) {
    const WatchHabit habit(static_cast<WatchHabit::Value>(i));
    today[std::string(habit.raw())] = focus.habitCount(habit, now);
  }
  page.todayHabits = countsOf(today);
  for (const auto& record : focus.records(now)) {
    page.records.push_back(
        {Fmt::clock(record.start, calendar) + " – " + Fmt::clock(record.end, calendar),
         record.preset, hm(record.focused / 60), countsText(countsOf(record.habits))});
  }
  return page;
}

}  // namespace sodam
