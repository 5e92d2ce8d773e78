#include "app/Links.h"

#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using Texts = std::vector<std::string>;

struct LinksTest : testing::Test {
  TemporaryFolder folder;
  MemoryPlatform platform;

  void SetUp() override {
    platform.fileManager.localApplications = {{folder.path(), true}};
    platform.settings.setBool("StartMessageAlertSuppression", true);
  }
  Texts opened(std::string_view address) {
    openLink(platform.workspace, address);
    return std::exchange(platform.workspace.openedUrls, {});
  }
};

TEST_F(LinksTest, EachItemOpensItsPage) {
  AppDelegate app(platform.asPlatform(), {"https://a.example/help", "https://a.example/privacy",
                                          "macappstore://store.example/id1?mt=12", "https://a.example/"});
  app.applicationDidFinishLaunching();
  for (const char* title : {"Harbor Tray Help", "Privacy Policy", "Rate on App Store", "Visit Tidewell"})
    EXPECT_TRUE(platform.statusItem.choose({title})) << title;
  EXPECT_EQ(platform.workspace.openedUrls,
            (Texts{"https://a.example/help", "https://a.example/privacy",
                   "macappstore://store.example/id1?mt=12", "https://a.example/"}));
}

TEST_F(LinksTest, AnItemWhoseAddressIsNoUrlDoesNothing) {
  AppDelegate app(platform.asPlatform(), {"https://a.example/two words", "", "store", "://"});
  app.applicationDidFinishLaunching();
  for (const char* title : {"Harbor Tray Help", "Privacy Policy", "Rate on App Store", "Visit Tidewell"})
    EXPECT_TRUE(platform.statusItem.choose({title})) << title;
  EXPECT_TRUE(platform.workspace.openedUrls.empty());
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(LinksTest, ThatNothingOpensAPageIsNoMatterOfTheMenu) {
  platform.workspace.opens = false;
  AppDelegate app(platform.asPlatform());
  app.applicationDidFinishLaunching();
  EXPECT_TRUE(platform.statusItem.choose({"Visit Tidewell"}));
  EXPECT_TRUE(platform.alertPanel.shown.empty());
}

TEST_F(LinksTest, TheConfiguredAddressesAreUrls) {
  const Links& links = Links::configured();
  for (const std::string_view address : {links.help, links.privacyPolicy, links.store, links.home})
    EXPECT_EQ(opened(address), Texts{std::string(address)});
}

TEST_F(LinksTest, TheStorePageOpensInTheStoreApplication) {
  const std::string_view store = Links::configured().store;
  EXPECT_TRUE(store.starts_with("macappstore:")) << store;
  EXPECT_TRUE(store.ends_with("?mt=12")) << store;
}

TEST_F(LinksTest, WhatIsNoUrlIsIgnored) {
  for (const char* address : {"", ":", "https:", "//a.example/", "a.example", "1https://a.example/",
                              "ht tp://a.example/", "https://a.example/ ", "https://a.example/\n",
                              "https://a.example/%", "https://a.example/%2", "https://a.example/%zz",
                              "https://a.example/\xc3\xa4", "https://a.example/<b>", "https://a.example/\""})
    EXPECT_EQ(opened(address), Texts{}) << address;
}

TEST_F(LinksTest, EveryCharacterOfAUrlIsAllowed) {
  for (const char* address : {"https://a.example/", "x+y-z.1:path",
                              "https://[::1]:80/a?b=c&d='e'#f!$()*+,;=@~_%20%eF", "mailto:a@b"})
    EXPECT_EQ(opened(address), Texts{address});
}

}  // namespace
}  // namespace harbor
