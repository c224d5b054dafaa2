#pragma once

// Main thread only: menus belong to AppKit's main thread.

#import <AppKit/AppKit.h>

#include <optional>
#include <string>
#include <vector>

#include "app/menus.h"

// What a menu item asks of the application core, with the tag and the
// represented object the core made the item with; it rides on the item as
// its represented object, so one action method serves every item.
@interface SJMenuCommand : NSObject
@property(nonatomic, readonly) sodam::MenuAction action;
@property(nonatomic, readonly) std::optional<int> tag;
@property(nonatomic, readonly) std::optional<std::string> payload;
@end

NS_ASSUME_NONNULL_BEGIN

namespace sodam {

// Replaces the menu's items with the core's. Items of the core's own actions
// call `[target performMenuCommand:]`; the platform's standard window and
// application commands go up the responder chain as AppKit's own would.
void fillMenu(NSMenu* menu, const std::vector<MenuItem>& items, id target);

// The main menu bar, fixed for the run; the posture menu is the given one,
// which its delegate fills each time it opens.
NSMenu* makeMainMenu(const std::vector<MenuBarMenu>& menus, NSMenu* postureMenu, id target);

// An empty menu that the delegate fills on opening, with automatic enabling
// off so the core decides each item's state.
NSMenu* makeLiveMenu(NSString* title, id<NSMenuDelegate> delegate);

// The command a chosen item carries; nothing for an item without one.
SJMenuCommand* _Nullable commandOf(NSMenuItem* item);

}  // namespace sodam

NS_ASSUME_NONNULL_END
