#include "uninstaller/RelatedPlaceSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "platform/icu/IcuText.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

struct PlaceSearch : testing::Test {
  Strings found(const std::vector<RelatedPlace>& places, std::vector<FileUrl> urls = {}) {
    RelatedPlaceSearch search(text, mayContinue);
    search.leaveOut(urls);
    for (const RelatedPlace& each : places) {
      for (FileUrl& url : search.find(each))
        urls.push_back(std::move(url));
    }
    Strings paths;
    for (const FileUrl& url : urls)
      paths.push_back(url.path.substr(folder.path().size() + 1) + (url.isDirectory ? "/" : ""));
    std::sort(paths.begin(), paths.end());
    return paths;
  }
  RelatedPlace place(int first, int last, Strings endings = {""}) const {
    return {folder.path(), first, last, {"Widget", "caf\u00e9"}, std::move(endings)};
  }

  IcuText text;
  TemporaryFolder folder;
  std::function<bool()> mayContinue;
};

TEST_F(PlaceSearch, TakesWholeNamesWithAnEndingWhateverTheCase) {
  for (const char* name : {"widget", "WIDGET.conf", "widgetrc", "widget.conf.old", "widgets", "my widget",
                           "cafe\u0301.conf", "caf\u00e9s", ".widget"})
    folder.makeFile(name);
  EXPECT_EQ(found({place(1, 1, {"", ".conf"})}), (Strings{"WIDGET.conf", "cafe\u0301.conf", "widget"}));
  EXPECT_EQ(found({place(1, 1, {"rc"})}), Strings{"widgetrc"});
}

TEST_F(PlaceSearch, LooksAtTheLevelsOfThePlaceOnly) {
  for (const char* name : {"widget", "a/widget", "a/b/widget", "a/b/c/widget"})
    folder.makeFile(name);
  EXPECT_EQ(found({place(1, 1)}), Strings{"widget"});
  EXPECT_EQ(found({place(2, 2)}), Strings{"a/widget"});
  EXPECT_EQ(found({place(1, 3)}), (Strings{"a/b/widget", "a/widget", "widget"}));
  EXPECT_EQ(found({place(3, 3)}), Strings{"a/b/widget"});
}

TEST_F(PlaceSearch, AnItemOfTheListIsNeitherListedAgainNorEntered) {
  folder.makeFile("widget/widget");
  folder.makeFile("other/widget");
  EXPECT_EQ(found({place(1, 2), place(1, 2)}), (Strings{"other/widget", "widget/"}));
  EXPECT_EQ(found({place(1, 2)}, {FileUrl{folder.path("other"), true}}), (Strings{"other/", "widget/"}));
}

TEST_F(PlaceSearch, LeavesAloneWhatItIsTold) {
  folder.makeFile("Trash/widget");
  folder.makeFile("other/Trash/widget");
  folder.makeFile("Widget");
  RelatedPlace careful = place(1, 3);
  careful.leftAlone = {"Trash", "Widget"};
  EXPECT_EQ(found({careful}), Strings{"other/Trash/widget"});
}

TEST_F(PlaceSearch, TakesLinksAndEntersNone) {
  folder.makeFile("real/widget");
  fs::create_directory_symlink("real", folder.path("again"));
  fs::create_symlink("nowhere", folder.path("widget"));
  EXPECT_EQ(found({place(1, 2)}), (Strings{"real/widget", "widget"}));
}

TEST_F(PlaceSearch, APlaceOfNoLevelIsTakenItselfWhereItExists) {
  const std::string kept = folder.makeFolder("kept");
  EXPECT_EQ(found({{kept, 0, 0}, {folder.path("missing"), 0, 0}}), Strings{"kept/"});
}

TEST_F(PlaceSearch, APlaceThatIsMissingOrHasNoNamesGivesNothing) {
  folder.makeFile("widget");
  EXPECT_EQ(found({{folder.path("missing"), 1, 2, {"widget"}}, {folder.path(), 1, 2}}), Strings{});
}

TEST_F(PlaceSearch, StopsBeforeTheNextFolderWhenItIsTold) {
  folder.makeFile("widget");
  folder.makeFile("a/widget");
  int asked = 0;
  mayContinue = [&asked] { return ++asked < 2; };
  EXPECT_EQ(found({place(1, 2), place(1, 2)}), Strings{"widget"});
}

}  // namespace
}  // namespace harbor
