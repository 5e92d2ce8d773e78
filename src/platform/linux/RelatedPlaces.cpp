#include "platform/linux/RelatedPlaces.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace harbor {
namespace {

constexpr std::size_t kShortName = 4;

// What stands behind the name in an entry of a place, separated by bars: settings files, logs and databases
// are called after their program. Nothing at all is one of the endings where a bar leads.
constexpr std::string_view kSettings =
    "|rc|.conf|.config|.cfg|.db|.ini|.json|.toml|.xml|.yaml|.sqlite|.sqlite3|.d";
constexpr std::string_view kStored = "|.conf|.db|.json|.log|.sqlite|.xml|_history|-history";
constexpr std::string_view kHidden = "|rc|.conf|.cfg|.d|.ini|.json|.toml|.xml|.log|_history|-history";
constexpr std::string_view kFolder = "";
constexpr std::string_view kEntries = ".desktop";
constexpr std::string_view kUnits = ".service|.socket|.timer|.path|.service.d|.socket.d|.timer.d";
constexpr std::string_view kBusServices = ".service";
constexpr std::string_view kPictures = ".png|.svg|.svgz|.xpm|-symbolic.png|-symbolic.svg";
constexpr std::string_view kTypes = ".xml";
constexpr std::string_view kDescriptions = ".metainfo.xml|.appdata.xml";

enum class Base { config, cache, data, state, home };
enum class Called {
  plain,     // any of the names
  brief,     // names of under four characters, which are some folder's name by chance
  distinct,  // the other names
  hidden,    // any of the names behind a point
  flatpak,   // the Flatpak's id
  snap,      // the snap's name
};

struct Row {
  Base base;
  std::string_view below;
  Called called;
  int first;
  int last;
  std::string_view endings;
  std::string_view leftAlone = {};  // as the endings
};

constexpr Row kRows[] = {
    // Settings: a file or folder of the program, or one in the folder of its maker. A maker's folder says
    // little, so a short name does not count there; what the whole desktop shares is not entered.
    {Base::config, "", Called::brief, 1, 1, kSettings},
    {Base::config, "", Called::distinct, 1, 2, kSettings,
     "autostart|dconf|enchant|fontconfig|gtk-2.0|gtk-3.0|gtk-4.0|ibus|menus|pulse|systemd|xfce4"},
    // Caches can be made anew; the same two levels. Thumbnails and fonts are all programs'.
    {Base::cache, "", Called::brief, 1, 1, kFolder},
    {Base::cache, "", Called::distinct, 1, 2, kFolder,
     "fontconfig|mesa_shader_cache|thumbnails|tracker3|gstreamer-1.0"},
    // What the program keeps for the user: documents may be among it, so nothing but what is called like it
    // counts. Folders of this level that the desktop shares have rows of their own, or hold the user's
    // things.
    {Base::data, "", Called::brief, 1, 1, kStored},
    {Base::data, "", Called::distinct, 1, 2, kStored,
     "Trash|applications|backgrounds|containers|dbus-1|desktop-directories|flatpak|fonts|icons|keyrings|mime|"
     "sounds|systemd|themes|metainfo|wallpapers"},
    // Histories, logs and window places: nothing that has to be kept.
    {Base::state, "", Called::brief, 1, 1, kStored},
    {Base::state, "", Called::distinct, 1, 2, kStored},
    // Hidden files and folders of the home folder, where programs kept all this before there were rules.
    {Base::home, "", Called::hidden, 1, 1, kHidden},
    // The sandboxes: each has one folder, named after the application exactly.
    {Base::home, "/.var/app", Called::flatpak, 1, 1, kFolder},
    {Base::home, "/snap", Called::snap, 1, 1, kFolder},
    // The user's own entries that start the program: at login, by the service manager (also the links below
    // "default.target.wants" and its like), over the bus, and from the menus.
    {Base::config, "/autostart", Called::plain, 1, 1, kEntries},
    {Base::config, "/systemd/user", Called::plain, 1, 2, kUnits},
    {Base::data, "/systemd/user", Called::plain, 1, 2, kUnits},
    {Base::data, "/dbus-1/services", Called::plain, 1, 1, kBusServices},
    {Base::data, "/applications", Called::plain, 1, 1, kEntries},
    // Its icon: directly, or by size and purpose in the theme that programs add to. Other themes are entered
    // by nobody: a picture there is the theme's.
    {Base::data, "/icons", Called::plain, 1, 1, kPictures},
    {Base::data, "/icons/hicolor", Called::plain, 3, 3, kPictures},
    {Base::data, "/pixmaps", Called::plain, 1, 1, kPictures},
    // The file types that it declares; the database beside them is made from these.
    {Base::data, "/mime/packages", Called::plain, 1, 1, kTypes},
    {Base::data, "/metainfo", Called::plain, 1, 1, kDescriptions},
};

// Files that are not called after their program. Each is the program's alone, or shared only by editions of
// it; another edition that is installed is told by its own row.
struct OddPlace {
  std::string_view name;  // one of the application's names
  Base base;
  std::string_view path;
};

constexpr OddPlace kOddPlaces[] = {
    {"firefox", Base::home, "/.mozilla/firefox"},
    {"firefox", Base::home, "/.mozilla/extensions"},
    {"firefox", Base::home, "/.mozilla/native-messaging-hosts"},
    {"firefox", Base::cache, "/mozilla/firefox"},
    {"firefox", Base::config, "/mozilla/firefox"},
    {"thunderbird", Base::home, "/.icedove"},
    {"pidgin", Base::home, "/.purple"},
    {"audacity", Base::home, "/.audacity-data"},
    {"vim", Base::home, "/.viminfo"},
    {"anki", Base::data, "/Anki2"},
    {"openshot-qt", Base::home, "/.openshot_qt"},
    {"code", Base::home, "/.vscode"},
    {"steam", Base::home, "/.steampath"},
    {"steam", Base::home, "/.steampid"},
    {"quasselclient", Base::config, "/quassel-irc.org"},
    {"sylpheed", Base::home, "/.sylpheed-2.0"},
    {"calibre-gui", Base::config, "/calibre"},
    {"virtualbox", Base::config, "/VirtualBox"},
};

// Where software lies that no distribution brought.
constexpr std::string_view kFoldersForOwnSoftware[] = {"/opt/", "/usr/local/"};

std::vector<std::string> listOf(std::string_view text) {
  std::vector<std::string> list;
  for (;;) {
    const std::size_t bar = text.find('|');
    list.emplace_back(text.substr(0, bar));
    if (bar == std::string_view::npos) return list;
    text.remove_prefix(bar + 1);
  }
}

std::vector<std::string> namesFor(const ApplicationNames& application, Called called) {
  std::vector<std::string> names;
  switch (called) {
    case Called::plain:
      return application.names;
    case Called::brief:
    case Called::distinct:
      for (const std::string& name : application.names) {
        if ((name.size() < kShortName) == (called == Called::brief)) names.push_back(name);
      }
      return names;
    case Called::hidden:
      for (const std::string& name : application.names)
        names.push_back("." + name);
      return names;
    case Called::flatpak:
      if (application.flatpak) names.push_back(*application.flatpak);
      return names;
    case Called::snap:
      if (application.snap) names.push_back(*application.snap);
      return names;
  }
  return names;
}

}  // namespace

std::vector<RelatedPlace> relatedPlacesOf(const ApplicationNames& application,
                                          const UserLocations& locations) {
  const auto home = locations.homeFolder().empty() ? std::nullopt : std::optional(locations.homeFolder());
  const std::optional<std::string> bases[] = {locations.configHome(), locations.cacheHome(),
                                              locations.dataHome(), locations.stateHome(), home};
  const auto folderOf = [&](Base base, std::string_view below) -> std::optional<std::string> {
    const auto& folder = bases[static_cast<std::size_t>(base)];
    if (!folder) return std::nullopt;
    // A place below the home folder or a base may be a link that leads anywhere.
    return below.empty() ? folder : locations.counted(*folder + std::string(below));
  };

  std::vector<RelatedPlace> places;
  for (const Row& row : kRows) {
    auto names = namesFor(application, row.called);
    const auto folder = names.empty() ? std::nullopt : folderOf(row.base, row.below);
    if (!folder) continue;
    places.push_back(
        {*folder, row.first, row.last, std::move(names), listOf(row.endings), listOf(row.leftAlone)});
  }
  for (const OddPlace& odd : kOddPlaces) {
    const auto& names = application.names;
    const auto& folder = bases[static_cast<std::size_t>(odd.base)];
    if (folder && std::find(names.begin(), names.end(), odd.name) != names.end())
      places.push_back({*folder + std::string(odd.path), 0, 0});
  }
  const std::string& program = application.program;
  const bool isPutThereByHand =
      (home && program.starts_with(*home + "/")) ||
      std::any_of(std::begin(kFoldersForOwnSoftware), std::end(kFoldersForOwnSoftware),
                  [&](std::string_view folder) { return program.starts_with(folder); });
  if (!program.empty() && (isPutThereByHand || application.isProgramNamedLikeIt))
    places.push_back({program, 0, 0});
  return places;
}

}  // namespace harbor
