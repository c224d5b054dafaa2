#include "mac/menu_bridge.h"

#include <string>

@implementation SJMenuCommand

- (instancetype)initWithItem:(const sodam::MenuItem&)item {
  if ((self = [super init])) {
    _action = item.action;
    _tag = item.tag;
    _payload = item.representedObject;
  }
  return self;
}

@end

namespace sodam {

namespace {

NSString* text(const std::string& value) {
  NSString* made = [NSString stringWithUTF8String:value.c_str()];
  return made ? made : @"";
}

// The platform's own commands; nothing for the core's.
SEL standardSelector(MenuAction action) {
  switch (action) {
    case MenuAction::hide:
      return @selector(hide:);
    case MenuAction::terminate:
      return @selector(terminate:);
    case MenuAction::performClose:
      return @selector(performClose:);
    case MenuAction::performMiniaturize:
      return @selector(performMiniaturize:);
    default:
      return nullptr;
  }
}

NSMenuItem* sectionHeader(const std::string& title) {
  if (@available(macOS 14, *)) return [NSMenuItem sectionHeaderWithTitle:text(title)];
  NSMenuItem* header = [[NSMenuItem alloc] initWithTitle:text(title) action:nil keyEquivalent:@""];
  header.enabled = NO;
  return header;
}

// The menu's own font in bold: the plain system font is smaller than a
// menu's, and the line would stand out by its size, not its weight.
NSFont* boldMenuFont() {
  return [NSFontManager.sharedFontManager convertFont:[NSFont menuFontOfSize:0]
                                          toHaveTrait:NSBoldFontMask];
}

void style(NSMenuItem* made, const MenuItem& item) {
  if (item.symbol) {
    made.image = [NSImage imageWithSystemSymbolName:text(*item.symbol)
                           accessibilityDescription:nil];
  }
  if (item.bold) {
    NSDictionary* bold = @{NSFontAttributeName : boldMenuFont()};
    made.attributedTitle = [[NSAttributedString alloc] initWithString:text(item.title)
                                                           attributes:bold];
  }
  made.state = item.checked ? NSControlStateValueOn : NSControlStateValueOff;
  made.enabled = item.enabled;
  if (item.tag) made.tag = *item.tag;
}

void bind(NSMenuItem* made, const MenuItem& item, id target) {
  if (SEL standard = standardSelector(item.action)) {
    made.action = standard;
    return;
  }
  if (item.action == MenuAction::none) return;
  made.target = target;
  made.action = NSSelectorFromString(@"performMenuCommand:");
  made.representedObject = [[SJMenuCommand alloc] initWithItem:item];
}

NSMenuItem* makeItem(const MenuItem& item, id target) {
  if (item.kind == MenuItem::Kind::separator) return [NSMenuItem separatorItem];
  if (item.kind == MenuItem::Kind::section) return sectionHeader(item.title);
  NSMenuItem* made = [[NSMenuItem alloc] initWithTitle:text(item.title)
                                                action:nil
                                         keyEquivalent:text(item.keyEquivalent)];
  bind(made, item, target);
  style(made, item);
  if (!item.submenu.empty()) {
    NSMenu* submenu = [[NSMenu alloc] initWithTitle:text(item.title)];
    submenu.autoenablesItems = NO;
    fillMenu(submenu, item.submenu, target);
    made.submenu = submenu;
  }
  return made;
}

}  // namespace

void fillMenu(NSMenu* menu, const std::vector<MenuItem>& items, id target) {
  [menu removeAllItems];
  for (const MenuItem& item : items)
    [menu addItem:makeItem(item, target)];
}

NSMenu* makeMainMenu(const std::vector<MenuBarMenu>& menus, NSMenu* postureMenu, id target) {
  NSMenu* bar = [[NSMenu alloc] initWithTitle:@""];
  for (const MenuBarMenu& entry : menus) {
    NSMenu* menu =
        entry.isPostureMenu ? postureMenu : [[NSMenu alloc] initWithTitle:text(entry.title)];
    if (!entry.isPostureMenu) {
      menu.autoenablesItems = NO;
      fillMenu(menu, entry.items, target);
    }
    NSMenuItem* holder = [[NSMenuItem alloc] initWithTitle:text(entry.title)
                                                    action:nil
                                             keyEquivalent:@""];
    holder.submenu = menu;
    [bar addItem:holder];
  }
  return bar;
}

NSMenu* makeLiveMenu(NSString* title, id<NSMenuDelegate> delegate) {
  NSMenu* menu = [[NSMenu alloc] initWithTitle:title];
  menu.autoenablesItems = NO;
  menu.delegate = delegate;
  return menu;
}

SJMenuCommand* commandOf(NSMenuItem* item) {
  id object = item.representedObject;
  return [object isKindOfClass:SJMenuCommand.class] ? object : nil;
}

}  // namespace sodam
