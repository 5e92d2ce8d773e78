#include "uninstaller/RelatedFileReport.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "platform/icu/IcuText.h"
#include "platform/memory/MemoryApplicationBundles.h"
#include "support/TemporaryFolder.h"
#include "support/TreeSnapshot.h"
#include "uninstaller/RelatedFileScan.h"

namespace harbor {
namespace {

struct RelatedFileReportTest : testing::Test {
  RelatedFileReportTest() {
    widget = folder.makeFolder("Applications/Widget.app");
    folder.makeFile("Applications/Widget.app/program", std::string(2'000'000, 'x'));
    bundle.name = "Widget";
  }

  std::string report(ReportFormat format) const {
    return relatedFileReport(RelatedFileSearch{text, folder.path("home"), folder.path("root"), {}}, widget,
                             bundle, format);
  }
  static std::uint64_t sizeOfEntry(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0);
    return static_cast<std::uint64_t>(status.st_size);
  }
  std::string home(const std::string& path) const { return folder.path("home/" + path); }

  TemporaryFolder folder;
  IcuText text;
  MemoryApplicationBundles bundles{text};
  std::string widget;
  BundleInformation bundle;
};

TEST_F(RelatedFileReportTest, ListsEveryItemInTheOrderOfTheSearch) {
  folder.makeFile("home/Library/Preferences/widget.plist", "12345");
  folder.makeFile("home/Library/WebKit/Widget/data", "1234567");
  folder.makeFolder("home/Library/Group Containers/widget.empty");
  const auto size = [](const std::string& path) { return std::to_string(sizeOfRelatedFile(path)); };
  EXPECT_EQ(report(ReportFormat::json),
            "[\n"
            "  {\"path\": \"" +
                widget +
                "\", \"bytes\": 2000000, \"isFolder\": true},\n"
                "  {\"path\": \"" +
                home("Library/Preferences/widget.plist") +
                "\", \"bytes\": 5, \"isFolder\": false},\n"
                "  {\"path\": \"" +
                home("Library/WebKit/Widget") +
                "\", \"bytes\": 7, \"isFolder\": true},\n"
                "  {\"path\": \"" +
                home("Library/Group Containers/widget.empty") +
                "\", \"bytes\": " + size(home("Library/Group Containers/widget.empty")) +
                ", \"isFolder\": true}\n"
                "]\n");
  EXPECT_EQ(report(ReportFormat::table),
            "        Size            Bytes  Item\n"
            "        2 MB          2000000  " +
                widget +
                "/\n"
                "     5 bytes                5  " +
                home("Library/Preferences/widget.plist") +
                "\n"
                "     7 bytes                7  " +
                home("Library/WebKit/Widget") +
                "/\n"
                "     Zero KB                0  " +
                home("Library/Group Containers/widget.empty") + "/\n");
}

TEST_F(RelatedFileReportTest, CountsALinkAsTheLink) {
  folder.makeFolder("home/Library/WebKit");
  ASSERT_EQ(symlink(widget.c_str(), home("Library/WebKit/widget").c_str()), 0);
  EXPECT_NE(report(ReportFormat::json)
                .find("/Library/WebKit/widget\", \"bytes\": " + std::to_string(widget.size()) +
                      ", \"isFolder\": false}"),
            std::string::npos);
}

TEST_F(RelatedFileReportTest, CountsAFolderWithAllBelowItAndWhatIsGoneAsNothing) {
  folder.makeFile("full/.hidden", std::string(24, 'x'));
  folder.makeFile("full/deep/er/file", std::string(1000, 'x'));
  const std::uint64_t folders =
      sizeOfEntry(folder.path("full/deep")) + sizeOfEntry(folder.path("full/deep/er"));
  EXPECT_EQ(sizeOfRelatedFile(folder.path("full")), 1024 + folders);
  EXPECT_EQ(sizeOfRelatedFile(folder.path("full/deep/er/file")), 1000u);
  EXPECT_EQ(sizeOfRelatedFile(folder.path("gone")), 0u);
}

TEST_F(RelatedFileReportTest, KeepsNamesOnOneLineWhateverTheyHold) {
  folder.makeFile("home/Library/Preferences/widget\n\"\x1b[2J\"", "1");
  folder.makeFile("home/Library/Cookies/widget\xff", "1");
  const std::string json = report(ReportFormat::json);
  EXPECT_NE(json.find("/Preferences/widget\\u000a\\\"\\u001b[2J\\\"\", "), std::string::npos) << json;
  EXPECT_NE(json.find("/Cookies/widget\\ufffd\", "), std::string::npos) << json;
  const std::string table = report(ReportFormat::table);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 4);
  EXPECT_NE(table.find("1  \"" + home("Library/Cookies/widget\\ufffd\"\n")), std::string::npos) << table;
}

TEST_F(RelatedFileReportTest, ChangesNothing) {
  folder.makeFile("home/Library/Preferences/widget.plist", "12345");
  const auto before = snapshotOf(folder.path());
  report(ReportFormat::json);
  report(ReportFormat::table);
  EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(RelatedFileReportTest, KnowsWhatIsAnApplication) {
  const std::string entry = folder.makeFile("share/applications/org.example.Sketch.desktop");
  bundles.information[entry] = PropertyList::Dictionary{{"CFBundleName", "Sketch"}};
  EXPECT_TRUE(hasRelatedFiles(widget, bundles));
  EXPECT_TRUE(hasRelatedFiles(entry, bundles));
  bundles.information["/nowhere/Gone.desktop"] = PropertyList::Dictionary{};
  for (const std::string& path : {folder.path("Missing.app"), folder.makeFile("File.app"),
                                  folder.makeFolder("Folder"), folder.makeFile("notes.txt"),
                                  std::string("/nowhere/Gone.desktop"), std::string("/"), std::string()}) {
    EXPECT_FALSE(hasRelatedFiles(path, bundles)) << path;
  }
}

}  // namespace
}  // namespace harbor
