#include "platform/plist/XmlPropertyList.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace harbor {
namespace {

using namespace std::string_literals;

std::optional<PropertyList> read(std::string_view text) {
  return readXmlPropertyList({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::optional<PropertyList> readValue(const std::string& element) {
  return read(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">" +
      element + "</plist>\n");
}

std::string repeated(const std::string& part, int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += part;
  return text;
}

TEST(XmlPropertyList, EachKindOfValueIsRead) {
  EXPECT_EQ(readValue("<true/>"), PropertyList(true));
  EXPECT_EQ(readValue("<false/>"), PropertyList(false));
  EXPECT_EQ(readValue("<integer>42</integer>"), PropertyList(42));
  EXPECT_EQ(readValue("<real>0.25</real>"), PropertyList(0.25));
  EXPECT_EQ(readValue("<string>80% Opacity</string>"), PropertyList("80% Opacity"));
  EXPECT_EQ(readValue("<string/>"), PropertyList(""));
  EXPECT_EQ(readValue("<string>a &amp; b &lt; é 東</string>"), PropertyList("a & b < é 東"));
  EXPECT_EQ(readValue("<data>AAEC</data>"), PropertyList(Data{0, 1, 2}));
  EXPECT_EQ(readValue("<date>2001-01-01T00:00:10Z</date>"),
            PropertyList(Date(std::chrono::seconds(978'307'210))));
  EXPECT_EQ(readValue("<array><string>a</string><true/></array>"),
            PropertyList(PropertyList::Array{"a", true}));
  EXPECT_EQ(readValue("<dict><key>k</key><string>v</string></dict>"),
            PropertyList(PropertyList::Dictionary{{"k", "v"}}));
}

TEST(XmlPropertyList, IntegersOfAll64BitsOfEitherSignAreRead) {
  EXPECT_EQ(readValue("<integer>18446744073709551615</integer>"), PropertyList(UINT64_MAX));
  EXPECT_EQ(readValue("<integer>9223372036854775808</integer>"), PropertyList(std::uint64_t{1} << 63));
  EXPECT_EQ(readValue("<integer>-9223372036854775808</integer>"), PropertyList(INT64_MIN));
  EXPECT_EQ(readValue("<integer>-1</integer>"), PropertyList(-1));
}

TEST(XmlPropertyList, ADateFarInTheFutureIsRead) {
  EXPECT_EQ(readValue("<date>4001-01-01T00:00:00Z</date>"),
            PropertyList(Date(std::chrono::seconds(64'092'211'200))));
}

TEST(XmlPropertyList, AByteOrderMarkIsSteppedOver) {
  EXPECT_EQ(read("\xEF\xBB\xBF<plist><true/></plist>"), PropertyList(true));
}

TEST(XmlPropertyList, WhatIsNoPropertyListYieldsNothing) {
  for (const std::string& text :
       {""s, "hello"s, "<html/>"s, "<plist>"s, "<plist></plist>"s, "<plist><null/></plist>"s,
        "<plist><array><true/></plist>"s, "<plist><string>a&#0;b</string></plist>"s,
        "<plist><string>a\xFF</string></plist>"s, "<plist><dict><string>v</string></dict></plist>"s,
        "<!DOCTYPE p [<!ENTITY a 'b'>]><plist><string>&a;</string></plist>"s, std::string(40, '\0')}) {
    EXPECT_FALSE(read(text)) << text;
  }
}

TEST(XmlPropertyList, DeepNestingYieldsNothing) {
  for (const int depth : {200, 10'000, 1'000'000}) {
    EXPECT_FALSE(readValue(repeated("<array>", depth) + repeated("</array>", depth))) << depth;
    EXPECT_FALSE(readValue(repeated("<dict><key>k</key>", depth) + repeated("</dict>", depth))) << depth;
    EXPECT_FALSE(read("<plist>" + repeated("<array>", depth))) << depth;
    EXPECT_FALSE(readValue(repeated("<array><!--</array>-->", depth) + repeated("</array>", depth))) << depth;
  }
}

TEST(XmlPropertyList, MoreTagsOrReferencesThanAreReasonableYieldNothing) {
  EXPECT_TRUE(readValue("<array>" + repeated("<true/>", 90'000) + "</array>"));
  EXPECT_FALSE(readValue("<array>" + repeated("<true/>", 110'000) + "</array>"));
  EXPECT_FALSE(readValue("<string>" + repeated("&amp;", 110'000) + "</string>"));
}

TEST(XmlPropertyList, EveryTruncationYieldsAValueOrNothing) {
  const std::string whole =
      "<plist><dict><key>a</key><data>AAEC</data><key>b</key><date>2001-01-01T00:00:10Z</date>"
      "<key>c</key><array><integer>-5</integer><string>&#233;&quot;</string></array></dict></plist>";
  ASSERT_TRUE(read(whole));
  for (std::size_t length = 0; length + std::string("</plist>").size() < whole.size(); ++length)
    EXPECT_FALSE(read(std::string_view(whole).substr(0, length))) << length;
}

}  // namespace
}  // namespace harbor
