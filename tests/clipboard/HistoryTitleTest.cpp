#include "clipboard/HistoryTitle.h"

#include <gtest/gtest.h>

#include "platform/icu/IcuText.h"

namespace harbor {
namespace {

struct HistoryTitleTest : testing::Test {
  IcuText text;

  std::string title(const std::string& entry) const { return historyTitle(text, entry); }
  static std::string times(int count, const std::string& part) {
    std::string result;
    for (int i = 0; i < count; ++i)
      result += part;
    return result;
  }
};

TEST_F(HistoryTitleTest, FiftyCharactersShowWholeAndFiftyOneAreCut) {
  EXPECT_EQ(title(times(50, "a")), times(50, "a"));
  EXPECT_EQ(title(times(51, "a")), times(50, "a") + "...");
}

TEST_F(HistoryTitleTest, LineFeedsAndTabsBecomeSpaces) {
  EXPECT_EQ(title("a\nb\tc\n\nd"), "a b c  d");
  EXPECT_EQ(title("a\r\nb"), "a\r b");
}

TEST_F(HistoryTitleTest, WhiteSpaceAtBothEndsIsTrimmedBeforeCounting) {
  EXPECT_EQ(title(" \n\t text \r\n "), "text");
  EXPECT_EQ(title(times(60, " ") + times(50, "b") + times(600, "\n")), times(50, "b"));
  EXPECT_EQ(title("\u2003wide\u00a0"), "wide");
}

TEST_F(HistoryTitleTest, OnlySpacesGiveAnEmptyTitle) {
  EXPECT_EQ(title("     "), "");
  EXPECT_EQ(title(times(100'000, " ")), "");
}

TEST_F(HistoryTitleTest, ACharacterIsAGraphemeCluster) {
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";
  const std::string accented = "e\u0301";
  for (const std::string& character :
       {family, accented, std::string("\u4e2d"), std::string("\U0001F1E9\U0001F1EA")}) {
    EXPECT_EQ(title(times(50, character)), times(50, character));
    EXPECT_EQ(title(times(51, character)), times(50, character) + "...");
    EXPECT_EQ(title(times(5000, character)), times(50, character) + "...");
  }
}

TEST_F(HistoryTitleTest, TheEndOfAWindowBreaksNoCharacter) {
  // Clusters of 11 bytes and of 101 bytes, so that no window ends at the end of one.
  for (const int marks : {5, 50}) {
    const std::string character = "o" + times(marks, "\u0308");
    for (int lead = 0; lead < 12; ++lead) {
      const std::string start = times(lead, "x");
      EXPECT_EQ(title(start + times(2000, character)), start + times(50 - lead, character) + "...");
    }
  }
}

TEST_F(HistoryTitleTest, AnEndlessCharacterIsCutInBoundedTime) {
  const std::string entry = "o" + times(500'000, "\u0308");
  const std::string shown = title(entry);
  EXPECT_LE(shown.size(), 16u * 1024 + 3);
  EXPECT_EQ(shown.substr(shown.size() - 3), "...");
  EXPECT_EQ(entry.compare(0, shown.size() - 3, shown, 0, shown.size() - 3), 0);
}

}  // namespace
}  // namespace harbor
