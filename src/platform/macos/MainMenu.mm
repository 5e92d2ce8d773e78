#import "platform/macos/MainMenu.h"

namespace harbor {
namespace {

// Adds a menu of that title and returns it. Its commands go to whatever has the keyboard.
NSMenu* addMenu(NSMenu* bar, NSString* title) {
  NSMenu* const menu = [[NSMenu alloc] initWithTitle:title];
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:title action:nil keyEquivalent:@""];
  item.submenu = menu;
  [bar addItem:item];
  return menu;
}

NSMenuItem* addCommand(NSMenu* menu, NSString* title, SEL action, NSString* key) {
  NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:title action:action keyEquivalent:key];
  [menu addItem:item];
  return item;
}

}  // namespace

NSMenu* mainMenu() {
  NSMenu* const bar = [[NSMenu alloc] initWithTitle:@""];

  NSMenu* const application = addMenu(bar, @"Harbor Tray");
  addCommand(application, @"About Harbor Tray", @selector(orderFrontStandardAboutPanel:), @"");
  [application addItem:[NSMenuItem separatorItem]];
  addCommand(application, @"Hide Harbor Tray", @selector(hide:), @"h");
  addCommand(application, @"Hide Others", @selector(hideOtherApplications:), @"h").keyEquivalentModifierMask =
      NSEventModifierFlagCommand | NSEventModifierFlagOption;
  addCommand(application, @"Show All", @selector(unhideAllApplications:), @"");
  [application addItem:[NSMenuItem separatorItem]];
  addCommand(application, @"Quit Harbor Tray", @selector(terminate:), @"q");

  NSMenu* const edit = addMenu(bar, @"Edit");
  addCommand(edit, @"Cut", @selector(cut:), @"x");
  addCommand(edit, @"Copy", @selector(copy:), @"c");
  addCommand(edit, @"Paste", @selector(paste:), @"v");
  addCommand(edit, @"Select All", @selector(selectAll:), @"a");

  NSMenu* const window = addMenu(bar, @"Window");
  addCommand(window, @"Minimize", @selector(performMiniaturize:), @"m");
  addCommand(window, @"Close", @selector(performClose:), @"w");
  [window addItem:[NSMenuItem separatorItem]];
  addCommand(window, @"Bring All to Front", @selector(arrangeInFront:), @"");
  NSApplication.sharedApplication.windowsMenu = window;
  return bar;
}

}  // namespace harbor
