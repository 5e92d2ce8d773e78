#import "platform/macos/MacLoginItems.h"

#import <ServiceManagement/ServiceManagement.h>

#import "platform/macos/MacValues.h"

namespace harbor {

bool MacLoginItems::setEnabled(std::string_view bundleIdentifier, State state) {
  NSString* const identifier = nsString(bundleIdentifier);
  return identifier && SMLoginItemSetEnabled((__bridge CFStringRef)identifier, state == State::enabled);
}

}  // namespace harbor
