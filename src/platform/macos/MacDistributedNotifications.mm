#import "platform/macos/MacDistributedNotifications.h"

#import "platform/macos/MacValues.h"

namespace harbor {

void MacDistributedNotifications::post(std::string_view name, std::string_view object) {
  [[NSDistributedNotificationCenter defaultCenter] postNotificationName:shownString(name)
                                                                 object:shownString(object)];
}

}  // namespace harbor
