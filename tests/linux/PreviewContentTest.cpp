#include "platform/linux/PreviewContent.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QImage>
#include <filesystem>

#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

struct PreviewContentTest : testing::Test {
  PreviewContent load(const std::string& path) {
    return loadPreview(FileUrl{path, false}, coder,
                       [](const std::string&) { return std::uint64_t{1'500'000}; }, {400, 300});
  }

  TemporaryFolder folder;
  LibplistCoder coder;
};

TEST_F(PreviewContentTest, ShowsAPictureScaledDown) {
  QImage image(1000, 200, QImage::Format_RGB32);
  image.fill(Qt::red);
  const std::string path = folder.path("wide.data");
  ASSERT_TRUE(image.save(QString::fromStdString(path), "PNG"));
  const PreviewContent content = load(path);
  EXPECT_EQ(content.picture.size(), QSize(400, 80));
  EXPECT_TRUE(content.text.isEmpty());
  EXPECT_TRUE(content.facts.startsWith("Picture, 1000 × 200 — ")) << content.facts.toStdString();
}

TEST_F(PreviewContentTest, DoesNotDecodeAPictureThatWouldTakeLong) {
  // A hundred thousand by a hundred thousand pixels, each of one bit: valid, and small enough as a file.
  const PreviewContent content =
      load(folder.makeFile("large.pbm", "P4\n100000 100000\n" + std::string(4096, '\0')));
  EXPECT_TRUE(content.picture.isNull());
  EXPECT_TRUE(content.facts.startsWith("File — ")) << content.facts.toStdString();
}

TEST_F(PreviewContentTest, ReadsNoMoreThanTheStartOfAHugeFile) {
  const std::string path = folder.makeFile("huge", "begin");
  std::filesystem::resize_file(path, 10'000'000'000);
  const PreviewContent content = load(path);
  EXPECT_TRUE(content.text.isEmpty());
  EXPECT_TRUE(content.facts.startsWith("File — 10 GB — ")) << content.facts.toStdString();
}

TEST_F(PreviewContentTest, ABrokenPictureIsNoPicture) {
  const std::string header("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\x7f\xff\xff\xff\x7f\xff\xff\xff\x08\x06\0\0\0", 29);
  const PreviewContent content = load(folder.makeFile("bomb.png", header));
  EXPECT_TRUE(content.picture.isNull());
  EXPECT_TRUE(content.text.isEmpty());
}

TEST_F(PreviewContentTest, ADrawingWithScriptsIsShownAsItsText) {
  const std::string drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\"><script>run()</script></svg>";
  const PreviewContent content = load(folder.makeFile("drawing.svg", drawing));
  EXPECT_TRUE(content.picture.isNull());
  EXPECT_EQ(content.text.toStdString(), drawing);
}

TEST_F(PreviewContentTest, ShowsTheStartOfALongTextWithoutHalfACharacter) {
  std::string text(64 * 1024 - 1, 'x');
  text += "\u20ac and more";
  const PreviewContent content = load(folder.makeFile("long.txt", text));
  EXPECT_EQ(content.text.size(), 64 * 1024 - 1);
}

TEST_F(PreviewContentTest, BytesThatAreNotTextAreNotShown) {
  EXPECT_TRUE(load(folder.makeFile("a", std::string("a\0b", 3))).text.isEmpty());
  EXPECT_TRUE(load(folder.makeFile("b",
                                   "a\xff"
                                   "b"))
                  .text.isEmpty());
  EXPECT_EQ(load(folder.makeFile("c", "gr\u00fcn")).text, QString::fromUtf8("gr\u00fcn"));
}

TEST_F(PreviewContentTest, ShowsAPropertyListAsAnOutline) {
  const auto bytes = coder.encode(PropertyList::Dictionary{
      {"Name", "Widget"}, {"List", PropertyList::Array{1, true}}, {"Blob", Data{1, 2, 3}}});
  ASSERT_TRUE(bytes);
  const PreviewContent content = load(folder.makeFile("x.plist", std::string(bytes->begin(), bytes->end())));
  EXPECT_EQ(content.text.toStdString(), "Blob: (3 bytes of data)\nList: \n  - 1\n  - true\nName: Widget");
}

TEST_F(PreviewContentTest, ShowsWhatIsInAFolderAndHowLargeItIs) {
  folder.makeFile("things/b");
  folder.makeFile("things/a/inner");
  const PreviewContent content = load(folder.path("things"));
  EXPECT_TRUE(content.isFolder);
  EXPECT_EQ(content.text, "a/\nb");
  EXPECT_TRUE(content.facts.startsWith("Folder, 2 items — 1.5 MB — ")) << content.facts.toStdString();
}

TEST_F(PreviewContentTest, ShowsTheFirstNamesOfALargeFolder) {
  for (int i = 1000; i < 1600; ++i)
    folder.makeFile("things/" + std::to_string(i));
  const PreviewContent content = load(folder.path("things"));
  EXPECT_TRUE(content.text.startsWith("1000\n1001\n"));
  EXPECT_TRUE(content.text.endsWith("1499\n…")) << content.text.right(20).toStdString();
  EXPECT_TRUE(content.facts.startsWith("Folder, 600 items — ")) << content.facts.toStdString();
}

TEST_F(PreviewContentTest, OpensNothingThatCouldBlock) {
  const std::string path = folder.path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_TRUE(load(path).facts.startsWith("Special file"));
}

TEST_F(PreviewContentTest, ALinkThatLeadsToItselfIsALink) {
  std::filesystem::create_symlink("loop", folder.path("loop"));
  EXPECT_EQ(load(folder.path("loop")).text, "loop");
}

TEST_F(PreviewContentTest, ADeviceIsNotRead) {
  const PreviewContent content = load("/dev/zero");
  EXPECT_TRUE(content.text.isEmpty());
  EXPECT_TRUE(content.facts.startsWith("Special file"));
}

TEST_F(PreviewContentTest, ShowsWhereALinkLeadsAndNotWhatIsThere) {
  const std::string target = folder.makeFile("target", "secret");
  std::filesystem::create_symlink(target, folder.path("link"));
  const PreviewContent content = load(folder.path("link"));
  EXPECT_EQ(content.text.toStdString(), target);
  EXPECT_TRUE(content.facts.startsWith("Link"));
}

TEST_F(PreviewContentTest, AFileThatIsGoneSaysSo) {
  EXPECT_EQ(load(folder.path("gone")).facts, "This file is no longer there.");
}

}  // namespace
}  // namespace harbor
