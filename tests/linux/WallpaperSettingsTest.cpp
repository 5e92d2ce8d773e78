#include "platform/linux/WallpaperSettings.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(WallpaperSettings, ReadsEachModeOfPcmanfm) {
  const std::pair<const char*, WallpaperMode> modes[] = {
      {"color", WallpaperMode::colourOnly}, {"stretch", WallpaperMode::stretched},
      {"fit", WallpaperMode::fitted},       {"center", WallpaperMode::centred},
      {"tile", WallpaperMode::tiled},       {"crop", WallpaperMode::zoomed},
      {"screen", WallpaperMode::stretched},
  };
  for (const auto& [name, mode] : modes) {
    const auto wallpaper = parsePcmanfm("[*]\nwallpaper_mode=" + std::string(name) +
                                        "\nwallpaper=/home/a b/sea=1.jpg\ndesktop_bg=#ff8000\n");
    ASSERT_TRUE(wallpaper);
    EXPECT_EQ(wallpaper->mode, mode) << name;
    EXPECT_EQ(wallpaper->image, "/home/a b/sea=1.jpg");
    EXPECT_EQ(wallpaper->background.red, 1.0);
    EXPECT_NEAR(wallpaper->background.green, 128 / 255.0, 0.001);
    EXPECT_EQ(wallpaper->background.blue, 0.0);
  }
}

TEST(WallpaperSettings, ReadsPcmanfmQt) {
  const auto wallpaper =
      parsePcmanfm("[Desktop]\nBgColor=#000080\nWallpaper=/usr/share/sea.png\nWallpaperMode=zoom\n");
  ASSERT_TRUE(wallpaper);
  EXPECT_EQ(wallpaper->image, "/usr/share/sea.png");
  EXPECT_EQ(wallpaper->mode, WallpaperMode::zoomed);
  EXPECT_NEAR(wallpaper->background.blue, 128 / 255.0, 0.001);
}

TEST(WallpaperSettings, ReadsTheFirstWorkspaceOfXfdesktop) {
  const auto wallpaper =
      parseXfdesktop(R"(<?xml version="1.0"?><channel name="xfce4-desktop"><property name="backdrop">
    <property name="screen0"><property name="monitor0"><property name="workspace0">
      <property name="image-style" type="int" value="4"/>
      <property name="rgba1" type="array"><value type="double" value="0.5"/><value type="double" value="0.25"/>
        <value type="double" value="1.0"/><value type="double" value="1.0"/></property>
      <property name="last-image" type="string" value="/a.png"/></property>
    <property name="workspace1"><property name="image-style" type="int" value="2"/>
      <property name="last-image" type="string" value="/b.png"/></property>
    </property></property></property></channel>)");
  ASSERT_TRUE(wallpaper);
  EXPECT_EQ(wallpaper->image, "/a.png");
  EXPECT_EQ(wallpaper->mode, WallpaperMode::fitted);
  EXPECT_EQ(wallpaper->background, (Colour{0.5, 0.25, 1.0, 1.0}));
}

TEST(WallpaperSettings, AreAbsentInWhatHoldsNone) {
  for (const char* text : {"", "\n\n", "nothing", "=", "[*]\n", "<", "<channel/>", "\xff\xfe\n=\xff"}) {
    EXPECT_FALSE(parsePcmanfm(text)) << text;
    EXPECT_FALSE(parseXfdesktop(text)) << text;
  }
}

TEST(WallpaperSettings, KeepTheDefaultsForDamagedValues) {
  const auto wallpaper = parsePcmanfm("wallpaper_mode=spiral\ndesktop_bg=notacolour\nwallpaper=/x\n");
  ASSERT_TRUE(wallpaper);
  EXPECT_EQ(wallpaper->mode, WallpaperMode::colourOnly);
  EXPECT_EQ(wallpaper->background, Colour::black());
  const auto other = parseXfdesktop(
      R"(<p><property name="image-style" value="99"/><property name="last-image" value="/x"/>)");
  ASSERT_TRUE(other);
  EXPECT_EQ(other->mode, WallpaperMode::stretched);
}

}  // namespace
}  // namespace harbor
