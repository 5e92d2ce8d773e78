#include "base/Utf8.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(Utf8, KnowsHowLongACharacterIs) {
  const std::pair<std::string_view, std::size_t> rows[] = {
      {"", 0},
      {"a\xff", 1},
      {std::string_view("\0", 1), 1},
      {"\x7f", 1},
      {"\u0080", 2},
      {"\u07ffx", 2},
      {"\u0800", 3},
      {"\ud7ff", 3},
      {"\uffff", 3},
      {"\U00010000", 4},
      {"\U0010ffff\u00e9", 4},
      // A continuation by itself, overlong forms, a surrogate, beyond the last character, cut short.
      {"\x80", 0},
      {"\xc1\xbf", 0},
      {"\xe0\x9f\xbf", 0},
      {"\xed\xa0\x80", 0},
      {"\xf0\x8f\xbf\xbf", 0},
      {"\xf4\x90\x80\x80", 0},
      {"\xf5\x80\x80\x80", 0},
      {"\xc3", 0},
      {"\xe4\xb8", 0},
      {"\xf0\x9f\x91", 0},
      {"\xc3x", 0},
      {"\xe4\xb8x", 0},
  };
  for (const auto& [text, length] : rows)
    EXPECT_EQ(lengthOfUtf8Character(text), length) << testing::PrintToString(text);
}

TEST(Utf8, ATextIsValidWhenAllOfItsCharactersAre) {
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_TRUE(isValidUtf8("a\u00e9\u4e2d\U0001F468"));
  EXPECT_FALSE(isValidUtf8("a\u00e9\xff"));
  EXPECT_FALSE(isValidUtf8("\u4e2d\xe4\xb8"));
}

}  // namespace
}  // namespace harbor
