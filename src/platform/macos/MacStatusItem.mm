#import "platform/macos/MacStatusItem.h"

#import "platform/macos/MacMenu.h"
#import "platform/macos/MacValues.h"

@interface HarborStatusItemTarget : NSObject <NSMenuDelegate>
- (void)setClicked:(std::function<void()>)clicked;
- (void)setDidClose:(std::function<void()>)didClose;
- (void)statusItemButtonClicked:(id)sender;
@end

@implementation HarborStatusItemTarget {
  std::function<void()> _clicked;
  std::function<void()> _didClose;
}

- (void)setClicked:(std::function<void()>)clicked {
  _clicked = std::move(clicked);
}

- (void)setDidClose:(std::function<void()>)didClose {
  _didClose = std::move(didClose);
}

- (void)statusItemButtonClicked:(id)sender {
  if (harbor::raiseModalWindow() || !_clicked) return;
  const std::function<void()> clicked = _clicked;
  clicked();
}

// The chosen item's action is sent after this, and the report comes after that.
- (void)menuDidClose:(NSMenu*)menu {
  if (auto didClose = std::exchange(_didClose, nullptr)) harbor::onMainRunLoop(std::move(didClose));
}

@end

namespace harbor {

MacStatusItem::MacStatusItem()
    : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength]),
      target_([[HarborStatusItemTarget alloc] init]) {}

MacStatusItem::~MacStatusItem() {
  item_.button.target = nil;
  [NSStatusBar.systemStatusBar removeStatusItem:item_];
}

bool MacStatusItem::hasButton() const {
  return item_.button != nil;
}

void MacStatusItem::setImage(std::string_view name, ImageMode mode) {
  NSImage* const image = [NSImage imageNamed:shownString(name)];
  [image setTemplate:mode == ImageMode::template_];
  item_.button.image = image;
  // The icon has no title that could be read out.
  [item_.button setAccessibilityLabel:@"Harbor Tray"];
}

void MacStatusItem::setAction(std::function<void()> clicked) {
  [target_ setClicked:std::move(clicked)];
  NSStatusBarButton* const button = item_.button;
  button.target = target_;
  button.action = @selector(statusItemButtonClicked:);
  [button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
}

void MacStatusItem::popUp(Menu menu, Offset offset, std::function<void()> didClose) {
  NSStatusBarButton* const button = item_.button;
  if (!button || isOpen_) return;
  NSMenu* const rendered = renderMenu(menu);
  rendered.delegate = target_;
  [target_ setDidClose:std::move(didClose)];
  const NSRect frame = button.frame;
  isOpen_ = true;
  [rendered popUpMenuPositioningItem:nil
                          atLocation:NSMakePoint(frame.origin.x + frame.size.width * offset.fractionOfWidth,
                                                 offset.y)
                              inView:button];
  isOpen_ = false;
}

void MacStatusItem::openMenu() {
  [target_ statusItemButtonClicked:item_.button];
}

}  // namespace harbor
