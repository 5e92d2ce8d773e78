#include "platform/plist/BinaryPropertyList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "BinaryBytes.h"
#include "platform/plist/PropertyListLimits.h"

namespace harbor {
namespace {

using namespace std::string_literals;
using test::BinaryBytes;

Date dateAt(double secondsFrom1970) {
  return Date(std::chrono::duration<double>(secondsFrom1970));
}

std::optional<PropertyList> readObjects(std::vector<std::string> objects) {
  return readBinaryPropertyList(BinaryBytes{std::move(objects)}.data());
}

std::optional<PropertyList> roundTrip(const PropertyList& value) {
  const auto bytes = writeBinaryPropertyList(value);
  return bytes ? readBinaryPropertyList(*bytes) : std::nullopt;
}

PropertyList nested(int depth) {
  PropertyList value(true);
  for (int i = 0; i < depth; ++i)
    value = PropertyList(PropertyList::Array{std::move(value)});
  return value;
}

TEST(BinaryPropertyList, EachKindOfValueComesBackAsItWas) {
  const PropertyList values[] = {
      true,
      false,
      0,
      -1,
      255,
      256,
      65536,
      std::int64_t{1} << 32,
      std::numeric_limits<std::int64_t>::max(),
      std::numeric_limits<std::int64_t>::min(),
      std::uint64_t{1} << 63,
      std::numeric_limits<std::uint64_t>::max(),
      0.0,
      -0.1,
      std::numeric_limits<double>::infinity(),
      "",
      "80% Opacity",
      "Grüße, 東京 👩‍👩‍👧",
      std::string(14, 'a'),
      std::string(15, 'a'),
      std::string(70'000, 'b'),
      Data{},
      Data{0, 1, 255},
      Data(300, 7),
      PropertyList::Uid{0},
      PropertyList::Uid{65'536},
      PropertyList::Array{},
      PropertyList::Array{1, "two", PropertyList::Array{3.0}},
      PropertyList::Dictionary{},
      PropertyList::Dictionary{{"a", 1}, {"b", PropertyList::Dictionary{{"a", "a"}}}},
  };
  for (const PropertyList& value : values) {
    const auto read = roundTrip(value);
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, value);
  }
}

TEST(BinaryPropertyList, DatesKeepTheirFractionsAndMayLieBefore2001) {
  for (const double seconds : {0.0, 978'307'200.0, 1'700'000'000.123456, -1.5, 64'092'211'200.0}) {
    EXPECT_EQ(roundTrip(dateAt(seconds)), PropertyList(dateAt(seconds))) << seconds;
  }
}

TEST(BinaryPropertyList, MoreThanTheObjectsThatOneByteCanNumberComeBack) {
  PropertyList::Array array;
  for (int i = 0; i < 70'000; ++i)
    array.emplace_back(i);
  EXPECT_EQ(roundTrip(array), PropertyList(array));
}

TEST(BinaryPropertyList, ARepeatedTextIsStoredOnce) {
  const std::string text(1000, 'x');
  const auto bytes = writeBinaryPropertyList(PropertyList::Array{text, text, text});
  ASSERT_TRUE(bytes);
  EXPECT_LT(bytes->size(), 1100u);
}

TEST(BinaryPropertyList, AnIntegerAbove63BitsTakesSixteenBytesAndANegativeOneEight) {
  const auto large = writeBinaryPropertyList(std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(std::string(large->begin() + 8, large->begin() + 25),
            "\x14"s + std::string(8, 0) + std::string(8, -1));
  const auto negative = writeBinaryPropertyList(-2);
  EXPECT_EQ(std::string(negative->begin() + 8, negative->begin() + 17),
            "\x13"s + std::string(7, -1) + "\xFE");
}

TEST(BinaryPropertyList, WritesTheBytesThatTheSystemsOwnEncoderWrites) {
  const auto bytes = writeBinaryPropertyList(PropertyList::Array{"a", "b"});
  const std::string expected = "bplist00\xA2\x01\x02\x51"s + "a\x51"s + "b"s + "\x08\x0B\x0D"s +
                               std::string(6, '\0') + "\x01\x01"s + test::bigEndian(3, 8) +
                               test::bigEndian(0, 8) + test::bigEndian(15, 8);
  EXPECT_EQ(std::string(bytes->begin(), bytes->end()), expected);
}

TEST(BinaryPropertyList, TextsThatAreNotUtf8OrHoldAZeroByteAreNotWritten) {
  for (const std::string& text :
       {"a\xFF"s, "\xC0\x80"s, "\xED\xA0\x80"s, "\xF4\x90\x80\x80"s, "\xE2\x82"s, "\x80"s, "a\0b"s, "é\0"s}) {
    EXPECT_FALSE(writeBinaryPropertyList(text));
    EXPECT_FALSE(writeBinaryPropertyList(PropertyList::Dictionary{{text, 1}}));
  }
}

TEST(BinaryPropertyList, DatesOutsideTheYears1To9999AreNeitherWrittenNorRead) {
  for (const double seconds : {-1e12, 1e12, std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(writeBinaryPropertyList(dateAt(seconds))) << seconds;
    const std::string bits = test::bigEndian(std::bit_cast<std::uint64_t>(seconds), 8);
    EXPECT_FALSE(readObjects({"\x33"s + bits})) << seconds;
  }
}

TEST(BinaryPropertyList, NestingIsWrittenAndReadToTheSameDepth) {
  EXPECT_TRUE(roundTrip(nested(PropertyListLimits::kDeepest)));
  EXPECT_FALSE(writeBinaryPropertyList(nested(PropertyListLimits::kDeepest + 1)));
}

TEST(BinaryPropertyList, DeepNestingInTheBytesYieldsNothing) {
  BinaryBytes bytes;
  bytes.referenceSize = 4;
  for (std::uint32_t i = 0; i < 100'000; ++i)
    bytes.objects.push_back("\xA1"s + test::bigEndian(i + 1, 4));
  bytes.objects.push_back("\x09"s);
  EXPECT_FALSE(readBinaryPropertyList(bytes.data()));
}

TEST(BinaryPropertyList, CyclesYieldNothing) {
  EXPECT_FALSE(readObjects({"\xA1\x00"s}));
  EXPECT_FALSE(readObjects({"\xA2\x01\x01"s, "\xA2\x00\x00"s}));
  EXPECT_FALSE(readObjects({"\xD1\x01\x00"s, "\x51"s + "k"}));
}

TEST(BinaryPropertyList, SharedObjectsThatUnfoldWithoutEndYieldNothing) {
  std::vector<std::string> layers;
  for (int i = 1; i <= 60; ++i)
    layers.push_back("\xA2"s + static_cast<char>(i) + static_cast<char>(i));
  layers.push_back("\x09"s);
  EXPECT_FALSE(readObjects(layers));
}

TEST(BinaryPropertyList, AFewBytesDoNotUnfoldToManyValues) {
  const auto layers = [](int count) {
    std::vector<std::string> objects;
    for (int i = 1; i <= count; ++i)
      objects.push_back("\xA2"s + static_cast<char>(i) + static_cast<char>(i));
    objects.push_back("\x09"s);
    return objects;
  };
  EXPECT_TRUE(readObjects(layers(8)));
  EXPECT_FALSE(readObjects(layers(16)));
}

TEST(BinaryPropertyList, ALongTextThatIsSharedTooOftenYieldsNothing) {
  const std::uint32_t megabyte = 1 << 20;
  const std::string text = "\x5F\x12"s + test::bigEndian(megabyte, 4) + std::string(megabyte, 'x');
  const auto copies = [&](std::uint16_t count) {
    return "\xAF\x11"s + test::bigEndian(count, 2) + std::string(count, '\x01');
  };
  EXPECT_TRUE(readObjects({copies(100), text}));
  EXPECT_FALSE(readObjects({copies(300), text}));
}

TEST(BinaryPropertyList, SharedObjectsWithinTheLimitsAreRead) {
  const auto value = readObjects({"\xA2\x01\x01"s, "\x51"s + "x"});
  EXPECT_EQ(value, PropertyList(PropertyList::Array{"x", "x"}));
}

TEST(BinaryPropertyList, UnknownKindsAndSizesYieldNothing) {
  for (const std::string& object : {
           "\x00"s,                          // null
           "\x0F"s,                          // fill
           "\x0C"s + "x",                    // URL
           "\x15"s + std::string(32, '\0'),  // integer of 32 bytes
           "\x20\x00"s,                      // real of 1 byte
           "\x24"s + std::string(16, '\0'),  // real of 16 bytes
           "\x32"s + std::string(8, '\0'),   // date of another size
           "\x70"s,                          // unused
           "\x88"s + std::string(9, '\0'),   // reference of 9 bytes
           "\x90"s,                          // unused
           "\xB0"s,                          // ordered set
           "\xC0"s,                          // set
           "\xE0"s,                          // unused
           "\xF0"s,                          // unused
       }) {
    EXPECT_FALSE(readObjects({object})) << static_cast<int>(static_cast<unsigned char>(object[0]));
  }
}

TEST(BinaryPropertyList, IntegersOfSixteenBytesAreReadWhenTheyFitInto64Bits) {
  const auto of = [](std::uint64_t high, std::uint64_t low) {
    return readObjects({"\x14"s + test::bigEndian(high, 8) + test::bigEndian(low, 8)});
  };
  EXPECT_EQ(of(0, 5), PropertyList(5));
  EXPECT_EQ(of(0, UINT64_MAX), PropertyList(UINT64_MAX));
  EXPECT_EQ(of(UINT64_MAX, UINT64_MAX), PropertyList(-1));
  EXPECT_FALSE(of(1, 0));
  EXPECT_FALSE(of(UINT64_MAX, 5));
}

TEST(BinaryPropertyList, ShortRealsAndShortIntegersAreRead) {
  EXPECT_EQ(readObjects({"\x22"s + test::bigEndian(std::bit_cast<std::uint32_t>(0.5f), 4)}),
            PropertyList(0.5));
  EXPECT_EQ(readObjects({"\x10\xFF"s}), PropertyList(255));
  EXPECT_EQ(readObjects({"\x12\xFF\xFF\xFF\xFF"s}), PropertyList(std::int64_t{4'294'967'295}));
}

TEST(BinaryPropertyList, DamagedTextsYieldNothing) {
  EXPECT_FALSE(readObjects({"\x51\xE9"s}));              // not ASCII
  EXPECT_FALSE(readObjects({"\x51\x00"s}));              // a zero byte
  EXPECT_FALSE(readObjects({"\x61\x00\x00"s}));          // the same in UTF-16
  EXPECT_FALSE(readObjects({"\x61\xD8\x00"s}));          // a lone high surrogate
  EXPECT_FALSE(readObjects({"\x62\xDC\x00\xD8\x00"s}));  // a pair the wrong way round
  EXPECT_FALSE(readObjects({"\x62\xD8\x00\x00\x41"s}));  // a high surrogate and a letter
  EXPECT_FALSE(readObjects({"\x5F"s}));                  // the size is missing
  EXPECT_FALSE(readObjects({"\x5F\x51"s + "a"}));        // the size is no integer
  EXPECT_FALSE(readObjects({"\x5F\x14"s + std::string(16, '\0')}));
  EXPECT_FALSE(readObjects({"\x6F\x13"s + test::bigEndian(std::uint64_t{1} << 63, 8)}));
  EXPECT_FALSE(readObjects({"\x4F\x13"s + test::bigEndian(UINT64_MAX, 8)}));
}

TEST(BinaryPropertyList, ContainersThatReachBeyondTheObjectsYieldNothing) {
  EXPECT_FALSE(readObjects({"\xA1\x09"s}));  // no such object
  EXPECT_FALSE(readObjects({"\xA3\x00"s}));
  EXPECT_FALSE(readObjects({"\xAF\x13"s + test::bigEndian(UINT64_MAX / 2, 8)}));
  EXPECT_FALSE(readObjects({"\xDF\x13"s + test::bigEndian(std::uint64_t{1} << 62, 8)}));
  EXPECT_FALSE(readObjects({"\xD1\x01\x01"s, "\x09"s}));  // a key that is no text
}

TEST(BinaryPropertyList, EveryTruncationAndEveryChangedByteEndsWithAValueOrNothing) {
  const PropertyList value = PropertyList::Dictionary{
      {"a", PropertyList::Array{1, 2.5, "text", "täxt"}}, {"b", Data{1, 2, 3}}, {"c", dateAt(1e9)}};
  const Data whole = *writeBinaryPropertyList(value);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(readBinaryPropertyList(std::span(whole).first(length))) << length;
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      Data changed = whole;
      changed[at] ^= static_cast<std::uint8_t>(1 << bit);
      // What is read all the same has to be a value that can be stored again.
      if (const auto read = readBinaryPropertyList(changed)) {
        EXPECT_TRUE(writeBinaryPropertyList(*read)) << at;
      }
    }
  }
}

TEST(BinaryPropertyList, ABrokenTrailerYieldsNothing) {
  const Data good = BinaryBytes{{"\x09"s}}.data();
  ASSERT_EQ(readBinaryPropertyList(good), PropertyList(true));
  const std::size_t trailer = good.size() - 32;
  const auto changed = [&](std::size_t at, std::uint8_t byte) {
    Data bytes = good;
    bytes[trailer + at] = byte;
    return readBinaryPropertyList(bytes);
  };
  EXPECT_FALSE(changed(6, 0));  // offsets of no byte
  EXPECT_FALSE(changed(6, 9));  // offsets of nine bytes
  EXPECT_FALSE(changed(7, 0));  // references of no byte
  EXPECT_FALSE(changed(7, 9));
  EXPECT_FALSE(changed(8, 0xFF));   // 2^63 objects and more
  EXPECT_FALSE(changed(15, 0));     // no object
  EXPECT_FALSE(changed(15, 2));     // more objects than offsets
  EXPECT_FALSE(changed(16, 0x80));  // the root is none of them
  EXPECT_FALSE(changed(23, 1));
  EXPECT_FALSE(changed(24, 0xFF));  // the offset table lies beyond the end
  EXPECT_FALSE(changed(31, 8));     // and inside the header
}

TEST(BinaryPropertyList, OtherVersionsAreNotRead) {
  BinaryBytes bytes{{"\x09"s}};
  bytes.header = "bplist15";
  EXPECT_FALSE(readBinaryPropertyList(bytes.data()));
}

}  // namespace
}  // namespace harbor
