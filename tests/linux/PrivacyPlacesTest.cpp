#include "platform/linux/PrivacyPlaces.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "PrivacyFixture.h"
#include "support/ForeignLock.h"

namespace harbor {
namespace {

TEST_F(LinuxPrivacy, ChromeTakesTheDefaultProfileInEveryPlaceAndNoOther) {
  install("google-chrome");
  Paths gone;
  for (const char* data :
       {".config/google-chrome", ".config/google-chrome-beta", ".config/google-chrome-unstable",
        ".var/app/com.google.Chrome/config/google-chrome",
        ".var/app/com.google.ChromeDev/config/google-chrome-unstable"}) {
    file(std::string(data) + "/Local State");
    for (const char* profile : {"/Default", "/Profile 1", "/Profile 2", "/Guest Profile", "/System Profile"})
      makeChromeProfile(std::string(data) + profile);
    gone.merge(takenOfChromeProfile(std::string(data) + "/Default"));
  }
  for (const char* cache : {".cache/google-chrome", ".cache/google-chrome-beta",
                            ".cache/google-chrome-unstable", ".var/app/com.google.Chrome/cache/google-chrome",
                            ".var/app/com.google.ChromeDev/cache/google-chrome-unstable"}) {
    for (const char* profile : {"/Default", "/Profile 1", "/Profile 2"})
      file(std::string(cache) + profile + "/Cache/Cache_Data/data_0");
    gone.insert(std::string(cache) + "/Default/Cache");
  }
  makeChromeProfile(".config/chromium/Default");
  file(".cache/chromium/Default/Cache/data_0");
  file("Documents/google-chrome/Default/History");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, gone);
}

TEST_F(LinuxPrivacy, ChromiumCountsOnlyWhereChromeIsNotInstalled) {
  Paths gone;
  for (const char* data : {".config/chromium", ".var/app/org.chromium.Chromium/config/chromium",
                           "snap/chromium/common/chromium"}) {
    makeChromeProfile(std::string(data) + "/Default");
    makeChromeProfile(std::string(data) + "/Profile 1");
    gone.merge(takenOfChromeProfile(std::string(data) + "/Default"));
  }
  for (const char* cache : {".cache/chromium", ".var/app/org.chromium.Chromium/cache/chromium",
                            "snap/chromium/common/.cache/chromium"}) {
    file(std::string(cache) + "/Default/x");
    file(std::string(cache) + "/Profile 1/x");
    gone.insert(std::string(cache) + "/Default/x");
  }
  install("com.google.Chrome");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, {});
  root.remove("share/applications/com.google.Chrome.desktop");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, gone);
}

TEST_F(LinuxPrivacy, FirefoxTakesTheProfilesOfEveryListInEveryPlace) {
  Paths gone;
  Paths written;
  for (const char* folder :
       {".mozilla/firefox", ".config/mozilla/firefox", ".var/app/org.mozilla.firefox/.mozilla/firefox",
        ".var/app/org.mozilla.firefox/config/mozilla/firefox", "snap/firefox/common/.mozilla/firefox"}) {
    const std::string start = std::string(folder) + "/";
    file(start + "profiles.ini",
         "[Profile0]\nIsRelative=1\nPath=a.default-esr\n[Profile1]\nIsRelative=1\nPath=b.work\n");
    // Running the commands takes its time: every place has one profile, and one place has two.
    const bool isFirst = gone.empty();
    for (const char* profile : {"a.default-esr", "b.work"}) {
      if (!isFirst && profile == std::string("b.work")) continue;
      makeFirefoxProfile(start + profile);
      gone.merge(takenOfFirefoxProfile(start + profile));
      written.insert(start + profile + "/places.sqlite");
    }
    file(start + "c.default/cookies.sqlite");
    file(start + "c.default/times.json");
  }
  for (const char* cache : {".cache/mozilla/firefox", ".var/app/org.mozilla.firefox/cache/mozilla/firefox",
                            "snap/firefox/common/.cache/mozilla/firefox"}) {
    file(std::string(cache) + "/a.default-esr/cache2/entries/x");
    gone.insert(std::string(cache) + "/a.default-esr");
  }
  file(".thunderbird/x.default/cookies.sqlite");
  file(".cache/thunderbird/x");
  expectTaken(&TWProtectPrivacy::clearFirefox, gone, written);
  for (const std::string& database : written) {
    EXPECT_EQ(sql(database, "SELECT count(*) FROM moz_historyvisits"), "0\n");
    EXPECT_EQ(sql(database, "SELECT url FROM moz_places"), "kept\n");
    EXPECT_EQ(sql(database, "SELECT count(*) FROM moz_bookmarks"), "2\n");
    EXPECT_EQ(sql(database, "PRAGMA integrity_check"), "ok\n");
  }
}

TEST_F(LinuxPrivacy, FirefoxForgetsSearchesTypedWordsAndWhatIsLeftOfPlacesThatAreGone) {
  const std::string profile = ".mozilla/firefox/a.default";
  const std::string database = profile + "/places.sqlite";
  file(".mozilla/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=a.default\n");
  makeFirefoxProfile(profile);
  sql(database,
      "CREATE TABLE moz_origins (id INTEGER PRIMARY KEY, host TEXT); INSERT INTO moz_origins VALUES "
      "(1,'kept.example'),(2,'gone.example'); ALTER TABLE moz_places ADD COLUMN origin_id INTEGER; UPDATE "
      "moz_places SET origin_id = id; CREATE TABLE moz_inputhistory (place_id INTEGER, input TEXT); INSERT "
      "INTO "
      "moz_inputhistory VALUES (1,'typed'),(2,'typed too'); CREATE TABLE moz_annos (id INTEGER PRIMARY KEY, "
      "place_id INTEGER, content TEXT); INSERT INTO moz_annos VALUES (1,1,'of a bookmark'),(2,2,'of a "
      "download'); CREATE TABLE moz_items_annos (id INTEGER PRIMARY KEY, item_id INTEGER, content TEXT); "
      "INSERT "
      "INTO moz_items_annos VALUES (1,1,'of an item'); CREATE TABLE moz_places_metadata_search_queries (id "
      "INTEGER PRIMARY KEY, terms TEXT); INSERT INTO moz_places_metadata_search_queries VALUES "
      "(1,'searched'); "
      "CREATE TABLE moz_places_metadata (id INTEGER PRIMARY KEY, place_id INTEGER, referrer_place_id "
      "INTEGER, "
      "search_query_id INTEGER REFERENCES moz_places_metadata_search_queries(id) ON DELETE CASCADE); INSERT "
      "INTO "
      "moz_places_metadata VALUES (1,1,NULL,NULL),(2,2,NULL,NULL),(3,1,2,NULL),(4,1,NULL,1);");
  expectTaken(&TWProtectPrivacy::clearFirefox, takenOfFirefoxProfile(profile), {database});
  EXPECT_EQ(sql(database, "SELECT url FROM moz_places"), "kept\n");
  EXPECT_EQ(sql(database, "SELECT host FROM moz_origins"), "kept.example\n");
  EXPECT_EQ(sql(database, "SELECT count(*) FROM moz_inputhistory"), "0\n");
  EXPECT_EQ(sql(database, "SELECT content FROM moz_annos"), "of a bookmark\n");
  EXPECT_EQ(sql(database, "SELECT content FROM moz_items_annos"), "of an item\n");
  EXPECT_EQ(sql(database, "SELECT count(*) FROM moz_places_metadata_search_queries"), "0\n");
  EXPECT_EQ(sql(database, "SELECT id FROM moz_places_metadata"), "1\n");
  EXPECT_EQ(sql(database, "SELECT count(*) FROM moz_bookmarks"), "2\n");
  EXPECT_EQ(sql(database, "PRAGMA integrity_check"), "ok\n");
}

TEST_F(LinuxPrivacy, ATableThatIsMissingKeepsNoOtherFromBeingCleaned) {
  const std::string profile = ".mozilla/firefox/a.default";
  const std::string database = profile + "/places.sqlite";
  file(".mozilla/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=a.default\n");
  makeFirefoxProfile(profile);
  sql(database,
      "DROP TABLE moz_historyvisits; CREATE TABLE moz_inputhistory (place_id INTEGER, input TEXT); "
      "INSERT INTO moz_inputhistory VALUES (1,'typed');");
  expectTaken(&TWProtectPrivacy::clearFirefox, takenOfFirefoxProfile(profile), {database});
  EXPECT_EQ(sql(database, "SELECT url FROM moz_places"), "kept\n");
  EXPECT_EQ(sql(database, "SELECT count(*) FROM moz_inputhistory"), "0\n");
}

TEST_F(LinuxPrivacy, FirefoxCleansTheProfilesThatAProfileGroupNames) {
  file(".mozilla/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=a.default\n");
  makeFirefoxProfile(".mozilla/firefox/a.default");
  makeFirefoxProfile(".mozilla/firefox/b.work");
  makeFirefoxProfile(".mozilla/firefox/c.unnamed");
  root.makeFolder("home/ada/.mozilla/firefox/Profile Groups");
  sql(".mozilla/firefox/Profile Groups/1234.sqlite",
      "CREATE TABLE Profiles (id INTEGER PRIMARY KEY, path TEXT); INSERT INTO Profiles (path) VALUES "
      "('a.default'),('b.work');");
  Paths gone = takenOfFirefoxProfile(".mozilla/firefox/a.default");
  gone.merge(takenOfFirefoxProfile(".mozilla/firefox/b.work"));
  expectTaken(&TWProtectPrivacy::clearFirefox, gone,
              {".mozilla/firefox/a.default/places.sqlite", ".mozilla/firefox/b.work/places.sqlite"});
}

TEST_F(LinuxPrivacy, ADatabaseStartsNoProgramAndWritesNoFile) {
  const std::string profile = ".var/app/org.mozilla.firefox/.mozilla/firefox/a.default";
  file(".var/app/org.mozilla.firefox/.mozilla/firefox/profiles.ini",
       "[Profile0]\nIsRelative=1\nPath=a.default\n");
  for (const std::string& code : {"edit('x', 'touch " + root.path("started") + "; :')",
                                  "writefile('" + root.path("written") + "', 'x')"}) {
    makeFirefoxProfile(profile);
    sql(profile + "/places.sqlite",
        "CREATE TRIGGER a AFTER DELETE ON moz_historyvisits BEGIN SELECT " + code +
            "; END; CREATE TRIGGER b AFTER DELETE ON moz_places BEGIN SELECT " + code + "; END;");
    routines.clearFirefox();
    EXPECT_FALSE(fs::exists(root.path("started")));
    EXPECT_FALSE(fs::exists(root.path("written")));
    EXPECT_FALSE(fs::exists(home + "/" + profile + "/cookies.sqlite"));
  }
}

TEST_F(LinuxPrivacy, ALockedOrBrokenPlacesDatabaseStaysAsItWas) {
  file(".mozilla/firefox/profiles.ini",
       "[Profile0]\nIsRelative=1\nPath=locked\n[Profile1]\nIsRelative=1\nPath=broken\n"
       "[Profile2]\nIsRelative=1\nPath=link\n[Profile3]\nIsRelative=1\nPath=none\n");
  for (const char* profile : {"locked", "broken", "link", "none"})
    file(".mozilla/firefox/" + std::string(profile) + "/times.json");
  makePlacesDatabase(".mozilla/firefox/locked");
  file(".mozilla/firefox/broken/places.sqlite", std::string(5000, 'x'));
  makePlacesDatabase("Documents");
  fs::create_symlink(home + "/Documents/places.sqlite", home + "/.mozilla/firefox/link/places.sqlite");
  constexpr off_t kPendingByte = 0x40000000;
  const ForeignLock lock(home + "/.mozilla/firefox/locked/places.sqlite", kPendingByte, 512);
  expectTaken(&TWProtectPrivacy::clearFirefox, {});
}

TEST_F(LinuxPrivacy, AProfileInUseStaysAndSoDoesTheCacheThatItShares) {
  file(".mozilla/firefox/profiles.ini",
       "[Profile0]\nIsRelative=1\nPath=busy\n[Profile1]\nIsRelative=1\nPath=idle\n");
  makeFirefoxProfile(".mozilla/firefox/busy");
  makeFirefoxProfile(".mozilla/firefox/idle");
  file(".cache/mozilla/firefox/idle/x");
  file(".mozilla/firefox/busy/.parentlock", "");
  file(".mozilla/firefox/idle/.parentlock", "");
  {
    const ForeignLock firefox(home + "/.mozilla/firefox/busy/.parentlock", 0, 0);
    EXPECT_EQ(programUsing(PrivacyTarget::firefox), "Firefox");
    expectTaken(&TWProtectPrivacy::clearFirefox, takenOfFirefoxProfile(".mozilla/firefox/idle"),
                {".mozilla/firefox/idle/places.sqlite"});
  }
  EXPECT_EQ(programUsing(PrivacyTarget::firefox), "");
  Paths gone = takenOfFirefoxProfile(".mozilla/firefox/busy");
  gone.insert(".cache/mozilla/firefox/idle");
  expectTaken(&TWProtectPrivacy::clearFirefox, gone,
              {".mozilla/firefox/busy/places.sqlite", ".mozilla/firefox/idle/places.sqlite"});
}

TEST_F(LinuxPrivacy, AChromeFolderInUseStays) {
  makeChromeProfile(".config/google-chrome/Default");
  makeChromeProfile(".config/chromium/Default");
  file(".cache/chromium/x");
  fs::create_symlink("another-host-1", home + "/.config/chromium/SingletonLock");
  EXPECT_EQ(programUsing(PrivacyTarget::googleChrome), "Chromium");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, takenOfChromeProfile(".config/google-chrome/Default"));
  install("google-chrome");
  EXPECT_EQ(programUsing(PrivacyTarget::googleChrome), "");
  fs::create_symlink("another-host-1", home + "/.config/google-chrome/SingletonLock");
  EXPECT_EQ(programUsing(PrivacyTarget::googleChrome), "Google Chrome");
}

TEST_F(LinuxPrivacy, FinderTakesTheListsOfRecentFiles) {
  const Paths gone{".local/share/recently-used.xbel", ".recently-used.xbel",
                   ".var/app/org.gnome.Evince/data/recently-used.xbel",
                   "snap/evince/1234/.local/share/recently-used.xbel",
                   ".local/share/RecentDocuments/letter.odt.desktop"};
  for (const std::string& name : gone)
    file(name);
  for (const char* name :
       {".local/share/recently-used.xbel.mine", ".local/share/user-places.xbel",
        ".local/share/RecentDocuments/notes.txt", ".var/app/org.gnome.Evince/config/recently-used.xbel",
        "Documents/recently-used.xbel", "recently-used.xbel", "snap/evince/common/other.xbel"})
    file(name);
  root.makeFolder("outside");
  root.makeFile("outside/data/recently-used.xbel", "somebody else's");
  fs::create_directory_symlink(root.path("outside"), home + "/.var/app/linked");
  expectTaken(&TWProtectPrivacy::clearDownloadHistory, gone);
}

TEST_F(LinuxPrivacy, FinderTakesPlasmasRecordAndLeavesItsFavourites) {
  const std::string database = ".local/share/kactivitymanagerd/resources/database";
  file(".local/share/kactivitymanagerd/resources/other");
  sql(database,
      "CREATE TABLE ResourceEvent (a); INSERT INTO ResourceEvent VALUES (1); CREATE TABLE "
      "ResourceScoreCache (a); INSERT INTO ResourceScoreCache VALUES (1); CREATE TABLE ResourceLink "
      "(a); INSERT INTO ResourceLink VALUES ('favourite');");
  expectTaken(&TWProtectPrivacy::clearDownloadHistory, {}, {database});
  EXPECT_EQ(sql(database,
                "SELECT (SELECT count(*) FROM ResourceEvent), (SELECT count(*) FROM "
                "ResourceScoreCache), (SELECT count(*) FROM ResourceLink)"),
            "0|0|1\n");
}

TEST_F(LinuxPrivacy, FinderTakesTheOriginOfDownloadsAndNothingElseOfThem) {
  userDirs = "XDG_DOWNLOAD_DIR=\"$HOME/Incoming\"\n";
  const std::string one = file("Incoming/a.zip");
  const std::string deep = file("Incoming/deep/er/b.zip");
  const std::string elsewhere = file("Downloads/c.zip");
  const std::string outside = root.makeFile("outside.zip", "x");
  fs::create_symlink(outside, home + "/Incoming/link.zip");
  const std::string value = "https://example.org/";
  for (const std::string& path : {one, deep, elsewhere, outside}) {
    for (const char* name : {"user.xdg.origin.url", "user.xdg.referrer.url", "user.comment"})
      ASSERT_EQ(::setxattr(path.c_str(), name, value.data(), value.size(), 0), 0) << path;
  }
  expectTaken(&TWProtectPrivacy::clearDownloadHistory, {});
  const auto has = [](const std::string& path, const char* name) {
    return ::getxattr(path.c_str(), name, nullptr, 0) >= 0;
  };
  for (const std::string& path : {one, deep, elsewhere, outside}) {
    const bool isDownload = path == one || path == deep;
    EXPECT_EQ(has(path, "user.xdg.origin.url"), !isDownload) << path;
    EXPECT_EQ(has(path, "user.xdg.referrer.url"), !isDownload) << path;
    EXPECT_TRUE(has(path, "user.comment")) << path;
  }
}

TEST_F(LinuxPrivacy, FinderDoesNothingToTheHomeFolderThatStandsForTheDownloads) {
  const std::string letter = file("Documents/letter");
  ASSERT_EQ(::setxattr(letter.c_str(), "user.xdg.origin.url", "x", 1, 0), 0);
  for (const char* download : {"$HOME", "$HOME/", "$HOME/Documents", "/", "$HOME/.."}) {
    userDirs = "XDG_DOWNLOAD_DIR=\"" + std::string(download) + "\"\n";
    routines.clearDownloadHistory();
    EXPECT_GE(::getxattr(letter.c_str(), "user.xdg.origin.url", nullptr, 0), 0) << download;
  }
}

TEST_F(LinuxPrivacy, MailTakesTheAttachmentsThatWereOpened) {
  const Paths gone{".cache/evolution/tmp/evolution-AB12/a.pdf", ".claws-mail/mimetmp/a.pdf",
                   ".var/app/org.gnome.Evolution/cache/evolution/tmp/b.pdf"};
  for (const std::string& name : gone)
    file(name);
  for (const char* name :
       {".cache/evolution/mail/1/folders.db", ".claws-mail/imapcache/a/1", ".claws-mail/tmp/draft",
        ".claws-mail/accountrc", "Mail/inbox/1", ".thunderbird/a.default/Mail/Local Folders/Inbox",
        ".local/share/evolution/mail/local/cur/1", ".local/share/local-mail/inbox/cur/1"})
    file(name);
  expectTaken(&TWProtectPrivacy::clearMail,
              {".cache/evolution/tmp/evolution-AB12", ".claws-mail/mimetmp/a.pdf",
               ".var/app/org.gnome.Evolution/cache/evolution/tmp/b.pdf"});
}

TEST_F(LinuxPrivacy, MailTakesTheTemporaryFoldersOfProgramsThatHaveEnded) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  const std::string dead = "pid-" + std::to_string(child);
  const std::string alive = "pid-" + std::to_string(::getpid());
  const std::string open = "pid-" + std::to_string(child) + "0000000";
  for (const std::string& name :
       {dead, alive, std::string("pid-x"), std::string("pid-"), std::string("other"),
        std::string("messageviewer_Ab.index.2"), std::string("messageviewer_")}) {
    root.makeFile("tmp/" + name + "/a.pdf", "x");
    ASSERT_EQ(::chmod(root.path("tmp/" + name).c_str(), 0700), 0);
  }
  root.makeFile("tmp/" + open + "/a.pdf", "x");
  root.makeFile("tmp/pid-999999999/a.pdf", "x");
  ASSERT_EQ(::chmod(root.path("tmp/pid-999999999").c_str(), 0755), 0);
  fs::create_directory_symlink(home, root.path("tmp/pid-999999998"));
  file("letter");
  const auto before = snapshotOf(root.path());
  routines.clearMail();
  expectOnlyRemoved(before, snapshotOf(root.path()), {"tmp/" + dead, "tmp/messageviewer_Ab.index.2"});
}

TEST_F(LinuxPrivacy, PreviewTakesTheRecordsOfDocumentViewers) {
  file(".config/okularrc",
       "[MainWindow]\nState=x\n\n[Recent Files]\nFile1[$e]=$HOME/a.pdf\nName1[$e]=a.pdf\n");
  file(".config/qpdfview/qpdfview.conf", "[mainWindow]\ngeometry=@x\nrecentlyUsed=/a.pdf\nstate=y\n");
  const std::string database = ".local/share/qpdfview/qpdfview/database";
  root.makeFolder("home/ada/.local/share/qpdfview/qpdfview");
  sql(database,
      "CREATE TABLE tabs_v5 (a); INSERT INTO tabs_v5 VALUES (1); CREATE TABLE perfilesettings_v4 "
      "(a); INSERT INTO perfilesettings_v4 VALUES (1); CREATE TABLE bookmarks_v3 (a); INSERT INTO "
      "bookmarks_v3 VALUES (1);");
  const std::string list =
      "<?xml version=\"1.0\"?>\n<xbel version=\"1.0\">\n  <bookmark href=\"file:///a.pdf\">\n"
      "<bookmark:application name=\"Document Viewer\" exec=\"&apos;evince %u&apos;\"/>\n  </bookmark>\n"
      "  <bookmark href=\"file:///b.odt\">\n<bookmark:application name=\"Office\" "
      "exec=\"&apos;soffice %u&apos;\"/>\n  </bookmark>\n</xbel>";
  file(".local/share/recently-used.xbel", list);
  Paths gone{".cache/atril/book", ".cache/evince/page", ".local/share/gwenview/recentfolders/1",
             ".local/share/gwenview/recenturls/1", "snap/okular/current/.config/nothing"};
  for (const std::string& name : gone)
    file(name);
  gone.erase("snap/okular/current/.config/nothing");
  for (const char* name : {".local/share/okular/docdata/1.a.pdf.xml", ".local/share/okular/bookmarks.xml",
                           ".config/okularpartrc", ".config/evince/accels", "Documents/a.pdf",
                           ".local/share/gwenview/other", ".config/vlc/vlc-qt-interface.conf"})
    file(name);
  expectTaken(
      &TWProtectPrivacy::clearPreview, gone,
      {".config/okularrc", ".config/qpdfview/qpdfview.conf", database, ".local/share/recently-used.xbel"});
  EXPECT_EQ(contentsOf(".config/okularrc"), "[MainWindow]\nState=x\n\n[Recent Files]\n");
  EXPECT_EQ(contentsOf(".config/qpdfview/qpdfview.conf"), "[mainWindow]\ngeometry=@x\nstate=y\n");
  EXPECT_EQ(sql(database,
                "SELECT (SELECT count(*) FROM tabs_v5), (SELECT count(*) FROM perfilesettings_v4), "
                "(SELECT count(*) FROM bookmarks_v3)"),
            "0|0|1\n");
  EXPECT_EQ(contentsOf(".local/share/recently-used.xbel").find("a.pdf"), std::string::npos);
  EXPECT_NE(contentsOf(".local/share/recently-used.xbel").find("b.odt"), std::string::npos);
}

TEST_F(LinuxPrivacy, QuickTimeTakesTheRecordsOfVideoPlayers) {
  for (const char* start : {".config/vlc/", ".var/app/org.videolan.VLC/config/vlc/"})
    file(std::string(start) + "vlc-qt-interface.conf",
         "[MainWindow]\nbgSize=@Size(600 0)\n\n[RecentsMRL]\nlist=file:///a.mkv\ntimes=12\n");
  file(".config/smplayer/smplayer.ini", "[history]\nrecents=/a.mkv\nrecents\\max_items=10\n[gui]\nx=1\n");
  const Paths gone{".local/state/mpv/watch_later/AB",
                   ".config/mpv/watch_later/AB",
                   ".mpv/watch_later/AB",
                   ".var/app/io.mpv.Mpv/config/mpv/watch_later/AB",
                   ".config/celluloid/watch_later/AB",
                   ".cache/vlc/art",
                   ".config/totem/session_state.xspf",
                   ".config/smplayer/file_settings/a"};
  for (const std::string& name : gone)
    file(name);
  for (const char* name :
       {".config/mpv/mpv.conf", ".config/mpv/scripts/a.lua", ".config/vlc/vlcrc", ".local/share/vlc/ml.xspf",
        ".config/totem/state.ini", ".local/share/totem/list.pls", "Videos/a.mkv"})
    file(name);
  expectTaken(
      &TWProtectPrivacy::clearQuickTimePlayer, gone,
      {".config/vlc/vlc-qt-interface.conf", ".var/app/org.videolan.VLC/config/vlc/vlc-qt-interface.conf",
       ".config/smplayer/smplayer.ini"});
  EXPECT_EQ(contentsOf(".config/vlc/vlc-qt-interface.conf"),
            "[MainWindow]\nbgSize=@Size(600 0)\n\n[RecentsMRL]\n");
  EXPECT_EQ(contentsOf(".config/smplayer/smplayer.ini"), "[history]\nrecents\\max_items=10\n[gui]\nx=1\n");
}

TEST_F(LinuxPrivacy, NoLinkLeadsFromAPlaceToSomethingElse) {
  file("Music/song");
  file("Documents/letter");
  for (const char* name : {".cache", ".config/mpv", ".local/state"})
    root.makeFolder("home/ada/" + std::string(name));
  fs::create_directory_symlink(home + "/Music", home + "/.cache/vlc");
  fs::create_directory_symlink(home + "/Music", home + "/.config/mpv/watch_later");
  fs::create_directory_symlink(home + "/Documents", home + "/.local/state/mpv");
  file("Documents/watch_later/AB");
  fs::create_directory_symlink(home + "/Music", home + "/.cache/mozilla");
  file("Music/firefox/x");
  fs::create_symlink(home + "/Documents/letter", home + "/.config/okularrc");
  expectTaken(&TWProtectPrivacy::clearQuickTimePlayer, {});
  expectTaken(&TWProtectPrivacy::clearFirefox, {});
  expectTaken(&TWProtectPrivacy::clearPreview, {});
}

TEST_F(LinuxPrivacy, AHostileEnvironmentGivesNoPlaces) {
  file("Documents/vlc/song");
  file("Documents/google-chrome/Default/History");
  file("vlc/song");
  file("mpv/watch_later/AB");
  root.makeFile("elsewhere/vlc/song", "x");
  root.makeFile("elsewhere/google-chrome/Default/History", "x");
  for (const std::string& value :
       {home, home + "/Documents", root.path("elsewhere"), std::string("relative"), std::string("/")}) {
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      environment[name] = value;
    expectTaken(&TWProtectPrivacy::clearGoogleChrome, {});
    expectTaken(&TWProtectPrivacy::clearQuickTimePlayer, {});
    expectTaken(&TWProtectPrivacy::clearDownloadHistory, {});
  }
}

TEST_F(LinuxPrivacy, WithoutAHomeFolderThereIsNoPlace) {
  root.makeFile("tmp/messageviewer_Ab.index.2/a.pdf", "x");
  ASSERT_EQ(::chmod(root.path("tmp/messageviewer_Ab.index.2").c_str(), 0700), 0);
  EXPECT_EQ(places.placesOfTarget(PrivacyTarget::mail).size(), 1u);
  home.clear();
  for (const PrivacyTarget target :
       {PrivacyTarget::finder, PrivacyTarget::googleChrome, PrivacyTarget::firefox, PrivacyTarget::mail,
        PrivacyTarget::quickTimePlayer})
    EXPECT_TRUE(places.placesOfTarget(target).empty());
}

TEST_F(LinuxPrivacy, TheProgramThatIsMeantIsKnownByItsDesktopEntry) {
  const auto running = [](const std::string& identifier, const std::string& name) {
    return std::vector<RunningApplication>{{0, identifier, std::nullopt, name}};
  };
  const auto evince = running("org.gnome.Evince", "Document Viewer");
  EXPECT_EQ(programUsing(PrivacyTarget::preview, evince), "Document Viewer");
  EXPECT_EQ(programUsing(PrivacyTarget::quickTimePlayer, evince), "");
  EXPECT_EQ(programUsing(PrivacyTarget::quickTimePlayer, running("vlc_vlc", "VLC")), "VLC");
  EXPECT_EQ(programUsing(PrivacyTarget::firefox, running("org.mozilla.firefox", "Firefox ESR")),
            "Firefox ESR");
  const auto chromium = running("org.chromium.Chromium", "Chromium");
  EXPECT_EQ(programUsing(PrivacyTarget::googleChrome, chromium), "Chromium");
  install("google-chrome");
  EXPECT_EQ(programUsing(PrivacyTarget::googleChrome, chromium), "");
  EXPECT_EQ(programUsing(PrivacyTarget::mail, running("thunderbird", "Thunderbird")), "");
  EXPECT_EQ(programUsing(PrivacyTarget::safari, chromium), "");
}

TEST(PrivacyTables, EveryPlaceHasAReason) {
  for (const PrivacyPlace& row : kPrivacyPlaces)
    EXPECT_TRUE(std::string_view(row.reason).ends_with('.')) << row.path;
  for (const ProfileItem& row : kProfileItems)
    EXPECT_TRUE(std::string_view(row.reason).ends_with('.')) << row.path;
}

}  // namespace
}  // namespace harbor
