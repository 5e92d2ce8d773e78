#include "platform/linux/LinuxSoftwarePackages.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;
using Kind = PackageOwner::Kind;

struct SoftwarePackagesTest : testing::Test {
  SoftwarePackagesTest() {
    environment.dataHome = folder.path("home/.local/share");
    environment.dataDirectories = {folder.path("usr/share")};
    environment.configHome = folder.path("home/.config");
    environment.searchPath = {folder.makeFolder("usr/bin")};
  }
  std::string entry(const std::string& identifier, const std::string& keys) {
    return folder.makeFile("usr/share/applications/" + identifier + ".desktop",
                           "[Desktop Entry]\nType=Application\nName=Some\n" + keys + "\n");
  }
  // A program that leaves its arguments in a file.
  void addCentre(const std::string& identifier, const std::string& more) {
    const std::string program = folder.makeFile(
        "usr/bin/" + identifier, "#!/bin/sh\necho \"$*\" > " + folder.path("started.new") + "\nmv " +
                                     folder.path("started.new") + " " + folder.path("started") + "\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    entry(identifier, "Exec=" + program + " %U\n" + more);
  }
  std::string started() const {
    for (int i = 0; i < 1000 && !std::filesystem::exists(folder.path("started")); ++i)
      usleep(10'000);
    std::ifstream file(folder.path("started"));
    std::string line;
    std::getline(file, line);
    return line;
  }

  TemporaryFolder folder;
  XdgEnvironment environment;
};

TEST_F(SoftwarePackagesTest, KnowsWhatDebianFlatpakAndSnapInstalled) {
  folder.makeFile("var/lib/dpkg/info/geany.list", "/usr\n/usr/bin\n/usr/bin/geany\n");
  folder.makeFile("usr/bin/geany");
  const DesktopEntries entries(environment, 0ms);
  const LinuxSoftwarePackages packages(entries, folder.path());
  const auto flatpak = [](const char* name) { return PackageOwner{Kind::flatpak, name}; };
  const auto snap = [](const char* name) { return PackageOwner{Kind::snap, name}; };
  EXPECT_EQ(packages.ownerOf("/usr/bin/geany"), (PackageOwner{Kind::package, "geany"}));
  EXPECT_EQ(packages.ownerOf("/var/lib/flatpak/exports/share/applications/org.example.App.desktop"),
            flatpak("org.example.App"));
  EXPECT_EQ(
      packages.ownerOf(environment.dataHome + "/flatpak/exports/share/applications/org.example.App.desktop"),
      flatpak("org.example.App"));
  EXPECT_EQ(packages.ownerOf("/var/lib/flatpak/app/org.example.App/current/active"),
            flatpak("org.example.App"));
  EXPECT_EQ(packages.ownerOf("/var/lib/snapd/desktop/applications/player_tool.desktop"), snap("player"));
  EXPECT_EQ(packages.ownerOf("/snap/bin/player.tool"), snap("player"));
  EXPECT_EQ(packages.ownerOf("/snap/player/current/bin/player"), snap("player"));
  for (const std::string& own : {std::string("/usr/bin/own"), folder.path("home/.var/app/org.example.App"),
                                 folder.path("home/snap/player"), std::string("/var/lib/flatpakish/app/x"),
                                 environment.dataHome + "/applications/geany.desktop"})
    EXPECT_EQ(packages.ownerOf(own), std::nullopt) << own;
}

TEST_F(SoftwarePackagesTest, TheAddressNamesTheComponentThatDescribesTheEntry) {
  folder.makeFile("usr/share/metainfo/a.xml",
                  "<component><id>net.example.Bird</id>"
                  "<launchable type=\"desktop-id\">bird.desktop</launchable></component>");
  folder.makeFile("usr/share/metainfo/b.xml",
                  "<component><id>bad id&amp;</id><launchable type=\"desktop-id\">odd.desktop</launchable>");
  const std::string bird = entry("bird", "Exec=bird");
  const std::string odd = entry("odd", "Exec=odd");
  const std::string whole = entry("org.example.App", "Exec=app");
  const std::string strange = entry("a b", "Exec=app");
  const DesktopEntries entries(environment, 0ms);
  const LinuxSoftwarePackages packages(entries, folder.path());
  EXPECT_EQ(packages.componentOf(bird), "net.example.Bird");
  EXPECT_EQ(packages.componentOf(odd), "odd.desktop");
  EXPECT_EQ(packages.componentOf(whole), "org.example.App");
  EXPECT_EQ(packages.componentOf(strange), std::nullopt);
}

TEST_F(SoftwarePackagesTest, TheHandlerOfAddressesIsOpenedAtThePage) {
  addCentre("org.example.Centre", "MimeType=x-scheme-handler/appstream;");
  folder.makeFile("usr/share/applications/mimeinfo.cache",
                  "[MIME Cache]\nx-scheme-handler/appstream=org.example.Centre.desktop;\n");
  const std::string geany = entry("geany", "Exec=geany");
  const DesktopEntries entries(environment, 0ms);
  LinuxSoftwarePackages packages(entries, folder.path());
  EXPECT_TRUE(packages.canShowSoftware());
  EXPECT_TRUE(packages.showSoftware(geany));
  EXPECT_EQ(started(), "appstream://geany.desktop");
}

TEST_F(SoftwarePackagesTest, AKnownCentreIsOpenedWhereNothingHandlesAddresses) {
  addCentre("synaptic", "");
  const std::string geany = entry("geany", "Exec=geany");
  const DesktopEntries entries(environment, 0ms);
  LinuxSoftwarePackages packages(entries, folder.path());
  EXPECT_TRUE(packages.canShowSoftware());
  EXPECT_TRUE(packages.showSoftware(geany));
  EXPECT_EQ(started(), "");
}

TEST_F(SoftwarePackagesTest, WithoutACentreNothingIsOffered) {
  const std::string geany = entry("geany", "Exec=geany");
  const DesktopEntries entries(environment, 0ms);
  LinuxSoftwarePackages packages(entries, folder.path());
  EXPECT_FALSE(packages.canShowSoftware());
  EXPECT_FALSE(packages.showSoftware(geany));
}

}  // namespace
}  // namespace harbor
