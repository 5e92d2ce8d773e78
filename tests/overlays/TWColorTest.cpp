#include "overlays/TWColor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "overlays/TWHighlightMouseClicks.h"

namespace harbor {
namespace {

template <typename Titles>
std::vector<std::string> list(const Titles& titles) {
  return {titles.begin(), titles.end()};
}

TEST(TWColor, GivesThePaletteColourOfEachTitle) {
  const std::pair<const char*, Colour> rows[] = {
      {"Black Color", {0, 0, 0, 1}},
      {"Red Color", {239.0 / 255, 54.0 / 255, 58.0 / 255, 1}},
      {"Orange Color", {252.0 / 255, 107.0 / 255, 10.0 / 255, 1}},
      {"Yellow Color", {234.0 / 255, 177.0 / 255, 18.0 / 255, 1}},
      {"Green Color", {32.0 / 255, 152.0 / 255, 68.0 / 255, 1}},
      {"Blue Color", {37.0 / 255, 121.0 / 255, 204.0 / 255, 1}},
      {"White Color", {1, 1, 1, 1}},
  };
  for (const auto& [title, colour] : rows) {
    EXPECT_EQ(TWColor::colorForTitle(title), colour) << title;
    EXPECT_TRUE(TWColor::hasTitle(title)) << title;
  }
}

TEST(TWColor, GivesBlackForAnyOtherTitle) {
  for (const char* title :
       {"red color", "Red  Color", " Red Color", "Red Color ", "Custom Color", "Red", ""}) {
    EXPECT_EQ(TWColor::colorForTitle(title), Colour::black()) << title;
    EXPECT_FALSE(TWColor::hasTitle(title)) << title;
  }
}

TEST(TWColor, ListsTheVeilColoursInMenuOrder) {
  EXPECT_EQ(list(kVeilColorTitles),
            (std::vector<std::string>{"Custom Color", "Red Color", "Orange Color", "Yellow Color",
                                      "Green Color", "Blue Color", "White Color", "Black Color"}));
}

TEST(TWColor, ListsTheRingColoursWithoutACustomOne) {
  EXPECT_EQ(list(TWHighlightMouseClicks::availableHighlightColors),
            (std::vector<std::string>{"Red Color", "Orange Color", "Yellow Color", "Green Color",
                                      "Blue Color", "White Color", "Black Color"}));
}

TEST(TWColor, ListsTenRingSizes) {
  EXPECT_EQ(list(TWHighlightMouseClicks::availableSizes),
            (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
}

}  // namespace
}  // namespace harbor
