// What is taken for the panel's tone while the program's own tint lies over it.
#include "platform/linux/PanelTone.h"

#include <gtest/gtest.h>

#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

constexpr Pixel kLightPanel{212, 212, 212};
constexpr Pixel kDarkPanel{40, 40, 45};
constexpr PixelRect kBottom{0, 568, 800, 32};
constexpr PixelRect kSide{0, 0, 40, 600};

class PanelToneUnderATint : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.isUp());
    ASSERT_TRUE(desktop.startWindowManager({"openbox"}));
  }
  // With the panel's own icons and texts, which cover less of it than its background.
  void showPanel(const PixelRect& place, const Pixel& colour) {
    const xcb_window_t panel = desktop.makeWindow(place, colour, {.type = "DOCK"});
    auto* const xcb = desktop.observer().get();
    const xcb_gcontext_t context = xcb_generate_id(xcb);
    const std::uint32_t grey = 0x808080;
    xcb_create_gc(xcb, context, panel, XCB_GC_FOREGROUND, &grey);
    for (int at = 10; at < std::max(place.width, place.height); at += 60) {
      const xcb_rectangle_t icon{static_cast<std::int16_t>(place.width > place.height ? at : 8),
                                 static_cast<std::int16_t>(place.width > place.height ? 6 : at), 22, 22};
      xcb_poly_fill_rectangle(xcb, panel, context, 1, &icon);
    }
    xcb_flush(xcb);
  }
  std::unique_ptr<OverlayWindow> layTint(const Colour& colour) {
    auto tint = parts->windows.make({.frame = parts->server.mainDisplayBounds(),
                                     .surface = OverlayWindowSpec::Surface::translucent,
                                     .level = kScreenSaverWindowLevel});
    tint->setBackgroundColour(colour);
    tint->setIgnoresMouseEvents();
    tint->orderFrontRegardless();
    waitFor(std::chrono::milliseconds(500));
    return tint;
  }
  void expectTone(PanelTone tone, const PixelRect& place, const Pixel& panel, const Colour& tintColour) {
    showPanel(place, panel);
    parts = std::make_unique<Overlays>(desktop);
    ASSERT_EQ(panelTone(parts->connection.get()), tone);
    const auto tint = layTint(tintColour);
    EXPECT_EQ(panelTone(parts->connection.get()), tone);
  }

  PrivateDesktop desktop;
  std::unique_ptr<Overlays> parts;
  const Colour black = Colour::black().withAlpha(0.45);
  const Colour white = Colour{1, 1, 1, 0.45};
};

TEST_F(PanelToneUnderATint, IsLightBetweenBlackScanLines) {
  expectTone(PanelTone::light, kBottom, kLightPanel, black);
}

TEST_F(PanelToneUnderATint, IsLightBetweenBlackScanLinesAtTheSide) {
  expectTone(PanelTone::light, kSide, kLightPanel, black);
}

TEST_F(PanelToneUnderATint, IsDarkBetweenWhiteScanLines) {
  expectTone(PanelTone::dark, kBottom, kDarkPanel, white);
}

TEST_F(PanelToneUnderATint, IsThePanelsOwnWhereTheTintIsBlended) {
  ASSERT_TRUE(desktop.startCompositor());
  expectTone(PanelTone::light, kBottom, kLightPanel, black);
}

}  // namespace
}  // namespace harbor
