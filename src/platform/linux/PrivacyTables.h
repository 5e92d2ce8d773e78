// Where the programs of a Linux desktop keep what "Protect Privacy" erases: one row a place, with the reason
// why nothing there is missed.
#pragma once

#include <array>

#include "platform/CleanupPlaces.h"
#include "platform/linux/UserLocations.h"

namespace harbor {

// The names under which a program keeps folders of its own in ~/.var/app and in ~/snap; empty: it does not.
struct ProgramPackages {
  const char* flatpak = "";
  const char* snap = "";
};

// Which program has to be the one that the target means.
enum class PlaceOwner { anybody, chromium };

struct PrivacyPlace {
  PrivacyTarget target;
  ProgramPackages packages;
  PlaceBase base;
  const char* path;  // below the base; a component "*" stands for every folder there, links left out
  CleanupPlace::Take take;
  std::array<const char*, 12> names;  // as CleanupPlace::names has them; unused places are null
  const char* reason;
  // The file name of a program while which runs the place is left alone; null: none.
  const char* notWhileRunning = nullptr;
};

inline constexpr ProgramPackages kNoPackages{};

// The folders that hold a browser's profiles.
struct ProfilesPlace {
  PrivacyTarget target;
  PlaceOwner owner;
  ProgramPackages packages;
  PlaceBase base;
  const char* path;
};

inline constexpr ProgramPackages kChrome{"com.google.Chrome", ""};
inline constexpr ProgramPackages kChromeForDevelopers{"com.google.ChromeDev", ""};
inline constexpr ProgramPackages kChromium{"org.chromium.Chromium", "chromium"};
inline constexpr ProgramPackages kFirefox{"org.mozilla.firefox", "firefox"};

inline constexpr ProfilesPlace kProfiles[] = {
    {PrivacyTarget::googleChrome, PlaceOwner::anybody, kChrome, PlaceBase::config, "google-chrome"},
    {PrivacyTarget::googleChrome, PlaceOwner::anybody, kNoPackages, PlaceBase::config, "google-chrome-beta"},
    {PrivacyTarget::googleChrome, PlaceOwner::anybody, kChromeForDevelopers, PlaceBase::config,
     "google-chrome-unstable"},
    {PrivacyTarget::googleChrome, PlaceOwner::chromium, kChromium, PlaceBase::config, "chromium"},
    {PrivacyTarget::googleChrome, PlaceOwner::chromium, kNoPackages, PlaceBase::home,
     "snap/chromium/common/chromium"},
    {PrivacyTarget::firefox, PlaceOwner::anybody, kFirefox, PlaceBase::home, ".mozilla/firefox"},
    {PrivacyTarget::firefox, PlaceOwner::anybody, kFirefox, PlaceBase::config, "mozilla/firefox"},
};

// The caches of the profiles above; what is in them is fetched or computed again.
inline constexpr ProfilesPlace kProfileCaches[] = {
    {PrivacyTarget::googleChrome, PlaceOwner::anybody, kChrome, PlaceBase::cache, "google-chrome/Default"},
    {PrivacyTarget::googleChrome, PlaceOwner::anybody, kNoPackages, PlaceBase::cache,
     "google-chrome-beta/Default"},
    {PrivacyTarget::googleChrome, PlaceOwner::anybody, kChromeForDevelopers, PlaceBase::cache,
     "google-chrome-unstable/Default"},
    {PrivacyTarget::googleChrome, PlaceOwner::chromium, kChromium, PlaceBase::cache, "chromium/Default"},
    {PrivacyTarget::firefox, PlaceOwner::anybody, kFirefox, PlaceBase::cache, "mozilla/firefox"},
};

// What a profile of today holds beside the files that the cleanup takes of every profile: their successors,
// and the same records kept a second time.
struct ProfileItem {
  PrivacyTarget target;
  const char* path;  // in the profile
  CleanupPlace::Take take;
  const char* reason;
  std::array<const char*, 6> names = {};  // as CleanupPlace::names has them; unused places are null
};

inline constexpr ProfileItem kProfileItems[] = {
    {PrivacyTarget::googleChrome, "Sessions", CleanupPlace::Take::item,
     "Open tabs and windows are kept here since \"Current Tabs\" and \"Last Session\" are no more."},
    {PrivacyTarget::googleChrome, "Sessions_Encrypted", CleanupPlace::Take::item,
     "The newest versions keep the open tabs and windows here, too."},
    {PrivacyTarget::googleChrome, "Current Session", CleanupPlace::Take::item,
     "The open windows, as older versions keep them."},
    {PrivacyTarget::googleChrome, "Last Tabs", CleanupPlace::Take::item,
     "The open tabs, as older versions keep them."},
    {PrivacyTarget::googleChrome, "Network/Cookies", CleanupPlace::Take::database,
     "Some versions keep the cookies here."},
    {PrivacyTarget::googleChrome, "Shortcuts", CleanupPlace::Take::database,
     "What was typed in the address bar and where it led; it only shortens typing."},
    {PrivacyTarget::googleChrome, "Network Action Predictor", CleanupPlace::Take::database,
     "What was typed in the address bar and where it led; it only speeds up loading."},
    {PrivacyTarget::googleChrome, "Visited Links", CleanupPlace::Take::item,
     "Marks of visited pages, made anew from the history."},
    {PrivacyTarget::firefox, "sessionstore-backups", CleanupPlace::Take::item,
     "Copies of the open tabs and windows, from which Firefox would bring them back."},
    // Each statement by itself: a version that lacks a table has the others. The first two also take what
    // belongs to the rows that go, as Firefox would.
    {PrivacyTarget::firefox,
     "places.sqlite",
     CleanupPlace::Take::databaseRows,
     "What was searched for, what was typed in the address bar, and what is left of places that are gone.",
     {"PRAGMA foreign_keys = ON; DELETE FROM moz_places_metadata_search_queries;",
      "DELETE FROM moz_places_metadata WHERE place_id NOT IN (SELECT id FROM moz_places) OR "
      "referrer_place_id NOT IN (SELECT id FROM moz_places);",
      "DELETE FROM moz_inputhistory;",
      "DELETE FROM moz_annos WHERE place_id NOT IN (SELECT id FROM moz_places);",
      "DELETE FROM moz_origins WHERE id NOT IN (SELECT origin_id FROM moz_places WHERE origin_id IS NOT "
      "NULL);"}},
};

inline constexpr ProgramPackages kThunderbird{"org.mozilla.Thunderbird", "thunderbird"};
inline constexpr ProgramPackages kEvolution{"org.gnome.Evolution", ""};
inline constexpr ProgramPackages kClawsMail{"org.claws_mail.Claws-Mail", ""};
inline constexpr ProgramPackages kEvince{"org.gnome.Evince", "evince"};
inline constexpr ProgramPackages kOkular{"org.kde.okular", "okular"};
inline constexpr ProgramPackages kQpdfview{"", "qpdfview"};
inline constexpr ProgramPackages kGwenview{"org.kde.gwenview", "gwenview"};
inline constexpr ProgramPackages kMpv{"io.mpv.Mpv", "mpv"};
inline constexpr ProgramPackages kVlc{"org.videolan.VLC", "vlc"};
inline constexpr ProgramPackages kTotem{"org.gnome.Totem", "totem"};
inline constexpr ProgramPackages kCelluloid{"io.github.celluloid_player.Celluloid", "celluloid"};
inline constexpr ProgramPackages kSmplayer{"info.smplayer.SMPlayer", "smplayer"};

inline constexpr PrivacyPlace kPrivacyPlaces[] = {
    {PrivacyTarget::finder,
     kNoPackages,
     PlaceBase::data,
     "recently-used.xbel",
     CleanupPlace::Take::item,
     {},
     "The list of recent files of all GTK programs; it is made anew with the next file that is opened."},
    {PrivacyTarget::finder,
     kNoPackages,
     PlaceBase::home,
     ".recently-used.xbel",
     CleanupPlace::Take::item,
     {},
     "The same list where older programs keep it."},
    {PrivacyTarget::finder,
     kNoPackages,
     PlaceBase::home,
     ".var/app/*/data/recently-used.xbel",
     CleanupPlace::Take::item,
     {},
     "The same list of a program in a Flatpak, which keeps its own."},
    {PrivacyTarget::finder,
     kNoPackages,
     PlaceBase::home,
     "snap/*/*/.local/share/recently-used.xbel",
     CleanupPlace::Take::item,
     {},
     "The same list of a program in a snap, which keeps its own."},
    {PrivacyTarget::finder,
     kNoPackages,
     PlaceBase::data,
     "RecentDocuments",
     CleanupPlace::Take::ownFilesByPattern,
     {"*.desktop"},
     "KDE's list of recent documents: links to them, never the documents."},
    {PrivacyTarget::finder,
     kNoPackages,
     PlaceBase::data,
     "kactivitymanagerd/resources/database",
     CleanupPlace::Take::databaseRows,
     {"DELETE FROM ResourceEvent;", "DELETE FROM ResourceScoreCache;"},
     "Plasma's record of opened files and the scores made of it; its favourites are in another table."},

    {PrivacyTarget::mail,
     kEvolution,
     PlaceBase::cache,
     "evolution/tmp",
     CleanupPlace::Take::contents,
     {},
     "Copies of attachments that were opened; the mails keep the attachments.",
     "evolution"},
    // While it runs, a mail that is being written may carry some of them.
    {PrivacyTarget::mail,
     kClawsMail,
     PlaceBase::home,
     ".claws-mail/mimetmp",
     CleanupPlace::Take::contents,
     {},
     "Copies of attachments that were opened; the mails keep the attachments.",
     "claws-mail"},

    {PrivacyTarget::preview,
     kNoPackages,
     PlaceBase::data,
     "recently-used.xbel",
     CleanupPlace::Take::recentFiles,
     {"evince", "papers", "atril", "xreader", "okular", "qpdfview", "eog", "loupe", "eom", "xviewer",
      "ristretto", "gwenview"},
     "The entries that document viewers made in the list of recent files; those of other programs stay."},
    {PrivacyTarget::preview,
     kEvince,
     PlaceBase::cache,
     "evince",
     CleanupPlace::Take::contents,
     {},
     "Pages and thumbnails that are drawn again."},
    {PrivacyTarget::preview,
     kNoPackages,
     PlaceBase::cache,
     "atril",
     CleanupPlace::Take::contents,
     {},
     "Pages and unpacked books that are made again."},
    {PrivacyTarget::preview,
     kNoPackages,
     PlaceBase::cache,
     "xreader",
     CleanupPlace::Take::contents,
     {},
     "Pages and unpacked books that are made again."},
    // Not "okular/docdata": it also holds the user's notes in documents that cannot hold them themselves.
    {PrivacyTarget::preview,
     kOkular,
     PlaceBase::config,
     "okularrc",
     CleanupPlace::Take::settings,
     {"Recent Files/*"},
     "The menu of recent documents; the other settings stay."},
    {PrivacyTarget::preview,
     kOkular,
     PlaceBase::cache,
     "okular",
     CleanupPlace::Take::contents,
     {},
     "Pages that are drawn again."},
    {PrivacyTarget::preview,
     kQpdfview,
     PlaceBase::config,
     "qpdfview/qpdfview.conf",
     CleanupPlace::Take::settings,
     {"mainWindow/recentlyUsed", "mainWindow/openPath", "mainWindow/savePath"},
     "The menu of recent documents and the folders that they came from; the other settings stay."},
    {PrivacyTarget::preview,
     kQpdfview,
     PlaceBase::data,
     "qpdfview/qpdfview/database",
     CleanupPlace::Take::databaseRows,
     {"DELETE FROM tabs_v5;", "DELETE FROM perfilesettings_v4;", "DELETE FROM perfilesettings_outline_v1;"},
     "The tabs that were open and where each document was left; the bookmarks are in another table."},
    {PrivacyTarget::preview,
     kGwenview,
     PlaceBase::data,
     "gwenview/recentfolders",
     CleanupPlace::Take::contents,
     {},
     "The list of folders that were looked at; never the pictures."},
    {PrivacyTarget::preview,
     kGwenview,
     PlaceBase::data,
     "gwenview/recenturls",
     CleanupPlace::Take::contents,
     {},
     "The list of pictures that were looked at; never the pictures."},

    {PrivacyTarget::quickTimePlayer,
     kNoPackages,
     PlaceBase::data,
     "recently-used.xbel",
     CleanupPlace::Take::recentFiles,
     {"totem", "celluloid", "mpv", "vlc", "smplayer", "parole", "xplayer"},
     "The entries that video players made in the list of recent files; those of other programs stay."},
    {PrivacyTarget::quickTimePlayer,
     kMpv,
     PlaceBase::state,
     "mpv/watch_later",
     CleanupPlace::Take::contents,
     {},
     "Where each film was left; mpv starts them at the beginning again."},
    {PrivacyTarget::quickTimePlayer,
     kMpv,
     PlaceBase::config,
     "mpv/watch_later",
     CleanupPlace::Take::contents,
     {},
     "The same as older versions keep it."},
    {PrivacyTarget::quickTimePlayer,
     kNoPackages,
     PlaceBase::home,
     ".mpv/watch_later",
     CleanupPlace::Take::contents,
     {},
     "The same in the folder of the oldest versions."},
    {PrivacyTarget::quickTimePlayer,
     kCelluloid,
     PlaceBase::config,
     "celluloid/watch_later",
     CleanupPlace::Take::contents,
     {},
     "Where each film was left."},
    {PrivacyTarget::quickTimePlayer,
     kVlc,
     PlaceBase::config,
     "vlc/vlc-qt-interface.conf",
     CleanupPlace::Take::settings,
     {"RecentsMRL/list", "RecentsMRL/times", "General/filedialog-path"},
     "The list of what was played and the folder that it came from; the other settings stay."},
    {PrivacyTarget::quickTimePlayer,
     kVlc,
     PlaceBase::cache,
     "vlc",
     CleanupPlace::Take::contents,
     {},
     "Covers that are fetched again."},
    {PrivacyTarget::quickTimePlayer,
     kTotem,
     PlaceBase::config,
     "totem/session_state.xspf",
     CleanupPlace::Take::item,
     {},
     "What was played last, to be played on; playlists are saved elsewhere."},
    {PrivacyTarget::quickTimePlayer,
     kTotem,
     PlaceBase::cache,
     "totem",
     CleanupPlace::Take::contents,
     {},
     "What was received of streams."},
    {PrivacyTarget::quickTimePlayer,
     kSmplayer,
     PlaceBase::config,
     "smplayer/smplayer.ini",
     CleanupPlace::Take::settings,
     {"history/recents", "history/urls", "history/latest_dir"},
     "The lists of what was played; the other settings stay."},
    {PrivacyTarget::quickTimePlayer,
     kSmplayer,
     PlaceBase::config,
     "smplayer/file_settings",
     CleanupPlace::Take::contents,
     {},
     "Where each film was left and how it was shown."},
};

}  // namespace harbor
