#include "platform/macos/WallpaperWindow.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

constexpr WindowLevel kIcons = -2147483603;
constexpr WindowLevel kBelowIcons = -2147483624;
constexpr std::int32_t kDock = 300;

// What becomes of a window of the Dock, as "owner/name".
std::string named(std::optional<std::string> name, std::optional<int> layer = kBelowIcons,
                  std::optional<std::int32_t> owner = kDock) {
  WindowInfo window{layer, owner, "Le Dock", std::move(name), 7, Rect{0, 0, 1440, 900}};
  nameWallpaper(window, {kDock, 301}, kIcons);
  EXPECT_EQ(window.number, 7);
  return *window.ownerName + "/" + window.name.value_or("(none)");
}

TEST(WallpaperWindow, IsKnownByItsOwnerAndItsLevelWhateverItsName) {
  EXPECT_EQ(named("Desktop Picture - Lake.heic"), "Dock/Desktop Picture");
  EXPECT_EQ(named("Wallpaper-4A1D"), "Dock/Desktop Picture");
  EXPECT_EQ(named(std::nullopt), "Dock/Desktop Picture");
  EXPECT_EQ(named(""), "Dock/Desktop Picture");
  EXPECT_EQ(named(std::nullopt, kBelowIcons, 301), "Dock/Desktop Picture");
}

TEST(WallpaperWindow, NoOtherWindowIsTakenForIt) {
  EXPECT_EQ(named(std::nullopt, kIcons), "Le Dock/(none)");
  EXPECT_EQ(named(std::nullopt, 20), "Le Dock/(none)");
  EXPECT_EQ(named(std::nullopt, std::nullopt), "Le Dock/(none)");
  EXPECT_EQ(named(std::nullopt, kBelowIcons, 400), "Le Dock/(none)");
  EXPECT_EQ(named(std::nullopt, kBelowIcons, std::nullopt), "Le Dock/(none)");
  EXPECT_EQ(named("Fullscreen Backdrop"), "Le Dock/Fullscreen Backdrop");
}

}  // namespace
}  // namespace harbor
