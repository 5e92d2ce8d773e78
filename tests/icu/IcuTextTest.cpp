#include "platform/icu/IcuText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace harbor {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

const IcuText kText;

using Clusters = std::vector<std::string_view>;

std::string joined(const Clusters& clusters) {
  std::string text;
  for (const std::string_view cluster : clusters)
    text += cluster;
  return text;
}

TEST(GraphemeClusters, AreWhatAReaderTakesForOneCharacter) {
  for (const std::string_view one : {
           "a", "é",
           "e\u0301",              // a letter and a combining accent
           "a\u0301\u0323\u0308",  // several of them
           "👍🏽",             // a skin tone
           "👩‍👩‍👧",   // joined by zero-width joiners
           "🏳️‍🌈",
           "🇩🇪",                  // a flag
           "1️⃣",             // a keycap
           "한",                  // a syllable
           "\u1112\u1161\u11AB",  // the same of its parts
           "நி",                  // a letter and a vowel sign
           "\r\n", "\n",
           "\u0301",  // an accent on nothing
       }) {
    EXPECT_EQ(kText.graphemeClusters(one), Clusters{one}) << one;
  }
}

TEST(GraphemeClusters, StandInTheOrderOfTheText) {
  EXPECT_EQ(kText.graphemeClusters(""), Clusters{});
  EXPECT_EQ(kText.graphemeClusters("abc"), (Clusters{"a", "b", "c"}));
  EXPECT_EQ(kText.graphemeClusters("a\r\nb\n\rc"), (Clusters{"a", "\r\n", "b", "\n", "\r", "c"}));
  EXPECT_EQ(kText.graphemeClusters("ae\u0301👩‍👩‍👧🇩🇪🇫🇷x"),
            (Clusters{"a", "e\u0301", "👩‍👩‍👧", "🇩🇪", "🇫🇷", "x"}));
  EXPECT_EQ(kText.graphemeClusters("\0a"s), (Clusters{"\0"sv, "a"}));
}

TEST(GraphemeClusters, AnOddNumberOfRegionalIndicatorsEndsWithHalfAFlag) {
  EXPECT_EQ(kText.graphemeClusters("🇩🇪🇫"), (Clusters{"🇩🇪", "🇫"}));
}

TEST(GraphemeClusters, BytesThatAreNotUtf8AreClustersOfTheirOwn) {
  EXPECT_EQ(kText.graphemeClusters("a\xFFz"), (Clusters{"a", "\xFF", "z"}));
  EXPECT_EQ(kText.graphemeClusters("\xFF\xFE"), (Clusters{"\xFF", "\xFE"}));
  EXPECT_EQ(kText.graphemeClusters("é\xE2\x82"), (Clusters{"é", "\xE2", "\x82"}));
  EXPECT_EQ(kText.graphemeClusters("\xED\xA0\x80"), (Clusters{"\xED", "\xA0", "\x80"}));
  EXPECT_EQ(kText.graphemeClusters("\xFF\u0301"), (Clusters{"\xFF", "\u0301"}));
}

TEST(GraphemeClusters, TogetherAreTheTextWhateverItsBytesAre) {
  std::string text;
  for (int i = 0; i < 20'000; ++i)
    text += static_cast<char>(i * 7919 >> 3);
  EXPECT_EQ(joined(kText.graphemeClusters(text)), text);
}

TEST(Lowercased, IsTheFullMappingOfEachCharacter) {
  const std::pair<std::string, std::string> rows[] = {
      {"", ""},
      {"Zoom Room 2", "zoom room 2"},
      {"ÄÖÜ ÉÈ", "äöü éè"},
      {"Straße", "straße"},
      {"ẞ", "ß"},
      {"İstanbul", "i\u0307stanbul"},  // one letter becomes two characters
      {"I", "i"},                      // in every language
      {"ΟΔΟΣ", "οδος"},                // the sigma at the end of a word
      {"ΣΑΣ Σ", "σας σ"},
      {"Ꭰ", "ꭰ"},  // Cherokee's small letters came later and take another byte length
      {"Ⰰ Ա Ა", "ⰰ ա ა"},
      {"𐐀", "𐐨"},
      {"東京 👍", "東京 👍"},
      {"ǅ", "ǆ"},
      {"Å", "å"},  // the sign for ångström becomes the letter
  };
  for (const auto& [text, expected] : rows)
    EXPECT_EQ(kText.lowercased(text), expected) << text;
}

TEST(Lowercased, BytesThatAreNotUtf8StayAsTheyAre) {
  EXPECT_EQ(kText.lowercased("A\xFF"
                             "BÄ\xE2\x82"
                             "C\x80"),
            "a\xFF"
            "bä\xE2\x82"
            "c\x80");
  EXPECT_EQ(kText.lowercased("\xC3"), "\xC3");
  EXPECT_EQ(kText.lowercased("A\0Ä"s), "a\0ä"s);
}

TEST(Lowercased, ALongTextIsMappedToItsEnd) {
  std::string text;
  std::string expected;
  for (int i = 0; i < 700'000; ++i) {
    text += "ÄB€";
    expected += "äb€";
  }
  EXPECT_EQ(kText.lowercased(text), expected);
}

TEST(Trimmed, TakesWhiteSpaceAndLineBreaksFromBothEnds) {
  EXPECT_EQ(kText.trimmed(""), "");
  EXPECT_EQ(kText.trimmed(" \t\r\n"), "");
  EXPECT_EQ(kText.trimmed("  a b\n"), "a b");
  EXPECT_EQ(kText.trimmed("\u00A0\u2003é\u3000\u2028\u2029\u0085"), "é");
  EXPECT_EQ(kText.trimmed("\u200Ba\u200B"), "a");
  EXPECT_EQ(kText.trimmed("\v\fa\v\f"), "a");
}

TEST(Trimmed, LeavesWhatIsNoWhiteSpace) {
  EXPECT_EQ(kText.trimmed("\u200Da\uFEFF"), "\u200Da\uFEFF");
  EXPECT_EQ(kText.trimmed("\xFF a \xFF"), "\xFF a \xFF");
  EXPECT_EQ(kText.trimmed(" \xE2\x80"), "\xE2\x80") << "a space that was cut off in the middle";
  EXPECT_EQ(kText.trimmed("\0"s), "\0"sv);
}

TEST(Trimmed, IsAPartOfTheTextThatWasPassed) {
  const std::string text = "  ab  ";
  const std::string_view trimmed = kText.trimmed(text);
  EXPECT_EQ(trimmed.data(), text.data() + 2);
}

}  // namespace
}  // namespace harbor
