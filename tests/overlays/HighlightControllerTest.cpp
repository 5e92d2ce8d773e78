#include "overlays/HighlightController.h"

#include "OverlaysFixture.h"

namespace harbor {
namespace {

struct Highlight : OverlaysFixture {
  Highlight() {
    model.load(platform.settings);
    platform.pointerMonitor.position = {400, 300};
  }

  TWHighlightMouseClicks model;
  HighlightController highlight{model, platform.settings, platform.windowServer, platform.overlayWindows,
                                platform.pointerMonitor};
};

TEST_F(Highlight, StartsWithAThirtyPointRingAndNothingElse) {
  EXPECT_EQ(highlight.circularViewSize, 30.0);
  EXPECT_EQ(highlight._mouseLocation, (Point{0, 0}));
  EXPECT_FALSE(highlight.mouseWindow);
  EXPECT_FALSE(highlight.circularView);
  EXPECT_FALSE(highlight.eventHandlerObject);
}

TEST_F(Highlight, MakesTheWindowAsDescribed) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  ASSERT_EQ(platform.overlayWindows.made, 1);
  EXPECT_EQ(overlay().spec, (OverlayWindowSpec{kScreen, OverlayWindowSpec::Creation::immediate,
                                               OverlayWindowSpec::Surface::translucent, 1000,
                                               CollectionBehaviour::canJoinAllSpaces}));
  EXPECT_EQ(static_cast<unsigned>(overlay().collectionBehaviour), 1u);
  EXPECT_EQ(overlay().backgroundColour->alpha, 0.0);
  EXPECT_TRUE(overlay().ignoresMouseEvents);
  EXPECT_TRUE(overlay().isOnScreen());
}

TEST_F(Highlight, SwitchingOnStoresAndWatchesMovementAndDrags) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  EXPECT_TRUE(model.isHighlightMouseClicksEnabled);
  EXPECT_TRUE(stored("HighlightMouseClicksEnabled"));
  EXPECT_TRUE(highlight.eventHandlerObject);
  EXPECT_EQ(platform.pointerMonitor.monitors.count(), 1u);
  EXPECT_EQ(static_cast<unsigned>(*platform.pointerMonitor.events), 224u);
}

TEST_F(Highlight, MapsEachSizeTitleToItsSide) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  const std::pair<const char*, double> rows[] = {{"1", 30}, {"2", 40}, {"3", 50},  {"4", 60},  {"5", 70},
                                                 {"6", 80}, {"7", 90}, {"8", 100}, {"9", 110}, {"10", 120}};
  for (const auto& [title, side] : rows) {
    highlight.sizeClicked(sender(title));
    EXPECT_EQ(highlight.circularViewSize, side) << title;
    EXPECT_EQ(storedText("SelectedSize"), title);
    // The ring is resized at once, around the pointer.
    EXPECT_EQ(overlay().drawingFrame, (Rect{400 - side / 2, 300 - side / 2, side, side})) << title;
  }
}

TEST_F(Highlight, AnUnknownSizeLeavesTheRingAsItWas) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  highlight.sizeClicked(sender("10"));
  for (const char* title : {"11", "0", "", "05", "10 "}) {
    highlight.sizeClicked(sender(title));
    EXPECT_EQ(highlight.circularViewSize, 120.0) << title;
    EXPECT_EQ(storedText("SelectedSize"), title);
  }
}

TEST_F(Highlight, TheRingFollowsThePointer) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  EXPECT_EQ(overlay().drawingFrame, (Rect{365, 265, 70, 70}));
  platform.pointerMonitor.moveTo({10, 20});
  EXPECT_EQ(highlight._mouseLocation, (Point{10, 20}));
  EXPECT_EQ(overlay().drawingFrame, (Rect{-25, -15, 70, 70}));
  EXPECT_EQ(overlay().drawing, TWStyleKit::drawRing("Blue Color"));
  EXPECT_EQ(highlight.circularView->frame, overlay().drawingFrame);
}

TEST_F(Highlight, ColoursAreTakenUpAtOnce) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  for (const char* title : TWHighlightMouseClicks::availableHighlightColors) {
    highlight.highlightColorClicked(sender(title));
    EXPECT_EQ(overlay().drawing, TWStyleKit::drawRing(title)) << title;
    EXPECT_EQ(storedText("SelectedHighlightColor"), title);
  }
}

TEST_F(Highlight, TheRingIsPutInFrontAtEveryMovement) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  overlay().setLevel(3);
  const int before = overlay().ordersFront;
  platform.pointerMonitor.moveTo({500, 500});
  EXPECT_EQ(overlay().level, 1000);
  EXPECT_EQ(overlay().ordersFront, before + 1);
}

TEST_F(Highlight, SwitchingOffRemovesTheRingAtOnceAndStopsUpdates) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  highlight.highlightMouseClicksEnabled(switchedOn());
  EXPECT_FALSE(model.isHighlightMouseClicksEnabled);
  EXPECT_FALSE(stored("HighlightMouseClicksEnabled"));
  EXPECT_FALSE(overlay().isOnScreen());
  EXPECT_FALSE(highlight.eventHandlerObject);
  EXPECT_EQ(platform.pointerMonitor.monitors.count(), 0u);
  const int drawings = overlay().drawings;
  platform.pointerMonitor.moveTo({1, 1});
  highlight.followPointer();
  EXPECT_EQ(overlay().drawings, drawings);
  EXPECT_FALSE(overlay().isOnScreen());
}

TEST_F(Highlight, SwitchingOffBeforeAnyWindowWasMadeIsHarmless) {
  highlight.highlightMouseClicksEnabled(switchedOn());
  EXPECT_EQ(platform.overlayWindows.made, 0);
}

TEST_F(Highlight, SwitchingOnAgainReusesTheWindowWithANewMonitor) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  highlight.highlightMouseClicksEnabled(switchedOn());
  platform.pointerMonitor.position = {50, 60};
  highlight.highlightMouseClicksEnabled(switchedOff());
  EXPECT_EQ(platform.overlayWindows.made, 1);
  EXPECT_TRUE(overlay().isOnScreen());
  EXPECT_EQ(platform.pointerMonitor.monitors.count(), 1u);
  EXPECT_EQ(overlay().drawingFrame, (Rect{15, 25, 70, 70}));
}

TEST_F(Highlight, SwitchingOnAgainNeverShowsTheRingWhereItWas) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  highlight.highlightMouseClicksEnabled(switchedOn());
  platform.pointerMonitor.position = {900, 600};
  highlight.highlightMouseClicksEnabled(switchedOff());
  EXPECT_EQ(overlay().drawingFrameWhenOrderedFront, (Rect{865, 565, 70, 70}));
}

TEST_F(Highlight, ApplyingAgainInstallsNoSecondMonitor) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  highlight.applyHighlight();
  build(highlight);
  EXPECT_EQ(platform.pointerMonitor.added, 1);
  EXPECT_EQ(platform.pointerMonitor.monitors.count(), 1u);
  EXPECT_EQ(platform.overlayWindows.made, 1);
}

TEST_F(Highlight, ChoicesMadeWhileOffAreStoredAndShowNothing) {
  highlight.highlightColorClicked(sender("Red Color"));
  highlight.sizeClicked(sender("10"));
  EXPECT_EQ(storedText("SelectedHighlightColor"), "Red Color");
  EXPECT_EQ(storedText("SelectedSize"), "10");
  EXPECT_EQ(highlight.circularViewSize, 30.0);
  EXPECT_EQ(platform.overlayWindows.made, 0);
}

TEST_F(Highlight, TheFirstBuildBringsBackARingThatWasLeftOn) {
  platform.settings.setBool("HighlightMouseClicksEnabled", true);
  model.load(platform.settings);
  build(highlight, MenuBuild::first);
  EXPECT_TRUE(overlay().isOnScreen());
  EXPECT_EQ(highlight.circularViewSize, 70.0);
}

TEST_F(Highlight, TheRingStaysAtThePointerOnADisplayThatDoesNotLieAtTheOrigin) {
  platform.windowServer.displayBounds = {1920, 100, 1280, 800};
  platform.pointerMonitor.position = {2000, 200};
  highlight.highlightMouseClicksEnabled(switchedOff());
  EXPECT_EQ(overlay().frame, (Rect{1920, 100, 1280, 800}));
  EXPECT_EQ(overlay().drawingFrame, (Rect{45, 65, 70, 70}));
}

TEST_F(Highlight, FollowsAMainDisplayThatChanges) {
  highlight.highlightMouseClicksEnabled(switchedOff());
  platform.windowServer.resizeDisplay({100, 0, 1920, 1080});
  EXPECT_EQ(overlay().frame, (Rect{100, 0, 1920, 1080}));
  EXPECT_EQ(overlay().drawingFrame, (Rect{265, 265, 70, 70}));
}

TEST_F(Highlight, ListsItsSectionInOrder) {
  EXPECT_EQ(describe(highlight),
            "[ ] Highlight Mouse Cursor\n"
            "  [ ] Enable action\n"
            "  ---\n"
            "  [ ] Red Color action\n"
            "  [ ] Orange Color action\n"
            "  [ ] Yellow Color action\n"
            "  [ ] Green Color action\n"
            "  [x] Blue Color action\n"
            "  [ ] White Color action\n"
            "  [ ] Black Color action\n"
            "  ---\n"
            "  [ ] 1 action\n"
            "  [ ] 2 action\n"
            "  [ ] 3 action\n"
            "  [ ] 4 action\n"
            "  [x] 5 action\n"
            "  [ ] 6 action\n"
            "  [ ] 7 action\n"
            "  [ ] 8 action\n"
            "  [ ] 9 action\n"
            "  [ ] 10 action\n");
}

TEST_F(Highlight, TheItemsCallTheirActions) {
  const auto click = [this](std::size_t row) {
    const MenuItem item = build(highlight).submenu.at(row);
    item.action(item);
  };
  click(0);
  EXPECT_TRUE(model.isHighlightMouseClicksEnabled);
  EXPECT_TRUE(build(highlight).bold);
  click(2);
  EXPECT_EQ(model.selectedHighlightColor, "Red Color");
  click(19);
  EXPECT_EQ(model.selectedSize, "10");
}

TEST_F(Highlight, AStoredCustomColourMarksNoColour) {
  model.selectedHighlightColor = "Custom Color";
  const Menu submenu = build(highlight).submenu;
  for (std::size_t row = 0; row < 9; ++row)
    EXPECT_EQ(submenu[row].state, MenuItem::State::off) << submenu[row].title;
}

TEST_F(Highlight, WhereOverlaysAreNotAvailableTheReasonIsGiven) {
  platform.overlayWindows.unavailable = "Not on this desktop.";
  const MenuItem section = build(highlight);
  EXPECT_FALSE(section.submenu.front().enabled);
  EXPECT_EQ(section.submenu.back().title, "Not on this desktop.");
}

}  // namespace
}  // namespace harbor
