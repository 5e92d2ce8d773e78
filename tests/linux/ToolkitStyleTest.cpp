#include "platform/linux/ToolkitStyle.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QImage>
#include <QStyle>
#include <memory>

#include "OffscreenApplication.h"
#include "platform/linux/DesktopAppearance.h"

namespace harbor {
namespace {

class ToolkitStyleTest : public testing::Test {
 protected:
  ~ToolkitStyleTest() override {
    application.setStyle("fusion");
    application.setPalette(QPalette());
  }

  // What the outline of a check box differs by from what lies around it, of 255.
  int contrastOfBox(const QColor& window, const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, window.darker(140));
    QCheckBox box("Box");
    box.setPalette(palette);
    const QImage picture = box.grab().toImage();
    int greatest = 0;
    for (int x = 0; x < 8; ++x)
      greatest = std::max(
          greatest, std::abs(picture.pixelColor(x, picture.height() / 2).lightness() - window.lightness()));
    return greatest;
  }

  QApplication& application = offscreenApplication();
};

TEST_F(ToolkitStyleTest, MakesACheckBoxStandOutOnADarkWindow) {
  application.setStyle("fusion");
  const int before = contrastOfBox(QColor(50, 50, 50), Qt::white);
  application.setStyle(new ToolkitStyle("fusion"));
  EXPECT_LT(before, 30);
  EXPECT_GT(contrastOfBox(QColor(50, 50, 50), Qt::white), 60);
}

TEST_F(ToolkitStyleTest, ChangesNothingOnALightWindow) {
  application.setStyle("fusion");
  const int before = contrastOfBox(QColor(239, 239, 239), Qt::black);
  application.setStyle(new ToolkitStyle("fusion"));
  EXPECT_EQ(contrastOfBox(QColor(239, 239, 239), Qt::black), before);
}

TEST_F(ToolkitStyleTest, DrawsNoLinesInAnotherStyle) {
  application.setStyle("windows");
  const int before = contrastOfBox(QColor(50, 50, 50), Qt::white);
  application.setStyle(new ToolkitStyle("windows"));
  EXPECT_EQ(contrastOfBox(QColor(50, 50, 50), Qt::white), before);
}

TEST(DarkPalette, HasTextsThatAreLighterThanTheirGround) {
  QPalette palette;
  palette.setColor(QPalette::Window, Qt::white);
  palette.setColor(QPalette::WindowText, Qt::black);
  EXPECT_FALSE(isDark(palette));
  palette.setColor(QPalette::Window, Qt::black);
  palette.setColor(QPalette::WindowText, Qt::white);
  EXPECT_TRUE(isDark(palette));
}

}  // namespace
}  // namespace harbor
