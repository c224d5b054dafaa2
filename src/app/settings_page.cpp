#include "app/settings_page.h"

#include <algorithm>

#include "support/text.h"

namespace sodam {

namespace {

using Kind = SettingRow::Kind;
using Choice = SettingRow::Choice;

// How a row reads and writes its setting.
struct Binding {
  int (*read)(const Store&);
  void (*write)(Store&, int);
};

struct Descriptor {
  std::string_view key;
  std::string_view title;
  Kind kind;
  std::vector<Choice> choices;
  PanelPage page;
  std::string_view section;
  Binding binding;
};

// A switch's binding from the store's getter and setter.
template <bool (Store::*get)() const, void (Store::*put)(bool)>
Binding flag() {
  return {[](const Store& s) { return (s.*get)() ? 1 : 0; },
          [](Store& s, int value) { (s.*put)(value != 0); }};
}

const std::vector<Choice>& toggleChoices() {
  static const std::vector<Choice> choices = {{0, "off", "끔"}, {1, "on", "켬"}};
  return choices;
}

// An enumeration's cases with their names on the command line and their
// own titles on the page.
template <typename Setting>
std::vector<Choice> choicesOf(std::initializer_list<std::pair<Setting, std::string_view>> cases) {
  std::vector<Choice> choices;
  for (const auto& [setting, name] : cases)
    choices.push_back({setting.raw(), name, setting.title()});
  return choices;
}

Descriptor toggle(std::string_view key, std::string_view title, PanelPage page,
                  std::string_view section, Binding binding) {
  return {key, title, Kind::toggle, toggleChoices(), page, section, binding};
}

// A row of an enumeration stored as its raw value.
template <typename Setting, Setting (Store::*get)() const, void (Store::*put)(Setting)>
Descriptor choice(std::string_view key, std::string_view title, std::string_view section,
                  std::initializer_list<std::pair<Setting, std::string_view>> cases) {
  Binding binding{[](const Store& s) { return (s.*get)().raw(); },
                  [](Store& s, int value) { (s.*put)(Setting::fromRaw(value).value()); }};
  return {key, title, Kind::choice, choicesOf(cases), PanelPage::settings, section, binding};
}

Descriptor timeOfDay(std::string_view key, std::string_view title, std::string_view section,
                     Binding binding) {
  return {key, title, Kind::timeOfDay, {}, PanelPage::settings, section, binding};
}

// Every user setting, in the order of the pages that show them.
const std::vector<Descriptor>& descriptors() {
  using P = PanelPage;
  static const std::vector<Descriptor> table = {
      toggle(StoreKey::enabled, "자세 확인", P::settings, "확인",
             flag<&Store::enabled, &Store::setEnabled>()),
      choice<CheckMode, &Store::checkMode, &Store::setCheckMode>(
          StoreKey::checkMode, "확인 방식", "확인",
          {{CheckMode::interval, "interval"}, {CheckMode::live, "live"}}),
      choice<Sensitivity, &Store::sensitivity, &Store::setSensitivity>(
          StoreKey::sensitivity, "민감도", "확인",
          {{Sensitivity::strict, "strict"},
           {Sensitivity::normal, "normal"},
           {Sensitivity::relaxed, "relaxed"}}),
      toggle(StoreKey::pauseOnBattery, "배터리로 쓸 때 확인 쉬기", P::settings, "확인",
             flag<&Store::pauseOnBattery, &Store::setPauseOnBattery>()),
      choice<AlertStyle, &Store::alertStyle, &Store::setAlertStyle>(
          StoreKey::alertStyle, "알림 방식", "알림",
          {{AlertStyle::border, "border"}, {AlertStyle::blur, "blur"}}),
      toggle(StoreKey::sittingNudge, "오래 앉아 있으면 알려 주기", P::settings, "알림",
             flag<&Store::sittingNudge, &Store::setSittingNudge>()),
      toggle(StoreKey::wrapUp, "퇴근 시간에 하루 정리", P::settings, "알림",
             flag<&Store::wrapUp, &Store::setWrapUp>()),
      timeOfDay(StoreKey::workEndMinutes, "퇴근 시간", "알림",
                {[](const Store& s) { return s.workEndMinutes(); },
                 [](Store& s, int value) { s.setWorkEndMinutes(value); }}),
      toggle(StoreKey::notifyCamera, "다른 앱이 카메라를 켜면 알려 주기", P::settings, "알림",
             flag<&Store::notifyCamera, &Store::setNotifyCamera>()),
      toggle(StoreKey::hideCameraFromCapture, "화면 공유와 녹화에서 카메라 화면 숨기기",
             P::settings, "보안",
             flag<&Store::hideCameraFromCapture, &Store::setHideCameraFromCapture>()),
      toggle(StoreKey::shareStatus, "모임에 내 상태 보이기", P::settings, "모임",
             flag<&Store::shareStatus, &Store::setShareStatus>()),
      toggle(StoreKey::sharePlace, "모임에 장소 이름 보이기", P::settings, "모임",
             flag<&Store::sharePlace, &Store::setSharePlace>()),
      toggle(StoreKey::peekEyes, "확인할 때 도란이가 살짝 보기", P::dorani, "도란이",
             flag<&Store::peekEyes, &Store::setPeekEyes>()),
      toggle(StoreKey::buddyOften, "확인할 때마다 도란이 보기", P::dorani, "도란이",
             flag<&Store::buddyOften, &Store::setBuddyOften>()),
      toggle(StoreKey::followFace, "도란이 눈이 얼굴 따라가기", P::dorani, "도란이",
             flag<&Store::followFace, &Store::setFollowFace>()),
  };
  return table;
}

const Descriptor* descriptor(std::string_view key) {
  const auto& table = descriptors();
  const auto found =
      std::find_if(table.begin(), table.end(), [key](const Descriptor& d) { return d.key == key; });
  return found == table.end() ? nullptr : &*found;
}

SettingRow rowOf(const Descriptor& d, const Store& store) {
  return {d.key, d.title, d.kind, d.choices, d.page, d.section, d.binding.read(store)};
}

// "18:30" and "6:05"; nothing for anything else or a time past 23:59.
std::optional<int> parseTime(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0 || colon > 2 || text.size() != colon + 3) {
    return std::nullopt;
  }
  int hour = 0;
  int minute = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i == colon) continue;
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    int& part = i < colon ? hour : minute;
    part = part * 10 + (text[i] - '0');
  }
  if (hour > 23 || minute > 59) return std::nullopt;
  return hour * 60 + minute;
}

}  // namespace

bool SettingRow::allows(int candidate) const {
  if (kind == Kind::timeOfDay) return candidate >= 0 && candidate <= lastMinuteOfDay;
  return std::any_of(choices.begin(), choices.end(),
                     [candidate](const Choice& c) { return c.value == candidate; });
}

std::optional<int> SettingRow::parse(std::string_view text) const {
  if (kind == Kind::timeOfDay) return parseTime(text);
  for (const auto& choice : choices) {
    if (choice.name == text) return choice.value;
  }
  return std::nullopt;
}

std::string SettingRow::name(int of) const {
  if (kind == Kind::timeOfDay) return format("%02d:%02d", of / 60, of % 60);
  for (const auto& choice : choices) {
    if (choice.value == of) return std::string(choice.name);
  }
  return std::to_string(of);
}

std::string SettingRow::valueTitle() const {
  if (kind == Kind::timeOfDay) {
    const int hour = value / 60;
    return format("%s %d:%02d", hour < 12 ? "오전" : "오후", hour % 12 == 0 ? 12 : hour % 12,
                  value % 60);
  }
  for (const auto& choice : choices) {
    if (choice.value == value) return std::string(choice.title);
  }
  return std::to_string(value);
}

std::string SettingRow::allowedText() const {
  if (kind == Kind::timeOfDay) return "00:00-23:59";
  std::string text;
  for (const auto& choice : choices) {
    if (!text.empty()) text += "|";
    text += choice.name;
  }
  return text;
}

SettingsPage::SettingsPage(Store& store, std::string lockdownLine, SettingFollowers followers)
    : store_(store), lockdownLine_(std::move(lockdownLine)), followers_(std::move(followers)) {}

std::vector<SettingRow> SettingsPage::rows() const {
  std::vector<SettingRow> rows;
  for (const auto& d : descriptors())
    rows.push_back(rowOf(d, store_));
  return rows;
}

std::vector<SettingsSection> SettingsPage::sections() const {
  std::vector<SettingsSection> sections;
  for (auto& row : rows()) {
    if (row.page != PanelPage::settings) continue;
    if (sections.empty() || sections.back().title != row.section) {
      sections.push_back({row.section, {}});
    }
    sections.back().rows.push_back(std::move(row));
  }
  return sections;
}

std::optional<SettingRow> SettingsPage::row(std::string_view key) const {
  const Descriptor* d = descriptor(key);
  if (!d) return std::nullopt;
  return rowOf(*d, store_);
}

bool SettingsPage::set(std::string_view key, int value) {
  const Descriptor* d = descriptor(key);
  if (!d || !rowOf(*d, store_).allows(value)) return false;
  d->binding.write(store_, value);
  tellFollowers(d->key, value);
  return true;
}

void SettingsPage::tellFollowers(std::string_view key, int value) {
  Monitor* monitor = followers_.monitor;
  if (monitor && key == StoreKey::enabled) monitor->setEnabled(value != 0);
  if (monitor && key == StoreKey::checkMode) monitor->modeChanged();
  if (monitor && key == StoreKey::sensitivity) {
    monitor->setSensitivity(Sensitivity::fromRaw(value).value());
  }
  if (followers_.shield && key == StoreKey::hideCameraFromCapture) followers_.shield->apply();
  if (followers_.refresh) followers_.refresh();
}

}  // namespace sodam
