#include "base/PathBelow.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(PathBelow, ComparesWholeComponents) {
  EXPECT_TRUE(isBelow("/a/b", "/a"));
  EXPECT_TRUE(isBelow("/a/b/c", "/a"));
  EXPECT_FALSE(isBelow("/ab", "/a"));
  EXPECT_FALSE(isBelow("/a.conf", "/a"));
  EXPECT_FALSE(isBelow("/a", "/a/b"));
}

TEST(PathBelow, APathIsAtItselfButNotBelow) {
  EXPECT_FALSE(isBelow("/a", "/a"));
  EXPECT_TRUE(isAtOrBelow("/a", "/a"));
  EXPECT_TRUE(isAtOrBelow("/a/b", "/a"));
  EXPECT_FALSE(isAtOrBelow("/ab", "/a"));
}

TEST(PathBelow, AllButItselfIsBelowTheRoot) {
  EXPECT_TRUE(isBelow("/a", "/"));
  EXPECT_FALSE(isBelow("/", "/"));
  EXPECT_TRUE(isAtOrBelow("/", "/"));
  EXPECT_FALSE(isBelow("a", "/"));
}

TEST(PathBelow, NothingIsBelowAnEmptyPath) {
  EXPECT_FALSE(isBelow("/a", ""));
  EXPECT_FALSE(isAtOrBelow("/a", ""));
}

}  // namespace
}  // namespace harbor
