#include "base/FlagSet.h"

#include <gtest/gtest.h>

namespace harbor {

enum class Sides : unsigned { none = 0, left = 1, top = 2, right = 4 };
template <>
inline constexpr bool kIsFlagSet<Sides> = true;

namespace {

enum class Count { one = 1, two = 2 };

template <typename Values>
concept Combinable = requires(Values a, Values b) {
  a | b;
};

TEST(FlagSet, HoldsWhatItIsCombinedOf) {
  constexpr Sides set = Sides::left | Sides::right;
  EXPECT_TRUE(contains(set, Sides::left));
  EXPECT_TRUE(contains(set, Sides::right));
  EXPECT_FALSE(contains(set, Sides::top));
  EXPECT_EQ(static_cast<unsigned>(set), 5u);
  EXPECT_EQ(set | Sides::left, set);
}

TEST(FlagSet, TheEmptySetHoldsNothing) {
  EXPECT_FALSE(contains(Sides::none, Sides::left));
  EXPECT_FALSE(contains(Sides::left, Sides::none));
}

TEST(FlagSet, OtherEnumerationsCannotBeCombined) {
  static_assert(Combinable<Sides>);
  static_assert(!Combinable<Count>);
}

}  // namespace
}  // namespace harbor
