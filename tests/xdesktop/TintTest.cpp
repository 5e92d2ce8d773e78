// The tint above everything on the screen, blended where something blends and as scan lines where nothing
// does.
#include <gtest/gtest.h>
#include <signal.h>

#include <cmath>
#include <filesystem>

#include "overlays/TWStyleKit.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr Pixel kDesktop{32, 64, 96};
constexpr Pixel kWindow{200, 120, 40};
constexpr Colour kTint{0.937, 0.212, 0.227, 1.0};
constexpr Pixel kTintPixel{239, 54, 58};
constexpr double kAlpha = 0.45;

class Tint : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    desktop.run({"hsetroot", "-solid", "#204060"});
    ASSERT_TRUE(desktop.startWindowManager({"openbox"}));
  }

  void lay() {
    overlays = std::make_unique<Overlays>(desktop);
    tint = overlays->windows.make({.frame = overlays->server.mainDisplayBounds(),
                                   .creation = OverlayWindowSpec::Creation::immediate,
                                   .surface = OverlayWindowSpec::Surface::translucent,
                                   .level = kScreenSaverWindowLevel});
    tint->setBackgroundColour(kTint.withAlpha(kAlpha));
    tint->setIgnoresMouseEvents();
    tint->orderFrontRegardless();
  }

  // The part of the rows of a column that are of the colour.
  double coverageOf(const Pixel& colour, int x, int from, int to) {
    int covered = 0;
    for (int y = from; y < to; ++y)
      covered += desktop.pixel(x, y) == colour ? 1 : 0;
    return static_cast<double>(covered) / (to - from);
  }

  PrivateDesktop desktop;
  std::unique_ptr<Overlays> overlays;
  std::unique_ptr<OverlayWindow> tint;
};

TEST_F(Tint, IsTheColourOverTheScreenAtItsAlphaWithinRounding) {
  ASSERT_TRUE(desktop.startCompositor());
  desktop.makeWindow({100, 100, 200, 200}, kWindow);
  lay();
  EXPECT_TRUE(desktop.showsPixel(600, 500, blended(kDesktop, kTintPixel, kAlpha), 2))
      << desktop.pixel(600, 500) << blended(kDesktop, kTintPixel, kAlpha);
  EXPECT_TRUE(desktop.showsPixel(200, 200, blended(kWindow, kTintPixel, kAlpha), 2))
      << desktop.pixel(200, 200);
  tint->setBackgroundColour(Colour{1, 1, 1, 0.05});
  EXPECT_TRUE(desktop.showsPixel(600, 500, blended(kDesktop, {255, 255, 255}, 0.05), 2))
      << desktop.pixel(600, 500);
}

TEST_F(Tint, LiesAboveFullScreenWindowsPanelsAndMenusAndComesBackOnTop) {
  ASSERT_TRUE(desktop.startCompositor());
  lay();
  desktop.makeWindow({0, 0, 800, 600}, kWindow, {.type = "NORMAL", .states = {"FULLSCREEN"}});
  EXPECT_TRUE(desktop.showsPixel(700, 500, blended(kWindow, kTintPixel, kAlpha), 2))
      << desktop.pixel(700, 500);
  desktop.makeWindow({0, 0, 800, 30}, {220, 220, 220}, {.type = "DOCK"});
  desktop.makeWindow({300, 100, 100, 200}, {250, 250, 120}, {.isOverrideRedirect = true});
  EXPECT_TRUE(desktop.showsPixel(350, 200, blended({250, 250, 120}, kTintPixel, kAlpha), 2))
      << desktop.pixel(350, 200);
}

TEST_F(Tint, IsNotRaisedOverALocker) {
  ASSERT_TRUE(desktop.startCompositor());
  lay();
  constexpr Pixel kLocker{10, 20, 30};
  desktop.makeWindow({0, 0, 800, 600}, kLocker, {.isOverrideRedirect = true});
  desktop.makeWindow({300, 200, 200, 50}, {90, 90, 90}, {.isOverrideRedirect = true});
  waitFor(std::chrono::milliseconds(500));
  EXPECT_TRUE(desktop.showsPixel(100, 100, kLocker)) << desktop.pixel(100, 100);
}

TEST_F(Tint, StaysBelowTheRingWhateverIsOrderedFrontLast) {
  ASSERT_TRUE(desktop.startCompositor());
  lay();
  auto ring = overlays->windows.make({.frame = overlays->server.mainDisplayBounds(),
                                      .surface = OverlayWindowSpec::Surface::translucent,
                                      .level = kScreenSaverWindowLevel});
  ring->setIgnoresMouseEvents();
  ring->setDrawing(TWStyleKit::drawRing("Green Color"), {200, 200, 120, 120});
  ring->orderFrontRegardless();
  tint->orderOut();
  tint->orderFrontRegardless();
  EXPECT_TRUE(desktop.showsPixel(260, 206, {32, 152, 68}, 2)) << desktop.pixel(260, 206);
  EXPECT_TRUE(desktop.showsPixel(260, 260, blended(kDesktop, kTintPixel, kAlpha), 2));
}

TEST_F(Tint, ConsistsOfScanLinesOfTheSameCoverageWhereNothingBlends) {
  lay();
  ASSERT_TRUE(waitUntil([&] { return coverageOf(kTintPixel, 400, 0, 20) > 0; }));
  EXPECT_NEAR(coverageOf(kTintPixel, 400, 0, 600), kAlpha, 0.01);
  EXPECT_NEAR(coverageOf(kTintPixel, 400, 100, 140), kAlpha, 0.03) << "spread evenly";
  EXPECT_NEAR(coverageOf(kDesktop, 400, 0, 600), 1.0 - kAlpha, 0.01) << "what is not covered stays itself";
  desktop.keepScreenshot("tint-scan-lines");
}

TEST_F(Tint, FollowsACompositorThatStartsAndStops) {
  lay();
  ASSERT_TRUE(waitUntil([&] { return coverageOf(kTintPixel, 400, 0, 20) > 0; }));
  const auto compositor = desktop.startCompositor();
  ASSERT_TRUE(compositor);
  for (const int y : {300, 301, 302, 303})
    EXPECT_TRUE(desktop.showsPixel(400, y, blended(kDesktop, kTintPixel, kAlpha), 2))
        << desktop.pixel(400, y);
  desktop.kill(*compositor, SIGTERM);
  EXPECT_TRUE(waitUntil([&] { return std::abs(coverageOf(kTintPixel, 400, 0, 100) - kAlpha) < 0.02; }))
      << coverageOf(kTintPixel, 400, 0, 100);
}

TEST_F(Tint, LetsClicksThrough) {
  lay();
  const auto window = desktop.makeWindow({100, 100, 200, 200}, kWindow, {.isOverrideRedirect = true});
  int clicks = 0;
  const auto counting = desktop.observer().onEvent([&](const XcbConnection::Event& event) {
    if ((event.response_type & 0x7f) == XCB_BUTTON_PRESS &&
        reinterpret_cast<const xcb_button_press_event_t&>(event).event == window)
      ++clicks;
  });
  waitFor(std::chrono::milliseconds(300));
  desktop.run({"xdotool", "mousemove", "200", "200", "click", "1"});
  EXPECT_TRUE(waitUntil([&] { return clicks > 0; }, std::chrono::seconds(2)));
}

TEST_F(Tint, CoversTheDisplayAfterItChanges) {
  lay();
  int changes = 0;
  const auto following = overlays->server.onDisplayChange([&] {
    ++changes;
    tint->setFrame(overlays->server.mainDisplayBounds());
  });
  desktop.run(
      {"xrandr", "--newmode", "small", "25.18", "640", "656", "752", "800", "480", "490", "492", "525"});
  desktop.run({"xrandr", "--addmode", "screen", "small"});
  desktop.run({"xrandr", "--output", "screen", "--mode", "small"});
  ASSERT_TRUE(waitUntil([&] { return changes > 0; }, std::chrono::seconds(3)));
  EXPECT_EQ(overlays->server.mainDisplayBounds(), (Rect{0, 0, 640, 480}));
  EXPECT_TRUE(waitUntil([&] { return coverageOf(kTintPixel, 600, 440, 480) > 0.3; }));
}

TEST_F(Tint, IsGoneWhenItsProcessIsKilled) {
  ASSERT_TRUE(desktop.startCompositor());
  const auto self = std::filesystem::read_symlink("/proc/self/exe").string();
  const pid_t other = desktop.start({self, std::string(kLayTint), desktop.display()});
  ASSERT_TRUE(desktop.showsPixel(400, 300, blended(kDesktop, {255, 0, 0}, 0.5), 2))
      << desktop.pixel(400, 300);
  desktop.kill(other, SIGKILL);
  EXPECT_TRUE(desktop.showsPixel(400, 300, kDesktop)) << desktop.pixel(400, 300);
}

}  // namespace
}  // namespace harbor
