#import "mac/panel_pages.h"

#include <memory>

#if __has_include(<ServiceManagement/SMAppService.h>)
#import <ServiceManagement/SMAppService.h>
#define SJ_LOGIN_ITEMS 1
#endif

#include "app/settings_page.h"

using namespace sodam;

namespace {

constexpr CGFloat labelColumnWidth = 260;

NSString* keyName(std::string_view key) {
  return SJString(std::string(key));
}

// Minutes after midnight as a date today, for the time picker, and back.
NSDate* dateOfMinutes(int minutes) {
  NSCalendar* calendar = NSCalendar.currentCalendar;
  return [calendar dateBySettingHour:minutes / 60
                              minute:minutes % 60
                              second:0
                              ofDate:[NSDate date]
                             options:0]
             ?: [NSDate date];
}

int minutesOfDate(NSDate* date) {
  NSDateComponents* parts =
      [NSCalendar.currentCalendar components:NSCalendarUnitHour | NSCalendarUnitMinute
                                    fromDate:date];
  return static_cast<int>(parts.hour * 60 + parts.minute);
}

}  // namespace

// Every setting of the settings page, bound to the store through its model
// and applied at once; the privacy lock's line; launch at login where the
// system offers it.
@interface SJSettingsPage : NSView <SJPanelPage>
@end

@implementation SJSettingsPage {
  SJPanelContext _context;
  std::unique_ptr<SettingsPage> _settings;
  // Each row's control by the setting's key.
  NSMutableDictionary<NSString*, NSControl*>* _controls;
  NSTextField* _loginNote;
}

- (instancetype)initWithContext:(const SJPanelContext&)context {
  if (!(self = [super initWithFrame:NSZeroRect])) return nil;
  _context = context;
  _settings = std::make_unique<SettingsPage>(context.core->settingsPage(context.shield));
  _controls = [NSMutableDictionary dictionary];
  NSMutableArray<NSView*>* cards = [NSMutableArray array];
  for (const auto& section : _settings->sections())
    [cards addObject:[self cardOf:section]];
  [cards addObject:panelCard(@[ panelButton(@"소담자리 종료", ^{
           context.model().quit();
         }) ])];
  NSStackView* column = panelColumn(cards, 14);
  for (NSView* card in cards)
    [card.widthAnchor constraintEqualToAnchor:column.widthAnchor].active = YES;
  panelFill(self, SJPageFrame(@"설정", @"확인 방식·알림·보안", column));
  [self reload];
  return self;
}

- (NSView*)cardOf:(const SettingsSection&)section {
  NSMutableArray<NSView*>* rows =
      [NSMutableArray arrayWithObject:panelLabel(SJString(std::string(section.title)),
                                                 [NSFont systemFontOfSize:NSFont.systemFontSize
                                                                   weight:NSFontWeightSemibold],
                                                 NSColor.labelColor)];
  for (const auto& row : section.rows) {
    NSControl* control = [self controlOf:row];
    _controls[keyName(row.key)] = control;
    NSTextField* label =
        panelLabel(SJString(std::string(row.title)),
                   [NSFont systemFontOfSize:NSFont.systemFontSize], NSColor.labelColor);
    [label.widthAnchor constraintEqualToConstant:labelColumnWidth].active = YES;
    NSMutableArray<NSView*>* line = [NSMutableArray arrayWithObjects:label, control, nil];
    if (row.key == StoreKey::alertStyle) [line addObject:[self previewButton]];
    [rows addObject:panelRow(line, 12)];
  }
  if (section.title == "보안") [self addSecurityLines:rows];
  return panelCard(rows);
}

- (NSControl*)controlOf:(const SettingRow&)row {
  NSControl* control = nil;
  switch (row.kind) {
    case SettingRow::Kind::toggle:
      control = [[NSSwitch alloc] init];
      break;
    case SettingRow::Kind::choice: {
      NSPopUpButton* menu = [[NSPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
      for (const auto& choice : row.choices) {
        [menu addItemWithTitle:SJString(std::string(choice.title))];
        menu.lastItem.tag = choice.value;
      }
      control = menu;
      break;
    }
    case SettingRow::Kind::timeOfDay: {
      NSDatePicker* picker = [[NSDatePicker alloc] init];
      picker.datePickerStyle = NSDatePickerStyleTextFieldAndStepper;
      picker.datePickerElements = NSDatePickerElementFlagHourMinute;
      control = picker;
      break;
    }
  }
  control.identifier = keyName(row.key);
  control.accessibilityLabel = SJString(std::string(row.title));
  control.target = self;
  control.action = @selector(changed:);
  return control;
}

- (NSButton*)previewButton {
  SJPanelContext context = _context;
  return panelButton(@"미리 보기", ^{
    context.model().previewAlert(context.core->store().alertStyle());
  });
}

- (void)addSecurityLines:(NSMutableArray<NSView*>*)rows {
  [rows addObject:panelCaption(SJString(_context.model().lock().summary()))];
#ifdef SJ_LOGIN_ITEMS
  if (@available(macOS 13.0, *)) {
    NSSwitch* login = [[NSSwitch alloc] init];
    login.accessibilityLabel = @"로그인할 때 열기";
    login.state = SMAppService.mainAppService.status == SMAppServiceStatusEnabled
                      ? NSControlStateValueOn
                      : NSControlStateValueOff;
    login.target = self;
    login.action = @selector(launchAtLogin:);
    NSTextField* label = panelLabel(
        @"로그인할 때 열기", [NSFont systemFontOfSize:NSFont.systemFontSize], NSColor.labelColor);
    [label.widthAnchor constraintEqualToConstant:labelColumnWidth].active = YES;
    [rows addObject:panelRow(@[ label, login ], 12)];
    _loginNote = panelCaption(@"");
    _loginNote.hidden = YES;
    [rows addObject:_loginNote];
  }
#endif
}

#ifdef SJ_LOGIN_ITEMS
- (void)launchAtLogin:(NSSwitch*)sender API_AVAILABLE(macos(13.0)) {
  SMAppService* service = SMAppService.mainAppService;
  NSError* error = nil;
  const BOOL on = sender.state == NSControlStateValueOn;
  const BOOL done =
      on ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
  if (!done) sender.state = on ? NSControlStateValueOff : NSControlStateValueOn;
  _loginNote.stringValue = done ? @"" : error.localizedDescription ?: @"";
  _loginNote.hidden = done;
}
#endif

- (void)changed:(NSControl*)sender {
  const std::string key = sender.identifier.UTF8String ?: "";
  int value = 0;
  if ([sender isKindOfClass:NSSwitch.class]) {
    value = ((NSSwitch*)sender).state == NSControlStateValueOn ? 1 : 0;
  } else if ([sender isKindOfClass:NSPopUpButton.class]) {
    value = static_cast<int>(((NSPopUpButton*)sender).selectedTag);
  } else if ([sender isKindOfClass:NSDatePicker.class]) {
    value = minutesOfDate(((NSDatePicker*)sender).dateValue);
  }
  _settings->set(key, value);
  [self reload];
}

- (void)reload {
  for (const auto& row : _settings->rows()) {
    NSControl* control = _controls[keyName(row.key)];
    if ([control isKindOfClass:NSSwitch.class]) {
      ((NSSwitch*)control).state = row.value ? NSControlStateValueOn : NSControlStateValueOff;
    } else if ([control isKindOfClass:NSPopUpButton.class]) {
      [(NSPopUpButton*)control selectItemWithTag:row.value];
    } else if ([control isKindOfClass:NSDatePicker.class]) {
      ((NSDatePicker*)control).dateValue = dateOfMinutes(row.value);
    }
  }
}

@end

NSView<SJPanelPage>* SJMakeSettingsPage(const SJPanelContext& context) {
  return [[SJSettingsPage alloc] initWithContext:context];
}
