#include "platform/linux/TemplateImage.h"

#include <gtest/gtest.h>

#include "OffscreenApplication.h"

namespace harbor {
namespace {

class TemplateImage : public testing::TestWithParam<int> {
 protected:
  static QImage image(PanelTone tone, int size) {
    return templateIcon("StatusBarButtonImage", tone).pixmap(size).toImage();
  }
  QApplication& application = offscreenApplication();
};

INSTANTIATE_TEST_SUITE_P(Sizes, TemplateImage, testing::Values(16, 22, 24, 32, 48, 64));

TEST_P(TemplateImage, IsDrawnForItsSizeAndNotScaled) {
  const QImage drawn = image(PanelTone::light, GetParam());
  ASSERT_EQ(drawn.size(), QSize(GetParam(), GetParam()));
  // The keel is a bar: its lower edge falls between two rows of pixels, with nothing half covered.
  int lastRow = -1;
  const int middle = GetParam() / 2;
  for (int row = 0; row < GetParam(); ++row) {
    if (drawn.pixelColor(middle, row).alpha() > 0) lastRow = row;
  }
  ASSERT_GE(lastRow, 0);
  EXPECT_EQ(drawn.pixelColor(middle, lastRow).alpha(), 255);
}

TEST_P(TemplateImage, IsOneColourThatFollowsThePanel) {
  for (const PanelTone tone : {PanelTone::light, PanelTone::dark}) {
    const QImage drawn = image(tone, GetParam());
    int covered = 0;
    for (int y = 0; y < drawn.height(); ++y) {
      for (int x = 0; x < drawn.width(); ++x) {
        const QColor pixel = drawn.pixelColor(x, y);
        if (pixel.alpha() != 255) continue;
        ++covered;
        EXPECT_EQ(pixel.lightness() < 128, tone == PanelTone::light);
      }
    }
    EXPECT_GT(covered, GetParam() * GetParam() / 5);
  }
}

TEST_P(TemplateImage, HasARimWhereThePanelIsNotKnown) {
  const QImage drawn = image(PanelTone::unknown, GetParam());
  bool hasLight = false, hasDark = false;
  for (int y = 0; y < drawn.height(); ++y) {
    for (int x = 0; x < drawn.width(); ++x) {
      const QColor pixel = drawn.pixelColor(x, y);
      hasLight |= pixel.alpha() == 255 && pixel.lightness() > 200;
      hasDark |= pixel.alpha() > 200 && pixel.lightness() < 80;
    }
  }
  EXPECT_TRUE(hasLight);
  EXPECT_TRUE(hasDark);
}

TEST_F(TemplateImage, IsEmptyForANameThatIsNotAmongTheResources) {
  EXPECT_TRUE(templateOutline("NoSuchImage").isEmpty());
  EXPECT_FALSE(templateOutline("StatusBarButtonImage").isEmpty());
}

}  // namespace
}  // namespace harbor
