#include "overlays/HideDesktopIconsController.h"

#include "OverlaysFixture.h"

namespace harbor {
namespace {

struct HideDesktopIcons : OverlaysFixture {
  static constexpr int kIconLevel = -2147483603;

  TWHideDesktopIcons model;
  HideDesktopIconsController icons{
      model, platform.settings, dialog, platform.workspace, platform.windowServer, platform.overlayWindows};
  MemoryWindowServer& server = platform.windowServer;

  // Adds a window of the desktop, at the back, with a picture of that name.
  WindowNumber addDesktopWindow(std::optional<std::string> owner, std::optional<std::string> name,
                                std::optional<Rect> bounds, const std::string& picture) {
    const WindowNumber number = server.nextNumber();
    server.windows.push_back(
        {{kIconLevel - 20, 50, std::move(owner), std::move(name), number, bounds}, true, false});
    server.pictures[number] = std::make_shared<MemoryPicture>(picture);
    return number;
  }
  WindowNumber addWallpaper(const std::string& picture) {
    return addDesktopWindow("Dock", "Desktop Picture - " + picture, kScreen, picture);
  }
  static std::string nameOf(const std::optional<Image>& image) {
    if (!image || !image->picture) return "(none)";
    return dynamic_cast<const MemoryPicture&>(*image->picture).name;
  }
};

TEST_F(HideDesktopIcons, MakesTheWindowAsDescribed) {
  addWallpaper("Lake");
  icons.hideDesktopIconsEnabled(switchedOff());
  ASSERT_EQ(platform.overlayWindows.made, 1);
  EXPECT_EQ(overlay().spec.frame, kScreen);
  EXPECT_EQ(overlay().spec.creation, OverlayWindowSpec::Creation::deferred);
  EXPECT_EQ(overlay().spec.surface, OverlayWindowSpec::Surface::opaque);
  EXPECT_EQ(overlay().level, kIconLevel + 1);
  EXPECT_EQ(static_cast<unsigned>(overlay().collectionBehaviour), 17u);
  EXPECT_FALSE(overlay().ignoresMouseEvents);
  EXPECT_EQ(nameOf(overlay().contents), "Lake");
  EXPECT_EQ(overlay().contents->size, (Size{1280, 800}));
}

TEST_F(HideDesktopIcons, ThePictureLiesAboveTheIconsAndBelowEveryWindow) {
  const WindowNumber wallpaper = addWallpaper("Lake");
  const WindowNumber desktopIcons = server.nextNumber();
  server.insert({{kIconLevel, 60, "Finder", std::nullopt, desktopIcons, kScreen}, true, false});
  const WindowNumber editor = server.open(kEditor, kPart);
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_EQ(server.stack(), (std::vector<WindowNumber>{editor, overlay().number, desktopIcons, wallpaper}));
  // A click on the desktop lands on the picture.
  EXPECT_EQ(server.windowNumberAtPoint({10, 10}, kNoWindow), overlay().number);
}

TEST_F(HideDesktopIcons, TellsBeforeItHidesAndDoesNotOfferToCancel) {
  platform.alertPanel.whileShown = [this](const Alert& alert) {
    EXPECT_EQ(alert.title, "Your Desktop Icons Will Be Hidden!");
    EXPECT_EQ(alert.text, "Your mouse actions on the desktop will also be disabled for your security.");
    EXPECT_EQ(alert.buttons, std::vector<std::string>{"OK"});
    EXPECT_EQ(alert.suppressionTitle, "Do not show again");
    EXPECT_FALSE(model.isHideDesktopIconsEnabled);
    EXPECT_EQ(platform.overlayWindows.made, 0);
  };
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_TRUE(model.isHideDesktopIconsEnabled);
  EXPECT_TRUE(stored("HideDesktopIconsEnabled"));
}

TEST_F(HideDesktopIcons, AnEndDuringTheAlertHidesNothing) {
  platform.alertPanel.answers = {{std::nullopt, false}};
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_FALSE(model.isHideDesktopIconsEnabled);
  EXPECT_FALSE(stored("HideDesktopIconsEnabled"));
  EXPECT_EQ(platform.overlayWindows.made, 0);
}

TEST_F(HideDesktopIcons, WithTheAlertSuppressedTheIconsAreHiddenAtOnce) {
  platform.settings.setBool("HideDesktopIconsAlertSuppression", true);
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_TRUE(platform.alertPanel.shown.empty());
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(HideDesktopIcons, ATickedBoxSuppressesTheAlertFromThenOn) {
  platform.alertPanel.answers = {{0, true}};
  icons.hideDesktopIconsEnabled(switchedOff());
  icons.hideDesktopIconsEnabled(switchedOn());
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
}

TEST_F(HideDesktopIcons, SwitchingOffTakesThePictureAwaySilentlyAndKeepsTheWindow) {
  icons.hideDesktopIconsEnabled(switchedOff());
  icons.hideDesktopIconsEnabled(switchedOn());
  EXPECT_EQ(platform.alertPanel.shown.size(), 1u);
  EXPECT_FALSE(model.isHideDesktopIconsEnabled);
  EXPECT_FALSE(stored("HideDesktopIconsEnabled"));
  EXPECT_FALSE(overlay().isOnScreen());
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_EQ(platform.overlayWindows.made, 1);
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(HideDesktopIcons, TakesTheFirstWallpaperOfTheMainScreen) {
  addDesktopWindow("Finder", "Desktop Picture", kScreen, "of another owner");
  addDesktopWindow(std::nullopt, "Desktop Picture", kScreen, "of no owner");
  addDesktopWindow("Dock", "Dock", kScreen, "with another name");
  addDesktopWindow("Dock", "My Desktop Picture", kScreen, "with the name inside");
  addDesktopWindow("Dock", std::nullopt, kScreen, "without a name");
  addDesktopWindow("Dock", "Desktop Picture", std::nullopt, "without bounds");
  addDesktopWindow("Dock", "Desktop Picture", Rect{1280, 0, 1920, 1080}, "of another screen");
  addDesktopWindow("Dock", "Desktop Picture", Rect{0, 0, 1, 1}, "right");
  addDesktopWindow("Dock", "Desktop Picture", kScreen, "second");
  EXPECT_EQ(nameOf(icons.captureDesktopPicture()), "right");
}

TEST_F(HideDesktopIcons, TheWallpaperIsThatOfTheScreenWithTheKeyboard) {
  server.screenFrame = Rect{1280, 0, 1920, 1080};
  addDesktopWindow("Dock", "Desktop Picture", kScreen, "first");
  addDesktopWindow("Dock", "Desktop Picture", Rect{1280, 0, 1920, 1080}, "second");
  const Image image = icons.captureDesktopPicture();
  EXPECT_EQ(nameOf(image), "second");
  EXPECT_EQ(image.size, (Size{1920, 1080}));
}

TEST_F(HideDesktopIcons, WithoutAWallpaperWindowThePictureIsThatOfWindowZero) {
  server.pictures[0] = std::make_shared<MemoryPicture>("window 0");
  EXPECT_EQ(nameOf(icons.captureDesktopPicture()), "window 0");
  EXPECT_EQ(server.picturesTaken, std::vector<WindowNumber>{0});
}

TEST_F(HideDesktopIcons, WithoutAnyPictureTheWindowIsShownAllTheSame) {
  server.listsWindows = false;
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_TRUE(overlay().isOnScreen());
  EXPECT_EQ(nameOf(overlay().contents), "(none)");
}

TEST_F(HideDesktopIcons, WherePicturesNeedAPermissionNothingIsShownWithoutOne) {
  server.withholdsPictures = true;
  const WindowNumber wallpaper = addWallpaper("Lake");
  const auto picture = server.pictures.extract(wallpaper).mapped();
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_FALSE(overlay().isOnScreen());
  // The user has given the permission meanwhile, and takes it back later.
  server.pictures[wallpaper] = picture;
  build(icons);
  EXPECT_TRUE(overlay().isOnScreen());
  EXPECT_EQ(nameOf(overlay().contents), "Lake");
  server.pictures.clear();
  build(icons);
  EXPECT_FALSE(overlay().isOnScreen());
}

TEST_F(HideDesktopIcons, ThePermissionIsAskedForWhenTheToolIsSwitchedOnAndOnlyThen) {
  build(icons);
  EXPECT_EQ(server.pictureRequests, 0);
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_EQ(server.pictureRequests, 1);
  build(icons);
  platform.workspace.changeSpace();
  icons.hideDesktopIconsEnabled(switchedOn());
  EXPECT_EQ(server.pictureRequests, 1);
}

TEST_F(HideDesktopIcons, AChangeOfSpaceReplacesThePicture) {
  const WindowNumber wallpaper = addWallpaper("Lake");
  icons.hideDesktopIconsEnabled(switchedOff());
  server.pictures[wallpaper] = std::make_shared<MemoryPicture>("Forest");
  platform.workspace.changeSpace();
  EXPECT_EQ(nameOf(overlay().contents), "Forest");
}

TEST_F(HideDesktopIcons, EveryBuildOfTheMenuRefreshesThePicture) {
  addWallpaper("Lake");
  icons.hideDesktopIconsEnabled(switchedOff());
  const std::size_t before = server.picturesTaken.size();
  build(icons);
  EXPECT_EQ(server.picturesTaken.size(), before + 1);
}

TEST_F(HideDesktopIcons, AChangeOfSpaceWhileOffShowsNothing) {
  icons.hideDesktopIconsEnabled(switchedOff());
  icons.hideDesktopIconsEnabled(switchedOn());
  const std::size_t before = server.picturesTaken.size();
  platform.workspace.changeSpace();
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_EQ(server.picturesTaken.size(), before);
}

TEST_F(HideDesktopIcons, ObservesTheSpacesOnceHoweverOftenItIsSwitched) {
  for (int i = 0; i < 3; ++i) {
    icons.hideDesktopIconsEnabled(switchedOff());
    icons.hideDesktopIconsEnabled(switchedOn());
  }
  icons.hideDesktopIconsEnabled(switchedOff());
  const std::size_t before = server.picturesTaken.size();
  platform.workspace.changeSpace();
  EXPECT_EQ(server.picturesTaken.size(), before + 1);
}

TEST_F(HideDesktopIcons, TakesUpAChangedResolution) {
  icons.hideDesktopIconsEnabled(switchedOff());
  server.resizeDisplay({0, 0, 1920, 1080});
  EXPECT_EQ(overlay().frame, (Rect{0, 0, 1920, 1080}));
  EXPECT_EQ(overlay().contents->size, (Size{1920, 1080}));
}

TEST_F(HideDesktopIcons, AStoredFlagDoesNotHideTheIconsAtTheNextStart) {
  icons.hideDesktopIconsEnabled(switchedOff());
  ASSERT_TRUE(stored("HideDesktopIconsEnabled"));
  TWHideDesktopIcons next;
  HideDesktopIconsController restarted(next, platform.settings, dialog, platform.workspace, server,
                                       platform.overlayWindows);
  const int made = platform.overlayWindows.made;
  EXPECT_FALSE(build(restarted, MenuBuild::first).bold);
  EXPECT_EQ(platform.overlayWindows.made, made);
}

TEST_F(HideDesktopIcons, WhereThePictureIsNotKnownTheToolStaysOffAndNothingIsStored) {
  server.wallpaperUnavailable = "Not known.";
  EXPECT_EQ(describe(icons),
            "[ ] Hide Desktop Icons\n"
            "  [ ] Enable disabled action\n"
            "  ---\n"
            "  [ ] Not known. disabled\n");
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_FALSE(model.isHideDesktopIconsEnabled);
  EXPECT_FALSE(platform.settings.boolForKey("HideDesktopIconsEnabled"));
  EXPECT_EQ(platform.overlayWindows.made, 0);
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(HideDesktopIcons, APictureThatIsNoLongerKnownGoesAndComesBackWithTheSwitchAsItWas) {
  addWallpaper("Lake");
  icons.hideDesktopIconsEnabled(switchedOff());
  server.wallpaperUnavailable = "Not known.";
  EXPECT_EQ(describe(icons),
            "[ ] Hide Desktop Icons bold\n"
            "  [x] Enable action\n"
            "  ---\n"
            "  [ ] Not known. disabled\n")
      << "what is on can be switched off";
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_TRUE(stored("HideDesktopIconsEnabled"));
  server.wallpaperUnavailable.reset();
  build(icons);
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(HideDesktopIcons, APictureThatTheDesktopKeepsOverWindowsSwitchesTheToolOffAndSaysSo) {
  addWallpaper("Lake");
  icons.hideDesktopIconsEnabled(switchedOff());
  overlay().displace();
  EXPECT_FALSE(model.isHideDesktopIconsEnabled);
  EXPECT_FALSE(stored("HideDesktopIconsEnabled"));
  EXPECT_FALSE(overlay().isOnScreen());
  ASSERT_EQ(platform.overlayWindows.notifications.size(), 1u);
  EXPECT_EQ(platform.overlayWindows.notifications[0].first, "Hide Desktop Icons was switched off");
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(HideDesktopIcons, IsNeverSeenWithThePictureOfBefore) {
  const WindowNumber wallpaper = addWallpaper("Lake");
  icons.hideDesktopIconsEnabled(switchedOff());
  icons.hideDesktopIconsEnabled(switchedOn());
  server.pictures[wallpaper] = std::make_shared<MemoryPicture>("Forest");
  server.resizeDisplay({0, 0, 1920, 1080});
  icons.hideDesktopIconsEnabled(switchedOff());
  EXPECT_EQ(nameOf(overlay().contentsWhenOrderedFront), "Forest");
  EXPECT_EQ(overlay().frameWhenOrderedFront, (Rect{0, 0, 1920, 1080}));
}

TEST_F(HideDesktopIcons, ListsItsSection) {
  EXPECT_EQ(describe(icons), "[ ] Hide Desktop Icons\n  [ ] Enable action\n");
  const MenuItem item = build(icons).submenu.front();
  item.action(item);
  EXPECT_EQ(describe(icons), "[ ] Hide Desktop Icons bold\n  [x] Enable action\n");
}

TEST_F(HideDesktopIcons, WhereOverlaysAreNotAvailableTheReasonIsGiven) {
  platform.overlayWindows.unavailable = "Not on this desktop.";
  EXPECT_EQ(describe(icons),
            "[ ] Hide Desktop Icons\n"
            "  [ ] Enable disabled action\n"
            "  ---\n"
            "  [ ] Not on this desktop. disabled\n");
}

}  // namespace
}  // namespace harbor
