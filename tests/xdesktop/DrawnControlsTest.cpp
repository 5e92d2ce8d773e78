// The drawn controls against the pictures of them that people have looked at and approved.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "overlays/TWStyleKit.h"
#include "platform/linux/DrawingRenderer.h"

namespace harbor {
namespace {

constexpr double kScale = 2.0;
constexpr int kMargin = 8;

// Compares the sheet with the approved one; the new one is left in the folder of the screenshots. Edges may
// differ a little from one version of the toolkit to the next, areas not.
void expectApproved(const QImage& sheet, const std::string& name) {
  std::filesystem::create_directories("screenshots");
  sheet.save(QString::fromStdString("screenshots/" + name));
  const QImage approved = QImage(QString::fromStdString(std::string(HARBOR_GOLDEN_FOLDER) + "/" + name))
                              .convertToFormat(sheet.format());
  ASSERT_EQ(approved.size(), sheet.size()) << name;
  constexpr int kTolerance = 48;
  int different = 0;
  for (int y = 0; y < sheet.height(); ++y) {
    for (int x = 0; x < sheet.width(); ++x) {
      const QRgb a = sheet.pixel(x, y);
      const QRgb b = approved.pixel(x, y);
      const int most = std::max(
          {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
      different += most > kTolerance ? 1 : 0;
    }
  }
  EXPECT_LT(different, sheet.width() * sheet.height() / 500) << name;
}

QImage emptySheet(int columns, int rows, int width, int height) {
  QImage sheet((width + 2 * kMargin) * columns, (height + 2 * kMargin) * rows, QImage::Format_RGB32);
  sheet.fill(QColor(236, 236, 236));
  return sheet;
}

TEST(DrawnControls, TheSwitchLooksAsApprovedInEveryState) {
  constexpr int kWidth = 58 * 2;
  constexpr int kHeight = 24 * 2;
  QImage sheet = emptySheet(3, 2, kWidth, kHeight);
  QPainter painter(&sheet);
  const double states[] = {0.0, 1.0, 2.0};
  const TWStyleKit::Enablement enablements[] = {TWStyleKit::Enablement::enabled,
                                                TWStyleKit::Enablement::disabled};
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 3; ++column) {
      const QRectF frame(kMargin + column * (kWidth + 2 * kMargin), kMargin + row * (kHeight + 2 * kMargin),
                         kWidth, kHeight);
      drawInto(painter, TWStyleKit::drawCanvas2(states[column], enablements[row]), frame, kScale);
    }
  }
  painter.end();
  expectApproved(sheet, "switch.png");
}

TEST(DrawnControls, TheRingLooksAsApprovedInEveryColour) {
  constexpr int kSide = 70;
  const char* colours[] = {"Red Color",  "Orange Color", "Yellow Color", "Green Color",
                           "Blue Color", "White Color",  "Black Color"};
  QImage sheet = emptySheet(static_cast<int>(std::size(colours)), 1, kSide, kSide);
  QPainter painter(&sheet);
  int column = 0;
  for (const char* colour : colours) {
    drawInto(painter, TWStyleKit::drawRing(colour),
             QRectF(kMargin + column++ * (kSide + 2 * kMargin), kMargin, kSide, kSide), 1.0);
  }
  painter.end();
  expectApproved(sheet, "ring.png");
}

TEST(DrawnControls, TheRingIsClearInsideAndOutsideAndStaysInItsFrame) {
  for (const int side : {30, 70, 120}) {
    const QImage ring = renderDrawing(TWStyleKit::drawRing("Red Color"), side, side, 1.0);
    EXPECT_EQ(qAlpha(ring.pixel(side / 2, side / 2)), 0);
    for (const auto& corner :
         {QPoint(0, 0), QPoint(side - 1, 0), QPoint(0, side - 1), QPoint(side - 1, side - 1)})
      EXPECT_EQ(qAlpha(ring.pixel(corner)), 0);
    EXPECT_EQ(qAlpha(ring.pixel(side / 20, side / 2)), 255) << "the middle of the band on the left";
    EXPECT_EQ(qRed(ring.pixel(side / 20, side / 2)), 239);
  }
}

TEST(DrawnControls, AShadowFallsBelowAndFadesOut) {
  const Path square = {{PathElement::Kind::moveTo, {0.3, 0.3}, {}, {}},
                       {PathElement::Kind::lineTo, {0.7, 0.3}, {}, {}},
                       {PathElement::Kind::lineTo, {0.7, 0.7}, {}, {}},
                       {PathElement::Kind::lineTo, {0.3, 0.7}, {}, {}},
                       {PathElement::Kind::close, {}, {}, {}}};
  Drawing drawing;
  drawing.shapes.push_back({square, {1, 1, 1, 1}, Shadow{{0, 0, 0, 0.5}, {0, 10}, 2}});
  const QImage image = renderDrawing(drawing, 100, 100, 1.0);
  EXPECT_EQ(image.pixel(50, 50), qRgba(255, 255, 255, 255));
  EXPECT_NEAR(qAlpha(image.pixel(50, 75)), 128, 2);
  EXPECT_GT(qAlpha(image.pixel(50, 80)), 0);
  EXPECT_LT(qAlpha(image.pixel(50, 80)), 128);
  EXPECT_EQ(qAlpha(image.pixel(50, 86)), 0);
  EXPECT_EQ(qAlpha(image.pixel(50, 25)), 0);
}

}  // namespace
}  // namespace harbor
