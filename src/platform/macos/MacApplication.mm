#import "platform/macos/MacApplication.h"

#import <Security/Security.h>

#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

class MacCodeRequirement : public CodeRequirement {
 public:
  explicit MacCodeRequirement(SecRequirementRef requirement) : requirement_(requirement) {}
  MacCodeRequirement(const MacCodeRequirement&) = delete;
  MacCodeRequirement& operator=(const MacCodeRequirement&) = delete;
  ~MacCodeRequirement() override { CFRelease(requirement_); }

 private:
  SecRequirementRef requirement_;
};

NSApplicationActivationPolicy nativePolicy(ActivationPolicy policy) {
  switch (policy) {
    case ActivationPolicy::regular:
      return NSApplicationActivationPolicyRegular;
    case ActivationPolicy::accessory:
      return NSApplicationActivationPolicyAccessory;
    case ActivationPolicy::prohibited:
      return NSApplicationActivationPolicyProhibited;
  }
}

}  // namespace

void MacApplication::setActivationPolicy(ActivationPolicy policy) {
  [NSApp setActivationPolicy:nativePolicy(policy)];
}

void MacApplication::activateIgnoringOtherApps() {
  [NSApp activateIgnoringOtherApps:YES];
}

void MacApplication::terminate() {
  onMainRunLoop([] { [NSApp terminate:nil]; });
}

std::optional<std::string> MacApplication::bundleIdentifier() const {
  NSString* const identifier = NSBundle.mainBundle.bundleIdentifier;
  return identifier ? std::optional(textOf(identifier)) : std::nullopt;
}

std::string MacApplication::bundleName() const {
  const id name = [NSBundle.mainBundle objectForInfoDictionaryKey:(__bridge NSString*)kCFBundleNameKey];
  return [name isKindOfClass:NSString.class] ? textOf(name) : std::string();
}

std::unique_ptr<CodeRequirement> MacApplication::compileCodeRequirement(std::string_view text) {
  NSString* const string = nsString(text);
  SecRequirementRef requirement = nullptr;
  if (!string || SecRequirementCreateWithString((__bridge CFStringRef)string, kSecCSDefaultFlags,
                                                &requirement) != errSecSuccess)
    return nullptr;
  return requirement ? std::make_unique<MacCodeRequirement>(requirement) : nullptr;
}

}  // namespace harbor
