#include "base/Report.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(Report, QuotesATextForJson) {
  const struct {
    std::string_view text;
    std::string_view quoted;
  } rows[] = {
      {"", R"("")"},
      {"plain/path name", R"("plain/path name")"},
      {"a\"b\\c", R"("a\"b\\c")"},
      {"line\nfeed\ttab\x1b[2J\x7f", R"("line\u000afeed\u0009tab\u001b[2J\u007f")"},
      {std::string_view("a\0b", 3), R"("a\u0000b")"},
      {"caf\u00e9 \u4e2d \U0001F468", "\"caf\u00e9 \u4e2d \U0001F468\""},
      {"\u0080 \u009b31m \u00a0", "\"\\u0080 \\u009b31m \u00a0\""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(quotedForJson(row.text), row.quoted);
}

TEST(Report, ReplacesOnlyTheBytesThatBelongToNoCharacter) {
  EXPECT_EQ(quotedForJson("\xff"
                          "caf\u00e9\xc3"),
            "\"\\ufffdcaf\u00e9\\ufffd\"");
  EXPECT_EQ(quotedForJson("\xc0\x80"), R"("\ufffd\ufffd")");
  EXPECT_EQ(quotedForJson("\xed\xa0\x80"), R"("\ufffd\ufffd\ufffd")");
  EXPECT_EQ(quotedForJson("\xe4\xb8"), R"("\ufffd\ufffd")");
}

TEST(Report, ShowsInATableWhatATerminalWouldNotTakeForACommand) {
  EXPECT_EQ(textForTable("/home/ann/caf\u00e9 \"x\""), "/home/ann/caf\u00e9 \"x\"");
  EXPECT_EQ(textForTable("a\nb"), R"("a\u000ab")");
  EXPECT_EQ(textForTable("a\x1b[31m"), R"("a\u001b[31m")");
  EXPECT_EQ(textForTable("\u009b31m"), R"("\u009b31m")");
  EXPECT_EQ(textForTable("\xff\"x\""), R"("\ufffd\"x\"")");
}

}  // namespace
}  // namespace harbor
