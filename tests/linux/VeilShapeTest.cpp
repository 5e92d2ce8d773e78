#include "platform/linux/VeilShape.h"

#include <gtest/gtest.h>

#include <map>

namespace harbor {
namespace {

int area(const std::vector<PixelRect>& shape) {
  int sum = 0;
  for (const auto& part : shape)
    sum += part.width * part.height;
  return sum;
}

TEST(VeilShape, IsOneRectangleWhenWholeAndWithoutHoles) {
  EXPECT_EQ(veilShape(800, 600, 1.0, {}), (std::vector<PixelRect>{{0, 0, 800, 600}}));
}

TEST(VeilShape, IsEmptyWithoutCoverage) {
  EXPECT_TRUE(veilShape(800, 600, 0.0, {}).empty());
}

TEST(VeilShape, CoversThatPartOfTheRowsToTheRow) {
  for (int percent = 5; percent <= 95; percent += 5) {
    const auto shape = veilShape(10, 1000, percent / 100.0, {});
    EXPECT_EQ(area(shape), 10 * 10 * percent) << percent;
  }
}

TEST(VeilShape, SpreadsTheRowsEvenly) {
  for (const auto& [coverage, period] : std::map<double, int>{{0.1, 10}, {0.45, 20}, {0.5, 2}, {0.8, 5}}) {
    const auto shape = veilShape(1, 600, coverage, {});
    for (int top = 0; top < 600; top += period) {
      int rows = 0;
      for (const auto& part : shape)
        rows += std::max(0, std::min(part.bottom(), top + period) - std::max(part.y, top));
      EXPECT_EQ(rows, static_cast<int>(coverage * period + 0.5)) << coverage << " at " << top;
    }
  }
}

TEST(VeilShape, HasAtMostOneRectangleARow) {
  const auto shape = veilShape(1920, 1080, 0.7, {});
  EXPECT_LE(shape.size(), 1080u);
  for (std::size_t i = 1; i < shape.size(); ++i)
    EXPECT_GE(shape[i].y, shape[i - 1].bottom());
}

TEST(VeilShape, LeavesHolesClearAndCoversEverythingElse) {
  const auto shape = veilShape(100, 100, 1.0, {{20, 30, 40, 50}});
  EXPECT_EQ(area(shape), 100 * 100 - 40 * 50);
  for (const auto& part : shape)
    EXPECT_FALSE(part.intersects({20, 30, 40, 50}));
}

TEST(VeilShape, TakesHolesThatOverlapEachOtherAndTheEdges) {
  const std::vector<PixelRect> holes = {{-10, -10, 30, 30}, {10, 10, 30, 30}, {90, 95, 50, 50}, {0, 0, 0, 0}};
  const auto shape = veilShape(100, 100, 1.0, holes);
  EXPECT_EQ(area(shape), 100 * 100 - (20 * 20 + 30 * 30 - 10 * 10) - 10 * 5);
  for (const auto& part : shape) {
    for (const auto& hole : holes)
      EXPECT_FALSE(part.intersects(hole));
    EXPECT_TRUE((PixelRect{0, 0, 100, 100}).covers(part));
  }
}

TEST(VeilShape, IsBandedFromTopToBottomAndLeftToRight) {
  const auto shape = veilShape(200, 200, 0.6, {{20, 30, 40, 50}, {100, 40, 30, 90}});
  for (std::size_t i = 1; i < shape.size(); ++i) {
    const auto& before = shape[i - 1];
    const auto& part = shape[i];
    if (part.y == before.y) {
      EXPECT_EQ(part.height, before.height);
      EXPECT_GE(part.x, before.right());
    } else {
      EXPECT_GE(part.y, before.bottom());
    }
  }
}

TEST(VeilShape, IsEmptyWhereAHoleTakesEverything) {
  EXPECT_TRUE(veilShape(100, 100, 0.5, {{-5, -5, 200, 200}}).empty());
}

}  // namespace
}  // namespace harbor
