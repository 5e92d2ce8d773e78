#import "platform/macos/MacWindowServer.h"

#include <unistd.h>

#include <limits>

#import "platform/macos/MacValues.h"
#import "platform/macos/NotificationObserver.h"
#include "platform/macos/WallpaperWindow.h"

namespace harbor {
namespace {

static_assert(static_cast<unsigned>(WindowListOptions::onScreenOnly) == kCGWindowListOptionOnScreenOnly);
static_assert(static_cast<unsigned>(WindowListOptions::excludeDesktopElements) ==
              kCGWindowListExcludeDesktopElements);
static_assert(static_cast<int>(WindowLevelKey::desktopIcon) == kCGDesktopIconWindowLevelKey);
static_assert(kScreenSaverWindowLevel == NSScreenSaverWindowLevel);
static_assert(kNormalWindowLevel == NSNormalWindowLevel);

Rect rectOf(CGRect rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

using Description = NSDictionary<NSString*, id>;

id valueFor(Description* description, CFStringRef key) {
  return description[(__bridge NSString*)key];
}

template <typename Integer>
std::optional<Integer> integerFor(Description* description, CFStringRef key) {
  const id value = valueFor(description, key);
  if (![value isKindOfClass:NSNumber.class]) return std::nullopt;
  NSNumber* const number = value;
  const long long integer = number.longLongValue;
  if (static_cast<double>(integer) != number.doubleValue || integer < std::numeric_limits<Integer>::min() ||
      integer > std::numeric_limits<Integer>::max())
    return std::nullopt;
  return static_cast<Integer>(integer);
}

std::optional<std::string> textFor(Description* description, CFStringRef key) {
  const id value = valueFor(description, key);
  return [value isKindOfClass:NSString.class] ? std::optional(textOf(value)) : std::nullopt;
}

std::optional<Rect> boundsOf(Description* description) {
  const id value = valueFor(description, kCGWindowBounds);
  CGRect rect = CGRectZero;
  if (![value isKindOfClass:NSDictionary.class] ||
      !CGRectMakeWithDictionaryRepresentation((__bridge CFDictionaryRef)value, &rect))
    return std::nullopt;
  return rectOf(rect);
}

std::vector<std::int32_t> dockProcesses() {
  std::vector<std::int32_t> processes;
  for (NSRunningApplication* dock in
       [NSRunningApplication runningApplicationsWithBundleIdentifier:@"com.apple.dock"])
    processes.push_back(dock.processIdentifier);
  return processes;
}

// Whether the window is one of this process that clicks go through: a veil or the ring.
bool isOwnOverlay(const WindowInfo& window) {
  if (!window.number || window.ownerPid != ::getpid()) return false;
  NSWindow* const own = [NSApp windowWithWindowNumber:static_cast<NSInteger>(*window.number)];
  return own.ignoresMouseEvents;
}

}  // namespace

Rect MacWindowServer::mainDisplayBounds() const {
  return rectOf(CGDisplayBounds(CGMainDisplayID()));
}

Rect MacWindowServer::mainScreenFrame() const {
  NSScreen* const screen = NSScreen.mainScreen;
  return screen ? flipped(screen.frame) : mainDisplayBounds();
}

WindowLevel MacWindowServer::levelForKey(WindowLevelKey key) const {
  return CGWindowLevelForKey(static_cast<CGWindowLevelKey>(key));
}

std::vector<WindowInfo> MacWindowServer::windowList(WindowListOptions options) const {
  NSArray<Description*>* const descriptions = (__bridge_transfer NSArray*)CGWindowListCopyWindowInfo(
      static_cast<CGWindowListOption>(options), kCGNullWindowID);
  const bool hasWallpaper = !contains(options, WindowListOptions::excludeDesktopElements);
  const std::vector<std::int32_t> docks = hasWallpaper ? dockProcesses() : std::vector<std::int32_t>{};
  const WindowLevel iconLevel = levelForKey(WindowLevelKey::desktopIcon);
  std::vector<WindowInfo> windows;
  for (Description* description in descriptions) {
    WindowInfo window;
    window.layer = integerFor<int>(description, kCGWindowLayer);
    window.ownerPid = integerFor<std::int32_t>(description, kCGWindowOwnerPID);
    window.ownerName = textFor(description, kCGWindowOwnerName);
    window.name = textFor(description, kCGWindowName);
    window.number = integerFor<WindowNumber>(description, kCGWindowNumber);
    window.bounds = boundsOf(description);
    if (isOwnOverlay(window)) continue;
    nameWallpaper(window, docks, iconLevel);
    windows.push_back(std::move(window));
  }
  return windows;
}

WindowNumber MacWindowServer::windowNumberAtPoint(Point point, WindowNumber below) const {
  return [NSWindow windowNumberAtPoint:flipped(point) belowWindowWithWindowNumber:below];
}

std::shared_ptr<const Picture> MacWindowServer::pictureOfWindow(WindowNumber number) const {
  // There is no wallpaper to be seen, and number 0 stands for every window.
  if (number == kNoWindow) return nullptr;
  const CGImageRef image = CGWindowListCreateImage(CGRectMake(0, 0, 0, 0), kCGWindowListOptionIncludingWindow,
                                                   static_cast<CGWindowID>(number), kCGWindowImageDefault);
  return image ? std::make_shared<MacPicture>(image) : nullptr;
}

void MacWindowServer::requestPictures() {
  if (!CGPreflightScreenCaptureAccess()) CGRequestScreenCaptureAccess();
}

Subscription MacWindowServer::onDisplayChange(std::function<void()> handler) {
  return observe(NSNotificationCenter.defaultCenter, NSApplicationDidChangeScreenParametersNotification,
                 std::move(handler));
}

Subscription MacWindowServer::onFrontWindowChange(std::function<void()>) {
  return Subscription();
}

}  // namespace harbor
