// Programs in sandboxes that put links and lies where the cleanups look: nothing outside their own folder may
// go by it.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "PrivacyFixture.h"
#include "platform/linux/LinuxCleanupPlaces.h"

namespace harbor {
namespace {

constexpr PrivacyTarget kTargets[] = {PrivacyTarget::finder,  PrivacyTarget::googleChrome,
                                      PrivacyTarget::firefox, PrivacyTarget::mail,
                                      PrivacyTarget::preview, PrivacyTarget::quickTimePlayer};

// A place of the tables as it lies in a sandbox: the folder that the sandbox may write, and the path in it.
struct SandboxedPath {
  PrivacyTarget target;
  std::string own;
  std::string path;
  bool isFolder;
};

bool isFolderTaken(CleanupPlace::Take take) {
  return take == CleanupPlace::Take::contents || take == CleanupPlace::Take::ownFilesByPattern;
}

void append(std::vector<SandboxedPath>& paths, PrivacyTarget target, const ProgramPackages& packages,
            PlaceBase base, const std::string& path, bool isFolder) {
  const auto below = [base](const char* config, const char* cache, const char* data, const char* state) {
    switch (base) {
      case PlaceBase::config:
        return std::string(config);
      case PlaceBase::cache:
        return std::string(cache);
      case PlaceBase::data:
        return std::string(data);
      case PlaceBase::state:
        return std::string(state);
      default:
        return std::string();
    }
  };
  if (*packages.flatpak)
    paths.push_back({target, std::string(".var/app/") + packages.flatpak,
                     below("config/", "cache/", "data/", ".local/state/") + path, isFolder});
  if (*packages.snap) {
    for (const char* part : {"common/", "7/"})
      paths.push_back({target, std::string("snap/") + packages.snap,
                       part + below(".config/", ".cache/", ".local/share/", ".local/state/") + path,
                       isFolder});
  }
  if (base == PlaceBase::home && path.starts_with(".var/app/*/"))
    paths.push_back({target, ".var/app/org.example.App", path.substr(11), isFolder});
  if (base == PlaceBase::home && path.starts_with("snap/*/*/"))
    paths.push_back({target, "snap/example", "common/" + path.substr(9), isFolder});
  if (base == PlaceBase::home && path.starts_with("snap/chromium/"))
    paths.push_back({target, "snap/chromium", path.substr(14), isFolder});
}

std::vector<SandboxedPath> sandboxedPaths() {
  std::vector<SandboxedPath> paths;
  for (const PrivacyPlace& row : kPrivacyPlaces)
    append(paths, row.target, row.packages, row.base, row.path, isFolderTaken(row.take));
  for (const ProfilesPlace& row : kProfileCaches)
    append(paths, row.target, row.packages, row.base, row.path, true);
  for (const ProfilesPlace& row : kProfiles) {
    if (row.target == PrivacyTarget::googleChrome) {
      append(paths, row.target, row.packages, row.base, std::string(row.path) + "/Default", true);
      for (const ProfileItem& item : kProfileItems) {
        if (item.target == row.target)
          append(paths, row.target, row.packages, row.base, std::string(row.path) + "/Default/" + item.path,
                 false);
      }
    } else {
      append(paths, row.target, row.packages, row.base, std::string(row.path) + "/profiles.ini", false);
      append(paths, row.target, row.packages, row.base, std::string(row.path) + "/a.default/times.json",
             false);
      append(paths, row.target, row.packages, row.base,
             std::string(row.path) + "/a.default/sessionstore-backups/recovery.jsonlz4", false);
    }
  }
  return paths;
}

struct SandboxedPlaces : LinuxPrivacy {
  std::vector<std::string> pathsOf(PrivacyTarget target) const {
    std::vector<std::string> paths;
    for (const CleanupPlace& place : makePlaces().placesOf(target))
      paths.push_back(place.path);
    return paths;
  }
  void link(const std::string& target, const std::string& name) const {
    root.makeFolder("home/ada/" + parentOf(name));
    fs::create_symlink(target, home + "/" + name);
  }
};

TEST_F(SandboxedPlaces, OfEveryRowAreFoundWhereNoLinkIs) {
  for (const SandboxedPath& each : sandboxedPaths()) {
    if (each.target == PrivacyTarget::firefox && !each.path.ends_with("recovery.jsonlz4") && !each.isFolder)
      continue;
    const std::string path = each.own + "/" + each.path;
    file(each.isFolder ? path + "/x" : path);
    if (each.path.starts_with("7/")) link("7", each.own + "/current");
    if (each.target == PrivacyTarget::firefox && !each.isFolder) {
      file(parentOf(parentOf(path)) + "/times.json");
      file(parentOf(parentOf(parentOf(path))) + "/profiles.ini",
           "[Profile0]\nIsRelative=1\nPath=a.default\n");
    }
    const std::string taken = path.ends_with("recovery.jsonlz4") ? parentOf(path) : path;
    const auto found = pathsOf(each.target);
    EXPECT_NE(std::find(found.begin(), found.end(), home + "/" + taken), found.end()) << path;
    root.remove("home/ada/.var");
    root.remove("home/ada/snap");
  }
}

TEST_F(SandboxedPlaces, OfNoRowAreReachedByALinkThatASandboxMayWrite) {
  int links = 0;
  for (const SandboxedPath& each : sandboxedPaths()) {
    const std::string whole = each.own + "/" + each.path;
    for (std::size_t end = whole.find('/', each.own.size() + 1); end <= whole.size();
         end = std::min(whole.find('/', end + 1), whole.size())) {
      // Everything is where the row has it, but from one component on it lies in another folder.
      const std::string rest = whole.substr(end);
      if (each.target == PrivacyTarget::firefox) {
        const std::string folder = whole.substr(0, whole.find("mozilla/firefox") + 15);
        file(folder + "/profiles.ini", "[Profile0]\nIsRelative=1\nPath=a.default\n");
        file(folder + "/a.default/times.json");
      }
      root.remove("home/ada/" + whole.substr(0, end));
      file(each.isFolder ? "Elsewhere" + rest + "/x" : "Elsewhere" + rest,
           "[Profile0]\nIsRelative=1\nPath=a.default\n");
      if (rest.empty() && !each.isFolder) file("Elsewhere");
      file("Other/a.default/times.json");
      link(home + "/Elsewhere", whole.substr(0, end));
      if (each.path.starts_with("7/")) link("7", each.own + "/current");
      for (const std::string& path : pathsOf(each.target)) {
        const std::string real = fs::canonical(path).string();
        EXPECT_FALSE(real.starts_with(home + "/Elsewhere")) << whole.substr(0, end) << " led to " << real;
        EXPECT_EQ(real, path) << whole.substr(0, end);
      }
      ++links;
      for (const char* name : {".var", "snap", "Elsewhere", "Other"})
        root.remove("home/ada/" + std::string(name));
      if (end == whole.size()) break;
    }
  }
  EXPECT_GT(links, 150);
}

TEST_F(SandboxedPlaces, AViewersCacheThatIsALinkLeavesNotesAndBookmarksAlone) {
  file(".local/share/okular/docdata/1.letter.pdf.xml");
  file(".local/share/okular/bookmarks.xml");
  link(home + "/.local/share", ".var/app/org.kde.okular/cache");
  link("../../../.local/share", "snap/okular/common/.cache");
  expectTaken(&TWProtectPrivacy::clearPreview, {});
}

TEST_F(SandboxedPlaces, ABrowsersCacheThatIsALinkLeavesItsSettingsAlone) {
  makeChromeProfile(".config/google-chrome/Profile 1");
  file(".config/google-chrome/Local State");
  link(home + "/.config", ".var/app/com.google.Chrome/cache");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, {});
}

TEST_F(SandboxedPlaces, AChromeProfileThatIsALinkIsNone) {
  makeChromeProfile("Elsewhere/Default");
  link(home + "/Elsewhere/Default", ".var/app/com.google.Chrome/config/google-chrome/Default");
  link(home + "/Elsewhere", "snap/chromium/common/chromium");
  link(home + "/Elsewhere/Default", ".config/google-chrome/Default");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, {});
}

TEST_F(SandboxedPlaces, AListOfProfilesSpeaksOfItsOwnSandboxOnly) {
  makeFirefoxProfile(".thunderbird/x.default");
  makeFirefoxProfile(".mozilla/firefox/host.default");
  makeFirefoxProfile(".var/app/org.other.App/profile");
  makeFirefoxProfile("snap/other/common/profile");
  for (const std::string& sandbox :
       {std::string(".var/app/org.mozilla.firefox"), std::string("snap/firefox/common")}) {
    const std::string folder = sandbox + "/.mozilla/firefox/";
    link(home + "/.thunderbird/x.default", folder + "linked.default");
    link(home + "/.thunderbird", folder + "through");
    link("../../../../../..", folder + "up");
    const std::pair<const char*, std::string> rows[] = {{"0", home + "/.thunderbird/x.default"},
                                                        {"0", home + "/.mozilla/firefox/host.default"},
                                                        {"0", home + "/.var/app/org.other.App/profile"},
                                                        {"0", home + "/snap/other/common/profile"},
                                                        {"0", home + "/" + folder + "linked.default"},
                                                        {"0", home + "/" + folder + "through/x.default"},
                                                        {"1", "linked.default"},
                                                        {"1", "through/x.default"},
                                                        {"1", "up/.thunderbird/x.default"},
                                                        {"1", "../../../../../.thunderbird/x.default"},
                                                        {"1", "./../../../../../.thunderbird/x.default"},
                                                        {"1", home + "/.thunderbird/x.default"}};
    for (const auto& [relative, path] : rows) {
      file(folder + "profiles.ini",
           "[Profile0]\nIsRelative=" + std::string(relative) + "\nPath=" + path + "\n");
      EXPECT_EQ(pathsOf(PrivacyTarget::firefox), std::vector<std::string>{}) << sandbox << " " << path;
    }
    expectTaken(&TWProtectPrivacy::clearFirefox, {});
  }
}

TEST_F(SandboxedPlaces, AListOfProfilesThatIsALinkIsNotRead) {
  makeFirefoxProfile(".var/app/org.mozilla.firefox/.mozilla/firefox/a.default");
  file("list", "[Profile0]\nIsRelative=1\nPath=a.default\n");
  link(home + "/list", ".var/app/org.mozilla.firefox/.mozilla/firefox/profiles.ini");
  EXPECT_EQ(pathsOf(PrivacyTarget::firefox), std::vector<std::string>{});
}

TEST_F(SandboxedPlaces, AListOfProfilesInASandboxThatTheUserLinkedToSpeaksOfThatSandboxOnly) {
  makeFirefoxProfile(".thunderbird/x.default");
  makeFirefoxProfile(".var/app/org.mozilla.firefox/.mozilla/firefox/a.default");
  file(".var/app/org.mozilla.firefox/.mozilla/firefox/profiles.ini",
       "[Profile0]\nIsRelative=1\nPath=a.default\n[Profile1]\nIsRelative=0\nPath=" + home +
           "/.thunderbird/x.default\n");
  link(".var/app/org.mozilla.firefox/.mozilla", ".mozilla");
  Paths taken = takenOfFirefoxProfile(".var/app/org.mozilla.firefox/.mozilla/firefox/a.default");
  expectTaken(&TWProtectPrivacy::clearFirefox, taken,
              {".var/app/org.mozilla.firefox/.mozilla/firefox/a.default/places.sqlite"});
}

TEST_F(SandboxedPlaces, ABaseFolderIsReachedByNoLinkThatASandboxMayWrite) {
  file("Elsewhere/evince/page");
  file("Elsewhere/google-chrome/Default/Cache/data");
  file("Elsewhere/mozilla/firefox/a/x");
  root.makeFolder("home/ada/.var/app/org.example.App/data");
  link(home + "/Elsewhere", ".var/app/org.example.App/data/c");
  link(".var/app/org.example.App/data/c", ".cache");
  for (const PrivacyTarget target : kTargets)
    EXPECT_EQ(pathsOf(target), std::vector<std::string>{});
  root.remove("home/ada/.cache");
  link(home + "/Elsewhere", "snap/example");
  link("snap/example", ".cache");
  for (const PrivacyTarget target : kTargets)
    EXPECT_EQ(pathsOf(target), std::vector<std::string>{});
}

TEST_F(SandboxedPlaces, ACacheFolderThatTheUserHasMovedIsHandedOutWhereItIs) {
  file("Big/cache/evince/page");
  link("Big/cache", ".cache");
  EXPECT_EQ(pathsOf(PrivacyTarget::preview), std::vector<std::string>{home + "/Big/cache/evince"});
  expectTaken(&TWProtectPrivacy::clearPreview, {"Big/cache/evince/page"});
}

TEST_F(SandboxedPlaces, TheCurrentRevisionOfASnapIsAFolderBesideTheLink) {
  file("snap/vlc/12/.config/vlc/vlc-qt-interface.conf", "[RecentsMRL]\nlist=a\n");
  file("snap/vlc/12/.cache/vlc/x");
  file("snap/other/12/.cache/vlc/x");
  file("Elsewhere/.cache/vlc/x");
  link("12", "snap/vlc/current");
  EXPECT_EQ(pathsOf(PrivacyTarget::quickTimePlayer),
            (std::vector<std::string>{home + "/snap/vlc/12/.config/vlc/vlc-qt-interface.conf",
                                      home + "/snap/vlc/12/.cache/vlc"}));
  for (const std::string& target :
       {home + "/snap/vlc/12", std::string("../other/12"), std::string("../../Elsewhere"),
        home + "/Elsewhere", std::string("."), std::string(".."), std::string("loop"), std::string("12/.")}) {
    root.remove("home/ada/snap/vlc/current");
    link(target, "snap/vlc/current");
    EXPECT_EQ(pathsOf(PrivacyTarget::quickTimePlayer), std::vector<std::string>{}) << target;
  }
}

TEST_F(SandboxedPlaces, AreFoundWhereTheUserHasMovedTheFolderOfAllSandboxes) {
  file("Big/var/app/org.gnome.Evince/cache/evince/page");
  link("Big/var", ".var");
  EXPECT_EQ(pathsOf(PrivacyTarget::preview),
            std::vector<std::string>{home + "/Big/var/app/org.gnome.Evince/cache/evince"});
  root.remove("home/ada/Big/var/app/org.gnome.Evince/cache");
  file("Elsewhere/evince/page");
  link(home + "/Elsewhere", "Big/var/app/org.gnome.Evince/cache");
  EXPECT_EQ(pathsOf(PrivacyTarget::preview), std::vector<std::string>{});
}

TEST_F(SandboxedPlaces, AProfileReachedByLinksOfTheUserIsHandedOutWithoutThem) {
  makeChromeProfile("Big/google-chrome/Default");
  link(home + "/Big/google-chrome", ".config/google-chrome");
  makeFirefoxProfile("Big/firefox/a.default");
  file("Big/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=a.default\n");
  link("../Big/firefox", ".mozilla/firefox");
  for (const PrivacyTarget target : {PrivacyTarget::googleChrome, PrivacyTarget::firefox}) {
    const auto found = pathsOf(target);
    EXPECT_FALSE(found.empty());
    for (const std::string& path : found)
      EXPECT_EQ(fs::canonical(path).string(), path);
  }
}

TEST_F(SandboxedPlaces, TheDownloadFolderIsHandedOutWithoutLinks) {
  file("Big/incoming/a.zip");
  link("Big/incoming", "Downloads");
  EXPECT_EQ(pathsOf(PrivacyTarget::finder), std::vector<std::string>{home + "/Big/incoming"});
  root.remove("home/ada/Downloads");
  link(home + "/Big", ".var/app/org.example.App/data");
  link(".var/app/org.example.App/data/incoming", "Downloads");
  EXPECT_EQ(pathsOf(PrivacyTarget::finder), std::vector<std::string>{});
}

TEST_F(SandboxedPlaces, OfDiskCleanupsAreReachedByNoLinkThatASandboxMayWrite) {
  const LinuxCleanupPlaces disk(
      home, platform.fileManager, [](const char*) { return std::optional<std::string>(); }, root.path());
  const auto caches = [&disk] {
    std::vector<std::string> paths;
    for (const CleanupPlace& place : disk.placesOfCategory(CleanupCategory::applicationCaches))
      paths.push_back(place.path);
    return paths;
  };
  file("Elsewhere/page");
  link(home + "/Elsewhere", ".var/app/org.example.App/data/c");
  link(".var/app/org.example.App/data/c", ".cache");
  EXPECT_EQ(caches(), std::vector<std::string>{});
  file(".var/app/org.other.App/own/x");
  link("own", ".var/app/org.other.App/cache");
  EXPECT_EQ(caches(), std::vector<std::string>{}) << "a link that stays in the sandbox is one, too";
}

}  // namespace
}  // namespace harbor
