#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "platform/plist/ColourArchive.h"
#include "platform/plist/LibplistCoder.h"

namespace harbor {
namespace {

using namespace std::string_literals;
using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;
using Uid = PropertyList::Uid;

PropertyList bytes(std::string_view text) {
  return Data(text.begin(), text.end());
}

PropertyList classObject(const char* name) {
  return Dictionary{{"$classname", name}, {"$classes", Array{name, "NSObject"}}};
}

PropertyList archive(Array objects, std::uint64_t root = 1) {
  return Dictionary{{"$version", 100'000},
                    {"$archiver", "NSKeyedArchiver"},
                    {"$top", Dictionary{{"root", Uid{root}}}},
                    {"$objects", std::move(objects)}};
}

// The archive of a colour with these fields.
PropertyList colourOf(Dictionary fields) {
  fields["$class"] = Uid{2};
  return archive({"$null", std::move(fields), classObject("NSColor")});
}

std::optional<Colour> rgb(std::string_view numbers) {
  return colourInArchive(colourOf({{"NSColorSpace", 1}, {"NSRGB", bytes(numbers)}}));
}

TEST(ColourArchive, AColourComesBackAsItWas) {
  const LibplistCoder coder;
  for (const Colour& colour : {Colour::black(), Colour{1, 1, 1, 1}, Colour{0.1, 0.2, 0.3, 0.4},
                               Colour{1.0 / 3.0, 1e-300, 0.999999999999, 0.0}}) {
    const auto data = coder.archiveColour(colour);
    ASSERT_TRUE(data);
    EXPECT_EQ(coder.unarchiveColour(*data), colour);
  }
}

TEST(ColourArchive, IsTheObjectGraphOfAKeyedArchive) {
  const auto written = archiveOfColour({1.0, 0.5, 0.25, 1.0});
  ASSERT_TRUE(written);
  EXPECT_EQ(*written->find("$version"), PropertyList(100'000));
  EXPECT_EQ(*written->find("$archiver"), PropertyList("NSKeyedArchiver"));
  EXPECT_EQ(*written->find("$top"), PropertyList(Dictionary{{"root", Uid{1}}}));
  EXPECT_EQ(
      *written->find("$objects"),
      PropertyList(Array{
          "$null",
          Dictionary{{"$class", Uid{2}},
                     {"NSColorSpace", 1},
                     {"NSRGB", bytes("1 0.5 0.25\0"s)},
                     {"NSComponents", bytes("1 0.5 0.25 1")},
                     {"NSCustomColorSpace", Uid{3}}},
          Dictionary{{"$classname", "NSColor"}, {"$classes", Array{"NSColor", "NSObject"}}},
          Dictionary{{"$class", Uid{4}}, {"NSID", 7}, {"NSModel", 1}},
          Dictionary{{"$classname", "NSColorSpace"}, {"$classes", Array{"NSColorSpace", "NSObject"}}}}));
}

TEST(ColourArchive, AlphaIsTheFourthNumberWhenItIsNotOne) {
  const auto written = archiveOfColour({0.0, 0.0, 0.0, 0.5});
  const PropertyList& colour = (*written->find("$objects")->as<Array>())[1];
  EXPECT_EQ(*colour.find("NSRGB"), bytes("0 0 0 0.5\0"s));
}

TEST(ColourArchive, NumbersThatAreNotFiniteAreNotWrittenAndOthersAreBroughtIntoRange) {
  EXPECT_FALSE(archiveOfColour({std::nan(""), 0, 0, 1}));
  EXPECT_FALSE(archiveOfColour({0, 0, 0, std::numeric_limits<double>::infinity()}));
  EXPECT_EQ(colourInArchive(*archiveOfColour({-1, 2, 0.5, 1})), (Colour{0, 1, 0.5, 1}));
}

TEST(ColourArchive, EachColourSpaceIsRead) {
  const struct {
    int space;
    const char* key;
    std::string numbers;
    Colour expected;
  } rows[] = {
      {1, "NSRGB", "1 0.5 0.25\0"s, {1, 0.5, 0.25, 1}},
      {1, "NSRGB", "1 0.5 0.25 0.75\0"s, {1, 0.5, 0.25, 0.75}},
      {2, "NSRGB", "0 0 1\0"s, {0, 0, 1, 1}},
      {2, "NSRGB", "0 0 1 0.5\0"s, {0, 0, 1, 0.5}},
      {3, "NSWhite", "0.5\0"s, {0.5, 0.5, 0.5, 1}},
      {3, "NSWhite", "0.5 0.25\0"s, {0.5, 0.5, 0.5, 0.25}},
      {4, "NSWhite", "0\0"s, {0, 0, 0, 1}},
      {4, "NSWhite", "1 0.125\0"s, {1, 1, 1, 0.125}},
      {5, "NSCMYK", "1 0 0 0\0"s, {0, 1, 1, 1}},
      {5, "NSCMYK", "0 0.5 1 0.5 0.25\0"s, {0.5, 0.25, 0, 0.25}},
  };
  for (const auto& row : rows) {
    for (const bool endsWithZero : {true, false}) {
      const std::string numbers = endsWithZero ? row.numbers : row.numbers.substr(0, row.numbers.size() - 1);
      EXPECT_EQ(colourInArchive(colourOf({{"NSColorSpace", row.space}, {row.key, bytes(numbers)}})),
                row.expected)
          << row.space << " " << row.numbers;
    }
  }
}

TEST(ColourArchive, ANamedColourIsItsFallback) {
  const Dictionary named{{"$class", Uid{3}},
                         {"NSColorSpace", 6},
                         {"NSCatalogName", "System"},
                         {"NSColorName", "labelColor"},
                         {"NSColor", Uid{2}}};
  const Dictionary fallback{{"$class", Uid{3}}, {"NSColorSpace", 3}, {"NSWhite", bytes("0\0"s)}};
  EXPECT_EQ(colourInArchive(archive({"$null", named, fallback, classObject("NSColor")})), Colour::black());
}

TEST(ColourArchive, ANamedColourWithoutAFallbackOrInACircleIsNone) {
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", 6}, {"NSColorName", "labelColor"}})));
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", 6}, {"NSColor", Uid{1}}})));
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", 6}, {"NSColor", Uid{0}}})));
}

TEST(ColourArchive, ComponentsInSrgbArePreferred) {
  Dictionary colour{{"$class", Uid{2}},
                    {"NSColorSpace", 1},
                    {"NSRGB", bytes("0 0 0\0"s)},
                    {"NSComponents", bytes("1 0.5 0.25 0.75")},
                    {"NSCustomColorSpace", Uid{3}}};
  const auto read = [&](int id, const char* spaceClass) {
    return colourInArchive(
        archive({"$null", colour, classObject("NSColor"),
                 Dictionary{{"$class", Uid{4}}, {"NSID", id}, {"NSModel", 1}}, classObject(spaceClass)}));
  };
  EXPECT_EQ(read(7, "NSColorSpace"), (Colour{1, 0.5, 0.25, 0.75}));
  EXPECT_EQ(read(11, "NSColorSpace"), Colour::black()) << "components of another space";
  EXPECT_EQ(read(7, "NSString"), Colour::black());
  colour.erase("NSComponents");
  EXPECT_EQ(read(7, "NSColorSpace"), Colour::black());
  colour["NSComponents"] = bytes("1 x 0 1");
  EXPECT_FALSE(read(7, "NSColorSpace"));
}

TEST(ColourArchive, ObjectsMayStandInAnyOrder) {
  const Dictionary colour{{"$class", Uid{1}}, {"NSColorSpace", 4}, {"NSWhite", bytes("1")}};
  EXPECT_EQ(colourInArchive(archive({"$null", classObject("NSColor"), colour}, 2)), (Colour{1, 1, 1, 1}));
}

TEST(ColourArchive, AnObjectOfAnotherClassIsNoColour) {
  const Dictionary colour{{"$class", Uid{2}}, {"NSColorSpace", 1}, {"NSRGB", bytes("1 1 1")}};
  EXPECT_TRUE(colourInArchive(archive({"$null", colour, classObject("NSColor")})));
  EXPECT_FALSE(colourInArchive(archive({"$null", colour, classObject("NSString")})));
  EXPECT_FALSE(colourInArchive(archive({"$null", colour, "NSColor"})));
  EXPECT_FALSE(colourInArchive(archive({"$null", colour})));
  EXPECT_FALSE(colourInArchive(archive({"$null", "text"})));
  EXPECT_FALSE(colourInArchive(archive({"$null", colour, classObject("NSColor")}, 0)));
  EXPECT_FALSE(colourInArchive(archive({"$null", colour, classObject("NSColor")}, UINT64_MAX)));
}

TEST(ColourArchive, WhatIsNoArchiveIsNoColour) {
  const PropertyList good = colourOf({{"NSColorSpace", 1}, {"NSRGB", bytes("1 1 1")}});
  for (const char* key : {"$archiver", "$top", "$objects"}) {
    Dictionary without = *good.as<Dictionary>();
    without.erase(key);
    EXPECT_FALSE(colourInArchive(without)) << key;
    without[key] = 1;
    EXPECT_FALSE(colourInArchive(without)) << key;
  }
  EXPECT_FALSE(colourInArchive("text"));
  EXPECT_FALSE(colourInArchive(Array{}));
}

TEST(ColourArchive, NumbersThatMakeNoSenseAreNoColour) {
  EXPECT_TRUE(rgb("1 0 0"));
  for (const std::string& numbers :
       {""s, "\0"s, "1"s, "1 0"s, "1 0 0 1 1"s, " 1 0 0"s, "1  0 0"s, "1,0,0"s, "a b c"s, "nan 0 0"s,
        "inf 0 0"s, "1 0 0x"s, "1e999 0 0"s, "1 0 0\0\0"s, "1 0\0 0"s}) {
    EXPECT_FALSE(rgb(numbers)) << numbers;
  }
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", 1}, {"NSRGB", "1 0 0"}}))) << "a text, no data";
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", 1}, {"NSWhite", bytes("1")}})));
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", 10}, {"NSRGB", bytes("1 0 0")}})));
  EXPECT_FALSE(colourInArchive(colourOf({{"NSColorSpace", -1}, {"NSRGB", bytes("1 0 0")}})));
  EXPECT_FALSE(colourInArchive(colourOf({{"NSRGB", bytes("1 0 0")}})));
}

TEST(ColourArchive, NumbersOutsideTheRangeAreBroughtIntoIt) {
  EXPECT_EQ(rgb("1.2 -0.1 1e5 7"), (Colour{1, 0, 1, 1}));
}

TEST(ColourArchive, BytesThatAreNoPropertyListAreNoColour) {
  const LibplistCoder coder;
  EXPECT_FALSE(coder.unarchiveColour({}));
  EXPECT_FALSE(coder.unarchiveColour({'b', 'p', 'l', 'i', 's', 't', '0', '0'}));
  const Data whole = *coder.archiveColour({0.1, 0.2, 0.3, 0.4});
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(
        coder.unarchiveColour(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))));
}

}  // namespace
}  // namespace harbor
