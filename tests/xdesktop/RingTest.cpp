// The ring at the pointer, and the movements that it follows.
#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include "overlays/TWStyleKit.h"
#include "platform/linux/LinuxPointerMonitor.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr Pixel kDesktop{32, 64, 96};
constexpr Pixel kBlue{37, 121, 204};
constexpr int kSide = 70;

class Ring : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    desktop.run({"hsetroot", "-solid", "#204060"});
    ASSERT_TRUE(desktop.startWindowManager({"openbox"}));
    if (GetParam()) {
      ASSERT_TRUE(desktop.startCompositor());
    }
    overlays = std::make_unique<Overlays>(desktop);
    pointer = std::make_unique<LinuxPointerMonitor>(overlays->connection.get());
    window = overlays->windows.make({.frame = overlays->server.mainDisplayBounds(),
                                     .creation = OverlayWindowSpec::Creation::immediate,
                                     .surface = OverlayWindowSpec::Surface::translucent,
                                     .level = kScreenSaverWindowLevel});
    window->setBackgroundColour(Colour::black().withAlpha(0.0));
    window->setIgnoresMouseEvents();
    window->orderFrontRegardless();
    monitor = pointer->addGlobalMonitor(
        PointerEvents::moved | PointerEvents::leftDragged | PointerEvents::rightDragged,
        [this] { follow(); });
    follow();
  }

  void follow() {
    const auto at = pointer->location();
    window->orderFrontRegardless();
    window->setDrawing(TWStyleKit::drawRing("Blue Color"),
                       {at.x - kSide / 2.0, at.y - kSide / 2.0, kSide, kSide});
  }

  // Moves the pointer as a mouse does.
  void move(int x, int y) {
    xcb_test_fake_input(desktop.observer().get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME,
                        desktop.observer().root(), static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                        0);
    xcb_flush(desktop.observer().get());
  }

  // Left of the pointer in the middle of the ring's band.
  bool showsRingAt(int x, int y) { return desktop.showsPixel(x - kSide * 9 / 20, y, kBlue, 6); }

  PrivateDesktop desktop;
  std::unique_ptr<Overlays> overlays;
  std::unique_ptr<LinuxPointerMonitor> pointer;
  std::unique_ptr<OverlayWindow> window;
  Subscription monitor;
};

TEST_P(Ring, ShowsItsColourAroundThePointerAndNothingElsewhere) {
  move(300, 200);
  EXPECT_TRUE(showsRingAt(300, 200)) << desktop.pixel(300 - kSide * 9 / 20, 200);
  EXPECT_EQ(desktop.pixel(300 + 14, 200 + 2), kDesktop) << "the inside is clear";
  EXPECT_EQ(desktop.pixel(300 - kSide / 2 + 1, 200 - kSide / 2 + 1), kDesktop) << "the corner is clear";
  EXPECT_EQ(desktop.pixel(500, 400), kDesktop);
  move(600, 400);
  EXPECT_TRUE(showsRingAt(600, 400)) << desktop.pixel(600 - kSide * 9 / 20, 400);
  EXPECT_TRUE(desktop.showsPixel(300 - kSide * 9 / 20, 200, kDesktop)) << "nothing is left behind";
  desktop.keepScreenshot(GetParam() ? "ring-composited" : "ring-shaped");
}

TEST_P(Ring, CatchesUpWithAWarpedPointer) {
  xcb_warp_pointer(desktop.observer().get(), XCB_NONE, desktop.observer().root(), 0, 0, 0, 0, 450, 350);
  xcb_flush(desktop.observer().get());
  EXPECT_TRUE(showsRingAt(450, 350)) << desktop.pixel(450 - kSide * 9 / 20, 350);
}

TEST_P(Ring, LetsClicksThroughAndTakesNoFocus) {
  const auto below = desktop.makeWindow({200, 100, 300, 300}, {200, 120, 40}, {.title = "below"});
  desktop.activate(below);
  int clicks = 0;
  const auto counting = desktop.observer().onEvent([&](const XcbConnection::Event& event) {
    if ((event.response_type & 0x7f) == XCB_BUTTON_PRESS) ++clicks;
  });
  move(300, 300);
  ASSERT_TRUE(showsRingAt(300, 300));
  // On the band itself.
  move(300, 300);
  desktop.run({"xdotool", "click", "1"});
  EXPECT_TRUE(waitUntil([&] { return clicks > 0; }, std::chrono::seconds(2)));
  EXPECT_EQ(desktop.activeWindow(), below);
}

TEST_P(Ring, EndsAtTheEdgeOfItsDisplay) {
  // A display that is the left half of the screen.
  window->setFrame({0, 0, 400, 600});
  move(410, 300);
  EXPECT_TRUE(showsRingAt(410, 300)) << desktop.pixel(410 - kSide * 9 / 20, 300);
  for (int x = 400; x < 460; ++x)
    ASSERT_EQ(desktop.pixel(x, 300), kDesktop) << x;
  move(300, 300);
  EXPECT_TRUE(desktop.showsPixel(300 + kSide * 9 / 20, 300, kBlue, 6)) << "all of it is there again";
  move(600, 300);
  EXPECT_TRUE(desktop.showsPixel(300 + kSide * 9 / 20, 300, kDesktop));
  EXPECT_EQ(desktop.pixel(600 - kSide * 9 / 20, 300), kDesktop);
}

TEST_P(Ring, IsGoneAtOnceWhenOrderedOutAndStopsFollowing) {
  move(300, 200);
  ASSERT_TRUE(showsRingAt(300, 200));
  monitor.reset();
  window->orderOut();
  EXPECT_TRUE(desktop.showsPixel(300 - kSide * 9 / 20, 200, kDesktop));
  move(500, 400);
  waitFor(std::chrono::milliseconds(400));
  EXPECT_EQ(desktop.pixel(500 - kSide * 9 / 20, 400), kDesktop);
}

INSTANTIATE_TEST_SUITE_P(Compositing, Ring, testing::Values(true, false),
                         [](const auto& tested) { return tested.param ? "Composited" : "Shaped"; });

TEST(PointerMonitorWithoutX, RestsAtTheOrigin) {
  LinuxPointerMonitor pointer(nullptr);
  EXPECT_EQ(pointer.location(), Point());
  const auto monitor = pointer.addGlobalMonitor(PointerEvents::moved, [] { FAIL(); });
}

}  // namespace
}  // namespace harbor
