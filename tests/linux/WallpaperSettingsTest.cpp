#include "platform/linux/WallpaperSettings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "support/TemporaryFolder.h"

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

TEST(WallpaperSettings, ReadsTheDesktopOfPlasmasFirstScreen) {
  const auto wallpaper = parsePlasma(R"([ActionPlugins][0]
RightButton;NoModifier=org.kde.contextmenu

[Containments][1]
lastScreen=1
plugin=org.kde.plasma.folder
wallpaperplugin=org.kde.image

[Containments][1][Wallpaper][org.kde.image][General]
Image=file:///of-another-screen.png

[Containments][2]
formfactor=2
lastScreen=0
plugin=org.kde.panel

[Containments][7]
formfactor=0
lastScreen=0
plugin=org.kde.plasma.folder
wallpaperplugin=org.kde.image

[Containments][7][Wallpaper][org.kde.image][General]
Color=255,0,51
FillMode=1
Image=file:///home/a b/sea.png
)");
  ASSERT_TRUE(wallpaper);
  EXPECT_EQ(wallpaper->image, "file:///home/a b/sea.png");
  EXPECT_EQ(wallpaper->mode, WallpaperMode::fitted);
  EXPECT_EQ(wallpaper->background, (Colour{1.0, 0.0, 0.2, 1.0}));
}

TEST(WallpaperSettings, KnowsPlasmasOtherKindsOfWallpaper) {
  const auto of = [](const std::string& plugin, const std::string& settings) {
    return parsePlasma("[Containments][1]\nlastScreen=0\nwallpaperplugin=" + plugin +
                       "\n[Containments][1][Wallpaper][" + plugin + "][General]\n" + settings);
  };
  const auto slideShow = of("org.kde.slideshow", "Image=/now.png\n");
  ASSERT_TRUE(slideShow);
  EXPECT_EQ(slideShow->image, "/now.png");
  EXPECT_EQ(slideShow->mode, WallpaperMode::zoomed);
  const auto colour = of("org.kde.color", "Color=0,255,0\n");
  ASSERT_TRUE(colour);
  EXPECT_EQ(colour->mode, WallpaperMode::colourOnly);
  EXPECT_EQ(colour->background, (Colour{0.0, 1.0, 0.0, 1.0}));
  EXPECT_FALSE(of("org.kde.hunyango", "Image=/x.png\n"));
  EXPECT_EQ(of("org.kde.image", "FillMode=-1\nColor=x,y,9999\n")->background, (Colour{0.0, 0.0, 1.0, 1.0}));
}

class WallpaperPlaces : public testing::Test {
 protected:
  void write(const std::string& name, const std::string& text) {
    const std::filesystem::path path = std::filesystem::path(folder.path()) / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
  }
  std::vector<std::string> imagesOf(const std::string& program) {
    std::vector<std::string> images;
    for (const auto& wallpaper : wallpapersOf(program, {{at("user"), at("system")}, {at("data")}}))
      images.push_back(wallpaper.image);
    return images;
  }
  std::string at(const std::string& name) { return std::string(folder.path()) + "/" + name; }

  TemporaryFolder folder;
};

TEST_F(WallpaperPlaces, TheUsersSettingsComeBeforeThoseOfTheSystem) {
  write("system/pcmanfm-qt/lxqt/settings.conf", "[Desktop]\nWallpaper=/system.png\nWallpaperMode=zoom\n");
  EXPECT_EQ(imagesOf("pcmanfm-qt"), std::vector<std::string>{"/system.png"});
  write("user/pcmanfm-qt/lxqt/settings.conf", "[Desktop]\nWallpaper=/user.png\nWallpaperMode=zoom\n");
  EXPECT_EQ(imagesOf("pcmanfm-qt"), (std::vector<std::string>{"/user.png", "/system.png"}));
}

TEST_F(WallpaperPlaces, XfceFallsBackToWhatTheSystemBringsAlong) {
  const auto images = imagesOf("xfdesktop");
  ASSERT_FALSE(images.empty());
  EXPECT_EQ(images.front(), at("data") + "/images/desktop-base/default");
  EXPECT_EQ(images[1], at("data") + "/backgrounds/xfce/xfce-shapes.svg");
}

TEST_F(WallpaperPlaces, PlasmaTakesTheImageOfItsThemeInItsLargestSize) {
  write("user/plasma-org.kde.plasma.desktop-appletsrc",
        "[Containments][1]\nlastScreen=0\nwallpaperplugin=org.kde.image\n");
  EXPECT_TRUE(imagesOf("plasmashell").empty()) << "no theme says which";
  write("system/kdeglobals", "[KDE]\nLookAndFeelPackage=org.example.desktop\n");
  write("data/plasma/look-and-feel/org.example.desktop/contents/defaults", "[Wallpaper]\nImage=Lake\n");
  write("data/wallpapers/Lake/contents/images/640x480.png", "small");
  write("data/wallpapers/Lake/contents/images/3840x2160.png", "large");
  write("data/wallpapers/Lake/contents/images/readme.txt", "none");
  EXPECT_EQ(imagesOf("plasmashell"),
            std::vector<std::string>{at("data") + "/wallpapers/Lake/contents/images/3840x2160.png"});
}

TEST_F(WallpaperPlaces, AProgramThatIsNotKnownHasNone) {
  EXPECT_TRUE(imagesOf("nemo-desktop").empty());
  EXPECT_TRUE(imagesOf("").empty());
}

TEST_F(WallpaperPlaces, ANamedPipeInPlaceOfSettingsHoldsNothingUp) {
  std::filesystem::create_directories(at("user"));
  ASSERT_EQ(mkfifo((at("user") + "/plasma-org.kde.plasma.desktop-appletsrc").c_str(), 0600), 0);
  EXPECT_TRUE(imagesOf("plasmashell").empty());
}

}  // namespace
}  // namespace harbor
