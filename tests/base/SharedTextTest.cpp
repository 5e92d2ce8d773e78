#include "base/SharedText.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(SharedText, CopiesShareTheirBytes) {
  const SharedText text(std::string(1000, 'a'));
  const SharedText copy = text;
  EXPECT_EQ(copy.string().data(), text.string().data());
}

TEST(SharedText, OutlivesTheOneItWasCopiedFrom) {
  SharedText text("first");
  const SharedText copy = text;
  text = "second";
  EXPECT_EQ(copy.string(), "first");
  EXPECT_EQ(text.string(), "second");
}

TEST(SharedText, EqualityIsOfTheCharacters) {
  EXPECT_EQ(SharedText("same"), SharedText(std::string("same")));
  EXPECT_FALSE(SharedText("one") == SharedText("two"));
  EXPECT_TRUE(SharedText("text") == "text");
  EXPECT_EQ(SharedText(), SharedText(std::string()));
}

TEST(SharedText, IsEmptyOnlyWithoutCharacters) {
  EXPECT_TRUE(SharedText().empty());
  EXPECT_TRUE(SharedText("").empty());
  EXPECT_FALSE(SharedText(" ").empty());
  EXPECT_EQ(SharedText().string(), "");
}

}  // namespace
}  // namespace harbor
