// The identity and the places of desktop entries, by what the search finds with them in a home folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

#include "platform/icu/IcuText.h"
#include "platform/linux/ApplicationNames.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"
#include "uninstaller/RelatedFileCautions.h"
#include "uninstaller/RelatedFileSearch.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using Set = std::set<std::string>;

struct RelatedFiles : testing::Test {
  RelatedFiles() {
    xdg.dataHome = home(".local/share");
    xdg.dataDirectories = {folder.path("usr/share")};
    xdg.configHome = home(".config");
    xdg.searchPath = {folder.makeFolder("usr/bin")};
    for (const char* name : {".config", ".cache", ".local/share", ".local/state", "Desktop", "Documents"})
      folder.makeFolder("home/" + std::string(name));
  }

  std::string home(const std::string& below = {}) const {
    return folder.path(below.empty() ? "home" : "home/" + below);
  }
  std::string entry(const std::string& identifier, const std::string& keys) {
    return folder.makeFile("usr/share/applications/" + identifier + ".desktop",
                           "[Desktop Entry]\nType=Application\n" + keys + "\n");
  }
  void add(const Strings& files) {
    for (const std::string& file : files)
      folder.makeFile("home/" + file, "x");
  }
  std::string program(const std::string& path) {
    folder.makeFile(path, "#!/bin/sh\n");
    fs::permissions(folder.path(path), fs::perms::owner_all);
    return folder.path(path);
  }

  LinuxApplicationBundles bundles() const {
    return {entries, text, [this] {
              return UserLocations(home(), UserDirectories::fromText("", home()), [this](const char* name) {
                const auto variable = environment.find(name);
                return variable == environment.end() ? std::nullopt : std::optional(variable->second);
              });
            }};
  }
  BundleInformation information(const std::string& path) const {
    const auto applications = bundles();
    BundleInformation result = bundleInformationOf(path, applications, LibplistCoder());
    result.relatedPlaces = applications.relatedPlaces(path);
    return result;
  }
  // What is found below the home folder.
  Strings inOrder(const std::string& path) const {
    const RelatedFileSearch search{text, home(), folder.path(), {}};
    Strings found;
    for (const FileUrl& url : search.findRelatedFiles(path, information(path))) {
      if (url.path.starts_with(home() + "/")) found.push_back(url.path.substr(home().size() + 1));
    }
    return found;
  }
  Set found(const std::string& path) const {
    const Strings all = inOrder(path);
    return {all.begin(), all.end()};
  }
  Strings names(const std::string& path) const { return applicationNames(entries, path, text)->names; }

  TemporaryFolder folder;
  XdgEnvironment xdg;
  std::map<std::string, std::string> environment;
  IcuText text;
  DesktopEntries entries{[this] {
                           XdgEnvironment made;
                           made.dataHome = home(".local/share");
                           made.dataDirectories = {folder.path("usr/share")};
                           made.configHome = home(".config");
                           made.searchPath = {folder.path("usr/bin")};
                           made.locale = "de_AT.UTF-8";
                           return made;
                         }(),
                         0ms};
};

TEST_F(RelatedFiles, TheProgramBehindWrappersAndInterpretersGivesTheName) {
  const std::pair<const char*, Strings> rows[] = {
      {"widget %U", {"org.example.App", "widget"}},
      {"/opt/widget/bin/widget --new %f", {"org.example.App", "widget"}},
      {"env LANG=C widget", {"org.example.App", "widget"}},
      {"sh -c \"cd /opt && exec widget\"", {"org.example.App", "widget"}},
      {"python3 /usr/share/widget/widget.py", {"org.example.App", "widget.py", "widget"}},
      {"python3 -m widget", {"org.example.App"}},
      {"java -jar /opt/Widget.jar", {"org.example.App", "Widget.jar", "Widget"}},
      {"pkexec widget", {"org.example.App", "widget"}},
      {"xterm -e widget", {"org.example.App", "widget"}},
      {"gimp-2.10 %U", {"org.example.App", "gimp-2.10", "gimp"}},
      {"google-chrome-stable", {"org.example.App", "google-chrome-stable", "google-chrome"}},
      {"syncthing-gtk", {"org.example.App", "syncthing-gtk"}},
      {"/opt/tool/main.py", {"org.example.App", "main.py"}},
      {"python3", {"org.example.App"}},
      {"'unclosed", {"org.example.App"}},
  };
  for (const auto& [command, expected] : rows) {
    const std::string path = entry("org.example.App", std::string("Name=Thing\nExec=") + command);
    EXPECT_EQ(names(path), expected) << command;
  }
}

TEST_F(RelatedFiles, TitlesAndWindowClassesCountWhereTheProgramConfirmsThem) {
  EXPECT_EQ(names(entry("transmission-gtk", "Name=Transmission\nExec=transmission-gtk")),
            (Strings{"transmission-gtk", "Transmission"}));
  EXPECT_EQ(names(entry("signal-desktop", "Name=Chat\nExec=signal-desktop\nStartupWMClass=Signal")),
            (Strings{"signal-desktop", "Signal"}));
  EXPECT_EQ(names(entry("mail", "Name=Claws Mail\nGenericName=Mail Client\nExec=claws-mail")),
            (Strings{"claws-mail", "Claws-Mail"}));
  EXPECT_EQ(names(entry("org.remmina.Remmina", "Name=Remote\nExec=remmina-file-wrapper")),
            (Strings{"org.remmina.Remmina", "remmina-file-wrapper", "remmina-file", "Remmina"}));
  EXPECT_EQ(names(entry("org.gnome.Nautilus", "Name=Files\nExec=nautilus\nTryExec=nautilus")),
            (Strings{"org.gnome.Nautilus", "nautilus", "Nautilus"}));
  EXPECT_EQ(names(entry("crx", "Name=Sheet\nExec=page-viewer\nStartupWMClass=crx_abc")),
            (Strings{"crx", "page-viewer"}));
}

TEST_F(RelatedFiles, CommonWordsAreNobodysNames) {
  for (const char* word : {"files", "Fonts", "config", "ssh", "Trash", "mozilla", "settings", "Logs"})
    EXPECT_EQ(names(entry(word, std::string("Name=") + word + "\nExec=" + word)), Strings{}) << word;
  add({".ssh/id_ed25519", ".config/fonts", ".local/share/fonts/own.ttf", ".fonts/own.ttf",
       ".local/share/Trash/files/a", ".local/share/icons/x.png", ".mozilla/firefox/profiles.ini"});
  EXPECT_EQ(found(entry("org.gnome.font-viewer", "Name=Fonts\nExec=gnome-font-viewer")), Set{});
  EXPECT_EQ(found(entry("tunnel", "Name=Office\nExec=ssh office")), Set{});
  EXPECT_EQ(found(entry("org.gnome.Nautilus", "Name=Files\nExec=nautilus")), Set{});
}

TEST_F(RelatedFiles, APageThatAnotherApplicationShowsHasNoneOfItsFiles) {
  entry("chromium", "Name=Chromium\nExec=chromium %U");
  add({".config/chromium/Local State", ".cache/chromium/x"});
  const std::string page =
      entry("chrome-abc-Default", "Name=Mail\nExec=chromium --app-id=abc\nStartupWMClass=crx_abc");
  EXPECT_EQ(names(page), Strings{"chrome-abc-Default"});
  EXPECT_EQ(found(page), Set{});
}

TEST_F(RelatedFiles, EveryPlaceIsSearched) {
  const std::string path = entry("org.example.widget", "Name=Example Widget\nExec=widget %U");
  const Strings expected = {
      ".config/widget",
      ".config/widgetrc",
      ".config/Maker/Widget.conf",
      ".cache/widget",
      ".cache/maker/org.example.widget",
      ".local/share/widget",
      ".local/share/maker/widget",
      ".local/state/widget",
      ".local/state/widget.log",
      ".widget",
      ".widgetrc",
      ".widget_history",
      ".config/autostart/org.example.widget.desktop",
      ".config/systemd/user/widget.service",
      ".config/systemd/user/default.target.wants/widget.service",
      ".local/share/systemd/user/widget.timer",
      ".local/share/dbus-1/services/org.example.widget.service",
      ".local/share/applications/widget.desktop",
      ".local/share/icons/widget.png",
      ".local/share/icons/hicolor/48x48/apps/org.example.widget.png",
      ".local/share/icons/hicolor/scalable/apps/widget-symbolic.svg",
      ".local/share/pixmaps/widget.xpm",
      ".local/share/mime/packages/org.example.widget.xml",
      ".local/share/metainfo/org.example.widget.metainfo.xml",
  };
  for (const char* whole :
       {".config/widget", ".cache/widget", ".cache/maker/org.example.widget", ".local/share/widget",
        ".local/share/maker/widget", ".local/state/widget", ".widget"})
    add({std::string(whole) + "/inner"});
  for (const std::string& file : expected) {
    if (!fs::exists(home(file))) add({file});
  }
  EXPECT_EQ(found(path), Set(expected.begin(), expected.end()));
}

TEST_F(RelatedFiles, NothingOfOthersIsFound) {
  const std::string path = entry("org.example.widget", "Name=Example Widget\nExec=widget %U");
  add({".config/widgets/a",
       ".config/widget-factory/a",
       ".config/other/widget/deep/a",
       ".config/mywidget",
       ".config/gtk-3.0/widget.conf",
       ".config/org.example.widgets/a",
       ".config/org.example/a",
       ".cache/thumbnails/widget/a",
       ".cache/widget.old",
       ".local/share/Trash/widget",
       ".local/share/fonts/widget/a.ttf",
       ".local/share/icons/Theme/48x48/apps/widget.png",
       ".local/share/icons/hicolor/48x48/widget.png",
       ".local/share/icons/widget/index.theme",
       ".local/share/applications/widget-page.desktop",
       ".local/share/mime/text/widget.xml.d",
       ".config/autostart/widget-agent.desktop",
       ".config/systemd/user/widgetd.service",
       ".widgets",
       "widget",
       "Documents/widget",
       "Desktop/widget.desktop",
       ".var/app/widget/a",
       "snap/widget/a"});
  // The settings folder is searched on every platform, two levels deep and by the identifier's beginning.
  EXPECT_EQ(found(path),
            (Set{".config/other/widget", ".config/gtk-3.0/widget.conf", ".config/org.example.widgets"}));
}

TEST_F(RelatedFiles, ShortProgramsFindOnlyWhatIsCalledExactlyLikeThem) {
  add({".config/mc/ini", ".config/mcabber/a", ".config/maker/mc/a", ".cache/mc/a", ".cache/mcomix/a", ".mc/a",
       ".mcrc", ".mcop", ".local/share/mc/history", ".local/share/mcabber/a", ".cache/maker/mc/a",
       ".local/share/maker/mc"});
  const std::string mc = entry("mc", "Name=mc\nExec=mc");
  EXPECT_EQ(found(mc),
            (Set{".config/mc", ".config/maker/mc", ".cache/mc", ".mc", ".mcrc", ".local/share/mc"}));

  add({".config/Code/User/settings.json", ".config/code-oss/a", ".config/codeblocks/a",
       ".config/Code - OSS/a", ".vscode/a", ".codeblocks/a", ".local/share/codelite/a", ".cache/Codecs/a"});
  const std::string code = entry(
      "code", "Name=Visual Studio Code\nExec=/usr/share/code/code --unity-launch %F\nStartupWMClass=Code");
  EXPECT_EQ(found(code), (Set{".config/Code", ".vscode"}));

  add({".vimrc", ".viminfo", ".vim/a", ".config/vifm/a", ".virc", ".config/vi/a"});
  EXPECT_EQ(found(entry("vi", "Name=Vi\nExec=vi %F")), (Set{".virc", ".config/vi"}));
  EXPECT_EQ(found(entry("vim", "Name=Vim\nExec=vim %F")), (Set{".vimrc", ".viminfo", ".vim"}));

  add({".Xauthority", ".Xresources", ".xsession-errors", ".xinitrc", ".config/xfce4/a",
       ".local/share/xorg/log"});
  EXPECT_EQ(found(entry("X", "Name=X\nExec=X")), Set{});
}

TEST_F(RelatedFiles, WhatOnlyAShortNameFindsIsShownWithCaution) {
  const std::string mc = entry("mc", "Name=Midnight Commander\nExec=mc");
  const RelatedFileCautions cautions(applicationIdentity(information(mc), text), text, {}, {});
  for (const char* path : {"/home/a/.config/mc", "/home/a/.mc", "/home/a/.mcrc"}) {
    EXPECT_EQ(cautions.cautionFor({path, true}),
              "Found only because its name begins like a very short name of the application.")
        << path;
  }
  EXPECT_EQ(cautions.cautionFor({"/home/a/.config/midnight commander", true}), std::nullopt);
  EXPECT_EQ(cautions.cautionFor({"/home/a/.config/Midnight Commander2", true}),
            "Found only because its name begins like the application's.");
}

TEST_F(RelatedFiles, WhatAnotherApplicationIsCalledToIsShownWithCaution) {
  const std::string writer = entry("libreoffice-writer", "Name=Writer\nExec=libreoffice --writer");
  const std::string calc = entry("libreoffice-calc", "Name=Calc\nExec=libreoffice --calc");
  add({".config/libreoffice/4/user", ".geanyrc"});
  EXPECT_EQ(found(writer), Set{".config/libreoffice"});
  const RelatedFileCautions cautions(
      applicationIdentity(information(writer), text), text,
      {{"Calc", "libreoffice-calc", bundles().wholeNames(calc)}, {"Geany", "geany", {"geany"}}},
      {home("Documents")});
  EXPECT_EQ(cautions.cautionFor({home(".config/libreoffice"), true}), "\"Calc\" may use this item as well.");
  EXPECT_EQ(cautions.cautionFor({home(".geanyrc"), false}), "\"Geany\" may use this item as well.");
  EXPECT_EQ(cautions.cautionFor({home("Documents"), true}),
            "This is one of the folders for your own documents.");
  EXPECT_EQ(cautions.cautionFor({home(".config/libreoffice-writer"), true}), std::nullopt);
}

TEST_F(RelatedFiles, OddPlacesAreKnownByTheProgramsName) {
  add({".mozilla/firefox/profiles.ini", ".mozilla/other/a", ".config/mozilla/firefox/a",
       ".cache/mozilla/firefox/b", ".purple/prefs.xml"});
  EXPECT_EQ(found(entry("firefox-esr", "Name=Firefox ESR\nExec=/usr/lib/firefox-esr/firefox-esr %u")),
            (Set{".mozilla/firefox", ".config/mozilla/firefox", ".cache/mozilla/firefox"}));
  EXPECT_EQ(found(entry("pidgin", "Name=Pidgin\nExec=pidgin")), Set{".purple"});
}

TEST_F(RelatedFiles, ASandboxHasItsFolderAndNotThoseOfTheHost) {
  add({".var/app/org.example.Player/config/a", ".var/app/org.example.PlayerX/a", "snap/player/common/a",
       "snap/players/a", ".cache/player/a"});
  const Set flatpak{".var/app/org.example.Player"};
  EXPECT_EQ(found(entry("org.example.Player",
                        "Name=Sound\nExec=/usr/bin/flatpak run --command=player "
                        "org.example.Player %U\nX-Flatpak=org.example.Player")),
            flatpak);
  EXPECT_EQ(found(entry("mine", "Name=Sound\nExec=flatpak run org.example.Player")), flatpak);
  EXPECT_EQ(found(entry("player_player",
                        "Name=Sound\nExec=env X=1 /snap/bin/player %U\nX-SnapInstanceName=player")),
            Set{"snap/player"});
  EXPECT_EQ(found(entry("other", "Name=Sound\nExec=/snap/bin/player.tool")), Set{"snap/player"});
}

TEST_F(RelatedFiles, AHostileSandboxIdentifierLeadsNowhere) {
  add({"Documents/a", ".var/app/x/a"});
  folder.makeFolder("home/snap");
  for (const char* value : {"../../Documents", "..", ".", "/etc", "x/..", ""}) {
    EXPECT_EQ(found(entry("hostile", std::string("Name=Sound\nExec=true\nX-Flatpak=") + value)), Set{})
        << value;
    EXPECT_EQ(found(entry("hostile", std::string("Name=Sound\nExec=true\nX-SnapInstanceName=") + value)),
              Set{})
        << value;
  }
}

TEST_F(RelatedFiles, PlacesOfTheEnvironmentCountStrictlyBelowTheHomeFolder) {
  const std::string path = entry("widget", "Name=Example\nExec=widget");
  add({"caches/widget/a", ".cache/widget/a"});
  environment["XDG_CACHE_HOME"] = home("caches");
  EXPECT_EQ(found(path), Set{"caches/widget"});
  folder.makeFile("outside/widget/a");
  add({"widget/a", "Documents/widget/a", "Desktop/widget/a"});
  fs::create_directory_symlink(folder.path("outside"), home("link"));
  for (const std::string& hostile : {home(), home("Documents"), home("Desktop"), folder.path("outside"),
                                     folder.path(), home("link"), std::string("caches"), std::string("/")}) {
    environment["XDG_CACHE_HOME"] = environment["XDG_CONFIG_HOME"] = environment["XDG_DATA_HOME"] =
        environment["XDG_STATE_HOME"] = hostile;
    EXPECT_EQ(found(path), Set{}) << hostile;
  }
}

TEST_F(RelatedFiles, ALinkBelowAPlaceIsTakenAndNotEntered) {
  const std::string path = entry("widget", "Name=Example\nExec=widget");
  folder.makeFile("outside/widget/a");
  fs::create_directory_symlink(folder.path("outside"), home(".cache/vendor"));
  fs::create_directory_symlink(folder.path("outside/widget"), home(".cache/widget"));
  fs::create_directory_symlink(folder.path("outside"), home(".local/share/applications"));
  folder.makeFile("outside/widget.desktop");
  EXPECT_EQ(found(path), Set{".cache/widget"});
}

TEST_F(RelatedFiles, TheProgramItselfIsListedLast) {
  const std::string own = program("home/apps/Widget.AppImage");
  const std::string path = entry("widget", "Name=Example\nExec=" + own + " %U");
  add({".config/widget/a"});
  EXPECT_EQ(inOrder(path), (Strings{".config/widget", "apps/Widget.AppImage"}));
}

TEST_F(RelatedFiles, AProgramOfTheSystemIsListedWhereItIsCalledLikeTheApplication) {
  const auto programs = [this](const std::string& path) {
    Strings found;
    for (const RelatedPlace& place : information(path).relatedPlaces) {
      if (place.last == 0) found.push_back(place.folder);
    }
    return found;
  };
  const Strings widget{program("usr/bin/widget")};
  const std::string runner = program("usr/bin/runner");
  EXPECT_EQ(programs(entry("org.example.Widget", "Name=Thing\nExec=env A=1 widget")), widget);
  EXPECT_EQ(programs(entry("thing", "Name=Widget\nExec=widget")), widget);
  EXPECT_EQ(programs(entry("other", "Name=Thing\nExec=runner widget")), Strings{});
  EXPECT_EQ(programs(entry("widget", "Name=Thing\nExec=widget %U")), widget);
  EXPECT_EQ(programs(entry("widget-page", "Name=Widget\nExec=missing")), Strings{});
}

TEST_F(RelatedFiles, AnItemIsListedOnceAndNothingBelowIt) {
  const std::string path = entry("org.example.widget", "Name=Widget\nExec=widget");
  add({".config/widget/inner", ".config/widget.conf", ".local/share/widget/widget.db"});
  const Strings all = inOrder(path);
  EXPECT_EQ(all.size(), 3u);
  EXPECT_EQ(Set(all.begin(), all.end()),
            (Set{".config/widget", ".config/widget.conf", ".local/share/widget"}));
}

TEST_F(RelatedFiles, TheTitleIsKnownInTheUsersLanguageAndWithoutOne) {
  const std::string path = entry("org.example.pics", "Name=Picture Book\nName[de]=Bilderbuch\nExec=pics");
  const BundleInformation found = information(path);
  EXPECT_EQ(found.displayName, "Bilderbuch");
  EXPECT_EQ(found.name, "Picture Book");
  EXPECT_EQ(found.localizedDisplayName, "Bilderbuch");
  EXPECT_EQ(found.identifier, "org.example.pics");
  EXPECT_EQ(found.wholeNames, Strings{"pics"});
}

TEST_F(RelatedFiles, AnApplicationFolderHasNoNamesAndPlacesOfThePlatform) {
  EXPECT_EQ(bundles().wholeNames("/Applications/Widget.app"), Strings{});
  EXPECT_TRUE(bundles().relatedPlaces("/Applications/Widget.app").empty());
}

}  // namespace
}  // namespace harbor
