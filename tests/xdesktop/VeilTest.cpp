// Focus mode's veil below another program's window, and the tint above everything, as pixels.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr Pixel kBack{200, 120, 40};
constexpr Pixel kFront{60, 180, 220};
constexpr Pixel kBlack{0, 0, 0};

struct VeilCase {
  std::string name;
  std::vector<std::string> windowManager;
  enum class Compositor { picom, own } compositor;
};
std::ostream& operator<<(std::ostream& stream, const VeilCase& veil) {
  return stream << veil.name;
}

class Veil : public testing::TestWithParam<VeilCase> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    desktop.run({"hsetroot", "-solid", "#204060"});
    ASSERT_TRUE(desktop.startWindowManager(GetParam().windowManager));
    if (GetParam().compositor == VeilCase::Compositor::picom) {
      ASSERT_TRUE(desktop.startCompositor());
    }
    // Some compositing managers paint a background of their own.
    corner = desktop.pixel(780, 580);
    middle = desktop.pixel(380, 250);
    back = desktop.makeWindow({60, 80, 300, 300}, kBack, {.title = "back", .type = "NORMAL"});
    front = desktop.makeWindow({250, 200, 300, 250}, kFront, {.title = "front", .type = "NORMAL"});
    desktop.activate(front);
    overlays = std::make_unique<Overlays>(desktop);
    veil = overlays->windows.make(
        {.frame = overlays->server.mainDisplayBounds(), .surface = OverlayWindowSpec::Surface::translucent});
    veil->setBackgroundColour(Colour::black().withAlpha(0.8));
    veil->setIgnoresMouseEvents();
    veil->orderBelow(front);
  }

  // A point inside the window, away from its edges.
  std::pair<int, int> inside(xcb_window_t window) {
    const auto place = desktop.placeOf(window);
    return {place.x + place.width - 20, place.y + place.height - 20};
  }
  std::pair<int, int> insideTop(xcb_window_t window) {
    const auto place = desktop.placeOf(window);
    return {place.x + 20, place.y + 20};
  }

  PrivateDesktop desktop;
  Pixel corner;
  Pixel middle;
  xcb_window_t back = XCB_NONE;
  xcb_window_t front = XCB_NONE;
  std::unique_ptr<Overlays> overlays;
  std::unique_ptr<OverlayWindow> veil;
};

TEST_P(Veil, DarkensEverythingButTheFrontWindowByItsOpacity) {
  const auto [backX, backY] = insideTop(back);
  const auto [frontX, frontY] = inside(front);
  EXPECT_TRUE(desktop.showsPixel(780, 580, blended(corner, kBlack, 0.8))) << desktop.pixel(780, 580);
  EXPECT_TRUE(desktop.showsPixel(backX, backY, blended(kBack, kBlack, 0.8))) << desktop.pixel(backX, backY);
  EXPECT_TRUE(desktop.showsPixel(frontX, frontY, kFront)) << desktop.pixel(frontX, frontY);
  const auto [frontTopX, frontTopY] = insideTop(front);
  EXPECT_TRUE(desktop.showsPixel(frontTopX, frontTopY, kFront)) << desktop.pixel(frontTopX, frontTopY);
  desktop.keepScreenshot("veil-" + GetParam().name);
}

TEST_P(Veil, FollowsToAnotherFrontWindow) {
  desktop.activate(back);
  veil->orderBelow(back);
  const auto [backX, backY] = insideTop(back);
  const auto [frontX, frontY] = inside(front);
  EXPECT_TRUE(desktop.showsPixel(backX, backY, kBack)) << desktop.pixel(backX, backY);
  EXPECT_TRUE(desktop.showsPixel(frontX, frontY, blended(kFront, kBlack, 0.8)))
      << desktop.pixel(frontX, frontY);
}

TEST_P(Veil, UncoversTheNextWindowWhenTheFrontOneGoes) {
  const auto minimise = [&](xcb_window_t window) {
    desktop.run({"xdotool", "windowminimize", "--sync", std::to_string(window)});
  };
  for (int round = 0; round < 3; ++round) {
    minimise(front);
    veil->orderBelow(back);
    for (const auto& [x, y] : {insideTop(back), inside(back)})
      EXPECT_TRUE(desktop.showsPixel(x, y, kBack)) << "round " << round << " " << desktop.pixel(x, y);
    desktop.activate(front);
    veil->orderBelow(front);
    const auto [x, y] = insideTop(back);
    EXPECT_TRUE(desktop.showsPixel(x, y, blended(kBack, kBlack, 0.8))) << desktop.pixel(x, y);
  }
  xcb_destroy_window(desktop.observer().get(), front);
  xcb_flush(desktop.observer().get());
  waitFor(std::chrono::milliseconds(200));
  veil->orderBelow(back);
  for (const auto& [x, y] : {insideTop(back), inside(back)})
    EXPECT_TRUE(desktop.showsPixel(x, y, kBack)) << desktop.pixel(x, y);
  veil->orderOut();
  EXPECT_TRUE(desktop.showsPixel(780, 580, corner)) << desktop.pixel(780, 580);
}

TEST_P(Veil, DimsWindowsThatLieOverTheOneInUse) {
  // In use, but not raised.
  veil->orderBelow(back);
  const auto [frontX, frontY] = inside(front);
  const auto [backX, backY] = insideTop(back);
  EXPECT_TRUE(desktop.showsPixel(backX, backY, kBack)) << desktop.pixel(backX, backY);
  EXPECT_TRUE(desktop.showsPixel(frontX, frontY, blended(kFront, kBlack, 0.8)))
      << desktop.pixel(frontX, frontY);
}

TEST_P(Veil, LeavesAMenuAboveTheFrontWindowClear) {
  constexpr Pixel kMenu{250, 250, 120};
  desktop.makeWindow({600, 100, 120, 200}, kMenu, {.isOverrideRedirect = true});
  EXPECT_TRUE(desktop.showsPixel(660, 200, kMenu)) << desktop.pixel(660, 200);
  EXPECT_TRUE(desktop.showsPixel(780, 580, blended(corner, kBlack, 0.8))) << desktop.pixel(780, 580);
}

TEST_P(Veil, FollowsAMovedFrontWindow) {
  const std::uint32_t place[] = {400, 300};
  xcb_configure_window(desktop.observer().get(), front, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
  xcb_flush(desktop.observer().get());
  ASSERT_TRUE(waitUntil([&] { return desktop.placeOf(front).x >= 400; }));
  const auto [frontX, frontY] = inside(front);
  EXPECT_TRUE(desktop.showsPixel(frontX, frontY, kFront)) << desktop.pixel(frontX, frontY);
  EXPECT_TRUE(desktop.showsPixel(380, 250, blended(middle, kBlack, 0.8))) << desktop.pixel(380, 250);
}

TEST_P(Veil, TakesNeitherTheFocusNorAPlaceAmongTheManagedWindows) {
  waitFor(std::chrono::milliseconds(500));
  EXPECT_EQ(desktop.activeWindow(), front);
  for (const auto window : desktop.rootWords("_NET_CLIENT_LIST"))
    EXPECT_TRUE(window == front || window == back);
  EXPECT_EQ(desktop.rootWords("_NET_CLIENT_LIST").size(), 2u);
}

TEST_P(Veil, NeverFightsTheWindowManager) {
  waitFor(std::chrono::milliseconds(500));
  desktop.observer().selectEvents(desktop.observer().root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  int changes = 0;
  const auto counting = desktop.observer().onEvent([&](const XcbConnection::Event& event) {
    if ((event.response_type & 0x7f) == XCB_CONFIGURE_NOTIFY) ++changes;
  });
  waitFor(std::chrono::seconds(2));
  EXPECT_EQ(changes, 0) << "the screen is at rest, so nothing may be restacked";
  desktop.activate(back);
  veil->orderBelow(back);
  waitFor(std::chrono::seconds(2));
  EXPECT_LT(changes, 40);
  const int afterwards = changes;
  waitFor(std::chrono::seconds(1));
  EXPECT_EQ(changes, afterwards);
}

TEST_P(Veil, IsGoneWhenOrderedOut) {
  veil->orderOut();
  EXPECT_TRUE(desktop.showsPixel(780, 580, corner)) << desktop.pixel(780, 580);
  const auto [backX, backY] = insideTop(back);
  EXPECT_TRUE(desktop.showsPixel(backX, backY, kBack)) << desktop.pixel(backX, backY);
}

INSTANTIATE_TEST_SUITE_P(
    WindowManagers, Veil,
    testing::Values(VeilCase{"openbox", {"openbox"}, VeilCase::Compositor::picom},
                    VeilCase{"metacity",
                             {"dbus-run-session", "--", "metacity", "--no-composite"},
                             VeilCase::Compositor::picom},
                    VeilCase{"xfwm4", {"dbus-run-session", "--", "xfwm4"}, VeilCase::Compositor::own}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace harbor
