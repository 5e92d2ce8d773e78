#include "base/ByteCount.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace harbor {
namespace {

TEST(ByteCount, FormatsEveryRowOfTheTable) {
  const std::pair<std::uint64_t, const char*> rows[] = {
      {0, "Zero KB"},
      {1, "1 byte"},
      {999, "999 bytes"},
      {1'000, "1 KB"},
      {1'499, "1 KB"},
      {1'501, "2 KB"},
      {999'499, "999 KB"},
      {999'501, "1 MB"},
      {1'000'000, "1 MB"},
      {1'234'567, "1.2 MB"},
      {999'949'999, "999.9 MB"},
      {999'950'001, "1 GB"},
      {1'500'000'000, "1.5 GB"},
      {1'234'567'890, "1.23 GB"},
      {1'000'000'000'000, "1 TB"},
      {18'446'744'073'709'551'615u, "18.45 EB"},
  };
  for (const auto& [bytes, text] : rows)
    EXPECT_EQ(formatByteCount(bytes), text) << bytes;
}

TEST(ByteCount, RoundsTiesToTheEvenNeighbour) {
  EXPECT_EQ(formatByteCount(1'500), "2 KB");
  EXPECT_EQ(formatByteCount(2'500), "2 KB");
  EXPECT_EQ(formatByteCount(3'500), "4 KB");
  EXPECT_EQ(formatByteCount(1'250'000), "1.2 MB");
  EXPECT_EQ(formatByteCount(1'350'000), "1.4 MB");
}

TEST(ByteCount, DropsTrailingZerosOfTheFraction) {
  EXPECT_EQ(formatByteCount(2'000'000'000), "2 GB");
  EXPECT_EQ(formatByteCount(1'050'000'000), "1.05 GB");
  EXPECT_EQ(formatByteCount(1'100'000'000'000), "1.1 TB");
}

}  // namespace
}  // namespace harbor
