#include "platform/linux/LinuxPowerManager.h"

namespace harbor {

std::optional<PowerManager::AssertionIdentifier> LinuxPowerManager::createAssertion(std::string_view type,
                                                                                    AssertionLevel level,
                                                                                    std::string_view) {
  if (type != kNoDisplaySleepAssertion || level != kAssertionLevelOn) return std::nullopt;
  // The reset would end a saver that the user has just started.
  if (screenSaver_.isActive()) return std::nullopt;
  if (connection_ && connection_->isAlive()) {
    xcb_force_screen_saver(connection_->get(), XCB_SCREEN_SAVER_RESET);
    xcb_flush(connection_->get());
  }
  screenSaver_.simulateUserActivity();
  return ++last_;
}

}  // namespace harbor
