#import "platform/macos/MacPowerManager.h"

#import <IOKit/pwr_mgt/IOPMLib.h>

#import "platform/macos/MacValues.h"

namespace harbor {

static_assert(PowerManager::kAssertionLevelOn == kIOPMAssertionLevelOn);

std::optional<PowerManager::AssertionIdentifier> MacPowerManager::createAssertion(std::string_view type,
                                                                                  AssertionLevel level,
                                                                                  std::string_view name) {
  IOPMAssertionID identifier = 0;
  const IOReturn result = IOPMAssertionCreateWithName((__bridge CFStringRef)shownString(type), level,
                                                      (__bridge CFStringRef)shownString(name), &identifier);
  return result == kIOReturnSuccess ? std::optional(identifier) : std::nullopt;
}

void MacPowerManager::releaseAssertion(AssertionIdentifier identifier) {
  IOPMAssertionRelease(identifier);
}

}  // namespace harbor
