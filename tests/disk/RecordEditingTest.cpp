#include "disk/RecordEditing.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "base/FileDescriptor.h"
#include "disk/FileRewriting.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

std::string bookmark(const std::string& name, const std::string& applications) {
  return " <bookmark href=\"file:///" + name +
         "\" added=\"2026-01-01T10:00:00Z\" modified=\"2026-01-01T10:00:00Z\">\n"
         "    <info>\n      <metadata owner=\"http://freedesktop.org\">\n"
         "        <mime:mime-type type=\"application/pdf\"/>\n        <bookmark:applications>\n" +
         applications + "        </bookmark:applications>\n      </metadata>\n    </info>\n  </bookmark>\n";
}
std::string application(const std::string& exec) {
  return "          <bookmark:application name=\"Viewer\" exec=\"" + exec + "\" count=\"1\"/>\n";
}
constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\"\n"
    "      xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\"\n>\n";

TEST(RecordEditing, TakesTheKeysOfASettingsFileAndKeepsEveryOtherByte) {
  EXPECT_EQ(withoutSettings("# head\n[General]\ngeometry=@ByteArray(\\0[x]=y)\r\nlist=keep\n\n[RecentsMRL]\n"
                            "list=file:///a, file:///b\ntimes = 0, 12\nother=1\n[Last]\nlist=keep",
                            {"RecentsMRL/list", "RecentsMRL/times"}),
            "# "
            "head\n[General]\ngeometry=@ByteArray(\\0[x]=y)\r\nlist=keep\n\n[RecentsMRL]\nother=1\n[Last]"
            "\nlist=keep");
}

TEST(RecordEditing, ReadsOptionsBehindAKeyAndPatterns) {
  EXPECT_EQ(withoutSettings("[Recent Files]\nFile1[$e]=$HOME/a.pdf\nName1[$e]=a.pdf\n[MainWindow]\nFile1=x\n",
                            {"Recent Files/*"}),
            "[Recent Files]\n[MainWindow]\nFile1=x\n");
}

TEST(RecordEditing, TakesAValueThatGoesOnInTheNextLineWhole) {
  EXPECT_EQ(withoutSettings("[a]\nlist=one\\\ntwo\\\\\\\nthree\\\\\nkeep=1\n", {"a/list"}), "[a]\nkeep=1\n");
  EXPECT_EQ(withoutSettings("[a]\nkeep=one\\\nlist=two\n", {"a/list"}), "[a]\nkeep=one\\\nlist=two\n");
}

TEST(RecordEditing, LeavesASettingsFileWithoutTheKeysAsItIs) {
  for (const char* text : {"", "\n", "list=1", "[a]", "[a\nlist=1\n", "\xff\xfe\n[b]\nlist=2\n"})
    EXPECT_EQ(withoutSettings(text, {"a/list"}), text);
}

TEST(RecordEditing, TakesTheBookmarksOfThePrograms) {
  const std::string mine = bookmark("mine.pdf", application("&apos;evince %u&apos;"));
  const std::string shared = bookmark(
      "shared.pdf", application("&apos;gimp-2.10 %u&apos;") + application("&apos;/usr/bin/atril %u&apos;"));
  const std::string other = bookmark("evince.odt", application("&apos;soffice %u&apos;"));
  const std::string similar = bookmark("x.pdf", application("&apos;evince-wrapper %u&apos;"));
  EXPECT_EQ(withoutRecentFiles(kHead + mine + other + shared + similar + "</xbel>", {"evince", "atril"}),
            kHead + other + similar.substr(0, similar.size() - 1) + "\n</xbel>");
  EXPECT_EQ(withoutRecentFiles(kHead + mine + "</xbel>", {"evince"}),
            std::string(kHead, std::string(kHead).size() - 1) + "\n</xbel>");
  EXPECT_EQ(withoutRecentFiles(kHead + other + "</xbel>", {"evince"}), kHead + other + "</xbel>");
}

TEST(RecordEditing, DoesNotTouchAListOfAnotherForm) {
  const std::string mine = bookmark("mine.pdf", application("&apos;evince %u&apos;"));
  for (const std::string& text :
       {std::string(), std::string("<html>"), mine, kHead + std::string("<!-- ") + mine + "--></xbel>",
        kHead + std::string("<folder>") + mine + "</folder></xbel>", kHead + mine.substr(0, mine.size() / 2),
        kHead + mine.substr(0, mine.size() / 2) + mine})
    EXPECT_EQ(withoutRecentFiles(text, {"evince"}), std::nullopt) << text;
}

struct FileRewriting : testing::Test {
  static std::optional<std::string> toNew(std::string_view) { return "new"; }
  std::string read(const std::string& name) const {
    std::ifstream stream(folder.path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  bool rewrite(const std::string& name, const TextEdit& edit) const {
    const FileDescriptor opened(::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return rewriteFile(opened.get(), name, edit);
  }

  TemporaryFolder folder;
};

TEST_F(FileRewriting, ReplacesTheContentsAndKeepsTheMode) {
  const std::string path = folder.makeFile("a", "old");
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  EXPECT_TRUE(rewrite("a", [](std::string_view text) {
    EXPECT_EQ(text, "old");
    return std::optional<std::string>("new");
  }));
  EXPECT_EQ(read("a"), "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST_F(FileRewriting, DoesNotTouchAFileThatStaysAsItIs) {
  folder.makeFile("a", "old");
  const auto before = snapshotOf(folder.path());
  EXPECT_TRUE(rewrite("a", [](std::string_view text) { return std::optional<std::string>(text); }));
  EXPECT_FALSE(rewrite("a", [](std::string_view) { return std::optional<std::string>(); }));
  EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(FileRewriting, LeavesAloneWhatIsNoPlainFileOfItsOwn) {
  folder.makeFile("target", "old");
  folder.makeFile("twice", "old");
  fs::create_symlink("target", folder.path("link"));
  fs::create_hard_link(folder.path("twice"), folder.path("again"));
  folder.makeFolder("folder");
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  const auto before = snapshotOf(folder.path());
  for (const char* name : {"link", "twice", "folder", "pipe", "missing"})
    EXPECT_FALSE(rewrite(name, toNew)) << name;
  EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(FileRewriting, LeavesAFileThatSomebodyElseWroteInBetween) {
  folder.makeFile("a", "old");
  EXPECT_FALSE(rewrite("a", [&](std::string_view) {
    folder.makeFile("a", "somebody else's");
    return std::optional<std::string>("new");
  }));
  EXPECT_EQ(read("a"), "somebody else's");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

}  // namespace
}  // namespace harbor
