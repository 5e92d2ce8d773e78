#import "platform/macos/MacMenu.h"

#import "platform/macos/MacValues.h"

// The item of the core behind an item of the menu; it is the target of its own click.
@interface HarborMenuEntry : NSObject
- (instancetype)initWithItem:(const harbor::MenuItem&)item;
- (void)itemClicked:(id)sender;
@end

@implementation HarborMenuEntry {
  harbor::MenuItem _item;
}

- (instancetype)initWithItem:(const harbor::MenuItem&)item {
  if ((self = [super init])) {
    _item = item;
    // A click needs the item's own values only.
    _item.submenu.clear();
  }
  return self;
}

- (void)itemClicked:(id)sender {
  if (harbor::raiseModalWindow()) return;
  const harbor::MenuItem item = _item;
  item.action(item);
}

@end

namespace harbor {
namespace {

constexpr CGFloat kBoldFontSize = 14.0;

NSMenuItem* renderItem(const MenuItem& item) {
  if (item.kind == MenuItem::Kind::separator) return [NSMenuItem separatorItem];
  NSString* const title = shownString(item.title);
  NSMenuItem* const result = [[NSMenuItem alloc] initWithTitle:title action:nil keyEquivalent:@""];
  if (item.kind == MenuItem::Kind::spacer) {
    // Otherwise the pointer would light up an empty line.
    result.enabled = NO;
    return result;
  }
  if (item.bold) {
    result.attributedTitle = [[NSAttributedString alloc]
        initWithString:title
            attributes:@{NSFontAttributeName : [NSFont boldSystemFontOfSize:kBoldFontSize]}];
  }
  if (!item.toolTip.empty()) result.toolTip = shownString(item.toolTip.string());
  result.tag = item.tag;
  result.state = item.state == MenuItem::State::on ? NSControlStateValueOn : NSControlStateValueOff;
  result.enabled = item.enabled;
  if (item.action) {
    HarborMenuEntry* const entry = [[HarborMenuEntry alloc] initWithItem:item];
    // The item holds its target weakly; what it represents it holds.
    result.representedObject = entry;
    result.target = entry;
    result.action = @selector(itemClicked:);
  }
  if (item.hasSubmenu || !item.submenu.empty()) result.submenu = renderMenu(item.submenu);
  return result;
}

}  // namespace

NSMenu* renderMenu(const Menu& menu) {
  NSMenu* const result = [[NSMenu alloc] initWithTitle:@""];
  result.autoenablesItems = NO;
  for (const MenuItem& item : menu)
    [result addItem:renderItem(item)];
  return result;
}

bool raiseModalWindow() {
  NSWindow* const window = NSApp.modalWindow;
  if (!window) return false;
  [NSApp activateIgnoringOtherApps:YES];
  [window orderFrontRegardless];
  return true;
}

}  // namespace harbor
