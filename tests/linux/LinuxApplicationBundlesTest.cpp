#include "platform/linux/LinuxApplicationBundles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DesktopEntriesFixture.h"
#include "platform/ApplicationListing.h"
#include "platform/icu/IcuText.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

class LinuxApplicationBundlesTest : public DesktopEntriesFixture {
 protected:
  IcuText text;
};

TEST_F(LinuxApplicationBundlesTest, BundlesAreListedByDisplayName) {
  add("usr/applications/org.z.desktop", "alpha\nName[de]=Ärger");
  add("usr/applications/org.y.desktop", "Beta");
  add("usr/applications/org.x.desktop", "Hidden", "tool\nNoDisplay=true");
  folder.makeFile("usr/applications/mimeinfo.cache", "[MIME Cache]\n");
  folder.makeFolder("usr/applications/Old.app/Contents");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  std::vector<FileUrl> urls;
  appendApplications(bundles, {folder.path("usr/applications"), true}, urls);
  sortApplications(bundles, urls);
  std::vector<std::string> names;
  for (const FileUrl& url : urls)
    names.push_back(bundles.displayName(url.path));
  EXPECT_EQ(names, (std::vector<std::string>{"Beta", "Old", "Ärger"}));
  EXPECT_EQ(bundles.sortKey(folder.path("usr/applications/org.z.desktop")), "ärger");
  EXPECT_EQ(bundles.displayName(folder.path("usr/applications/gone.desktop")), "gone");
}

TEST_F(LinuxApplicationBundlesTest, AnEntryAnswersForTheKeysOfABundle) {
  const std::string path = add("usr/applications/org.example.Ed.desktop", "Ed", "env A=1 /usr/bin/ed-bin %f");
  const std::string module = add("usr/applications/m.desktop", "M", "python3 -m m");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  const auto information = bundles.ownInformation(path);
  ASSERT_TRUE(information);
  EXPECT_EQ(*information->find("CFBundleIdentifier")->as<std::string>(), "org.example.Ed");
  EXPECT_EQ(*information->find("CFBundleDisplayName")->as<std::string>(), "Ed");
  EXPECT_EQ(*information->find("CFBundleExecutable")->as<std::string>(), "ed-bin");
  EXPECT_EQ(bundles.ownInformation(module)->find("CFBundleExecutable"), nullptr);
  EXPECT_EQ(bundles.ownInformation(folder.path("usr/applications/none.desktop")), std::nullopt);
}

TEST_F(LinuxApplicationBundlesTest, AnEntryIsTheBundleThatTheTableNames) {
  const std::string firefox = add("usr/applications/firefox-esr.desktop", "Firefox ESR");
  const std::string other = add("usr/applications/other.desktop", "Firefox");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  EXPECT_TRUE(bundles.isBundleNamed(firefox, "Firefox.app"));
  EXPECT_FALSE(bundles.isBundleNamed(other, "Firefox.app"));
  EXPECT_FALSE(bundles.isBundleNamed(firefox, "Safari.app"));
}

TEST_F(LinuxApplicationBundlesTest, AnEntryIsAlsoTheBundleThatItStandsInFor) {
  const std::string chromium = add("usr/applications/org.chromium.Chromium.desktop", "Chromium");
  const std::string chrome = add("usr/applications/google-chrome.desktop", "Google Chrome");
  const DesktopEntries entries(environment, 0ms);
  const LinuxApplicationBundles bundles(entries, text);
  EXPECT_TRUE(bundles.isBundleNamed(chromium, "Google Chrome.app"));
  EXPECT_TRUE(bundles.isBundleNamed(chromium, "Chromium.app"));
  EXPECT_FALSE(bundles.isBundleNamed(chrome, "Chromium.app"));
  EXPECT_FALSE(bundles.isBundleNamed(chromium, "Firefox.app"));
}

}  // namespace
}  // namespace harbor
