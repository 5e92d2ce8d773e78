#import "platform/macos/MacWorkspace.h"

#import "platform/macos/MacValues.h"
#import "platform/macos/NotificationObserver.h"

namespace harbor {
namespace {

ActivationPolicy policyOf(NSRunningApplication* application) {
  switch (application.activationPolicy) {
    case NSApplicationActivationPolicyRegular:
      return ActivationPolicy::regular;
    case NSApplicationActivationPolicyAccessory:
      return ActivationPolicy::accessory;
    case NSApplicationActivationPolicyProhibited:
      return ActivationPolicy::prohibited;
  }
  return ActivationPolicy::prohibited;  // one that a newer system has
}

std::optional<RunningApplication> valueOf(NSRunningApplication* application) {
  if (!application) return std::nullopt;
  RunningApplication result;
  result.processIdentifier = application.processIdentifier;
  if (NSString* const identifier = application.bundleIdentifier) result.bundleIdentifier = textOf(identifier);
  if (NSURL* const url = application.bundleURL) result.bundleUrl = fileUrlOf(url);
  result.name = textOf(application.localizedName);
  result.activationPolicy = policyOf(application);
  return result;
}

NSWorkspace* shared() {
  return NSWorkspace.sharedWorkspace;
}

}  // namespace

std::vector<RunningApplication> MacWorkspace::runningApplications() const {
  std::vector<RunningApplication> result;
  for (NSRunningApplication* application in shared().runningApplications)
    result.push_back(*valueOf(application));
  return result;
}

std::optional<RunningApplication> MacWorkspace::frontmostApplication() const {
  return valueOf(shared().frontmostApplication);
}

std::optional<RunningApplication> MacWorkspace::runningApplication(std::int32_t processIdentifier) const {
  return valueOf([NSRunningApplication runningApplicationWithProcessIdentifier:processIdentifier]);
}

bool MacWorkspace::isRunning(std::string_view bundleIdentifier) const {
  NSString* const identifier = nsString(bundleIdentifier);
  for (NSRunningApplication* application in shared().runningApplications) {
    if (identifier && [identifier isEqual:application.bundleIdentifier]) return true;
  }
  return false;
}

std::optional<std::string> MacWorkspace::fullPathForApplication(std::string_view name) const {
  NSString* const string = nsString(name);
  if (!string) return std::nullopt;
    // What replaces the call goes by bundle identifier, and only a name is known here.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
  NSString* const path = [shared() fullPathForApplication:string];
#pragma clang diagnostic pop
  return path ? std::optional(textOf(path)) : std::nullopt;
}

bool MacWorkspace::openFile(const FileUrl& url) {
  return [shared() openURL:nsUrl(url)];
}

bool MacWorkspace::openUrl(std::string_view url) {
  NSString* const text = nsString(url);
  NSURL* const address = text ? [NSURL URLWithString:text] : nil;
  return address && [shared() openURL:address];
}

void MacWorkspace::reveal(const std::vector<FileUrl>& urls) {
  NSMutableArray<NSURL*>* const files = [NSMutableArray array];
  for (const FileUrl& url : urls)
    [files addObject:nsUrl(url)];
  [shared() activateFileViewerSelectingURLs:files];
}

Subscription MacWorkspace::onWillSleep(std::function<void()> handler) {
  return observe(shared().notificationCenter, NSWorkspaceWillSleepNotification, std::move(handler));
}

Subscription MacWorkspace::onDidWake(std::function<void()> handler) {
  return observe(shared().notificationCenter, NSWorkspaceDidWakeNotification, std::move(handler));
}

Subscription MacWorkspace::onActiveSpaceDidChange(std::function<void()> handler) {
  return observe(shared().notificationCenter, NSWorkspaceActiveSpaceDidChangeNotification,
                 std::move(handler));
}

}  // namespace harbor
