#include "base/FileUrl.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(FileUrl, PercentEncodesAndEndsAFolderWithASlash) {
  EXPECT_EQ((FileUrl{"/Applications/Zoom Room.app", true}.absoluteString()),
            "file:///Applications/Zoom%20Room.app/");
  EXPECT_EQ((FileUrl{"/tmp/a#b?c%d", false}.absoluteString()), "file:///tmp/a%23b%3Fc%25d");
  EXPECT_EQ((FileUrl{"/", true}.absoluteString()), "file:///");
}

TEST(FileUrl, KeepsNamesThatAreNotUtf8) {
  const FileUrl url{"/tmp/\xff\xfe\n", false};
  EXPECT_EQ(url.absoluteString(), "file:///tmp/%FF%FE%0A");
  EXPECT_EQ(FileUrl::parse(url.absoluteString())->path, url.path);
}

TEST(FileUrl, ReadsBackWhatItWrote) {
  const auto url = FileUrl::parse("file:///Applications/Zoom%20Room.app/");
  ASSERT_TRUE(url);
  EXPECT_EQ(url->path, "/Applications/Zoom Room.app");
  EXPECT_TRUE(url->isDirectory);
  EXPECT_TRUE(FileUrl::parse("file://localhost/etc"));
}

TEST(FileUrl, RejectsWhatIsNotAFileUrlOfThisMachine) {
  for (const char* text : {"", "/tmp", "http://example.org/", "file://host/tmp", "file:tmp", "file:///a%2",
                           "file:///a%zz", "file:///a%00b", "file:///a?query", "file:///a#fragment"}) {
    EXPECT_FALSE(FileUrl::parse(text)) << text;
  }
}

TEST(FileUrl, EqualityIsOfThePathByteByByte) {
  EXPECT_EQ((FileUrl{"/a", true}), (FileUrl{"/a", false}));
  EXPECT_NE((FileUrl{"/a", true}), (FileUrl{"/A", true}));
}

TEST(PathComponents, AreThoseOfTheLastName) {
  EXPECT_EQ(lastPathComponent("/A/B.app/"), "B.app");
  EXPECT_EQ(lastPathComponent("/"), "/");
  EXPECT_EQ(lastPathComponent("name"), "name");
  EXPECT_EQ(pathExtension("/A/B.tar.gz"), "gz");
  EXPECT_EQ(pathExtension("/A.b/C"), "");
  EXPECT_EQ(pathExtension("/A/.download"), "");
  EXPECT_EQ(pathExtension("/A/B."), "");
  EXPECT_EQ(stemOfPath("/A/B.app"), "B");
  EXPECT_EQ(stemOfPath("/A/.hidden"), ".hidden");
}

TEST(FileUrl, OnLinuxTwoFormsOfACharacterAreTwoPaths) {
  EXPECT_EQ((FileUrl{"/Applications/\u00C9diteur.app", true}),
            (FileUrl{"/Applications/\u00C9diteur.app", false}));
  EXPECT_FALSE((FileUrl{"/Applications/\u00C9diteur.app"}) == (FileUrl{"/Applications/E\u0301diteur.app"}));
}

}  // namespace
}  // namespace harbor
