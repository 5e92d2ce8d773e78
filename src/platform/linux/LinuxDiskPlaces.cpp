#include "platform/linux/LinuxDiskPlaces.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "base/PathBelow.h"
#include "platform/linux/ProgramsFiles.h"

namespace harbor {
namespace {

using Base = PlaceBase;
using Category = CleanupCategory;
using Take = CleanupPlace::Take;

constexpr const char* kLogs[] = {"?*.log",    "?*.log.old", "?*.log.[0-9]*", "?*.log-[0-9]*",
                                 "?*.log.gz", "?*.log.bz2", "?*.log.xz",     "?*.log.zst"};
constexpr const char* kOldServerLogs[] = {"Xorg.*.log.old"};
constexpr const char* kUsualPartialDownload = "?*.download";
constexpr const char* kPartialDownloads[] = {"?*.part", "?*.crdownload", "?*.opdownload",
                                             kUsualPartialDownload};
constexpr const char* kCrashpadReports[] = {"?*.dmp", "?*.meta"};
constexpr const char* kMozillaReports[] = {"?*.dmp", "?*.extra", "?*.memory.json.gz", "bp-?*.txt"};
constexpr const char* kSystemReports[] = {"?*.crash", "?*.hang", "?*.upload", "?*.uploaded"};

constexpr const char* kCache = "Programs keep here only what they make or fetch again when it is gone.";
constexpr const char* kChromiumReports =
    "Each file is a copy of a crashed process's memory for the maker; the browser only counts and sends "
    "them.";
constexpr const char* kMozillaReason =
    "Each file is a copy of a crashed process's memory for the maker or the number under which it was sent.";
constexpr const char* kTrash = "The user has thrown these files away.";

constexpr DiskPlaceRow kRows[] = {
    {Category::applicationCaches, {Base::cache, "", Take::contentsInUse, {}, kCache}},
    {Category::applicationCaches,
     {Base::home,
      ".var/app/*/cache",
      Take::contentsInUse,
      {},
      "The cache folder of one Flatpak application."}},
    {Category::applicationCaches,
     {Base::home,
      "snap/*/*/.cache",
      Take::contentsInUse,
      {},
      "The cache folder of one revision of a Snap application, or of what its revisions share."}},

    {Category::applicationLogs,
     {Base::state, "", Take::filesByPattern, kLogs,
      "Log files that tell what programs did; no program reads its own back, and those being written stay."}},
    {Category::applicationLogs,
     {Base::home,
      ".xsession-errors.old",
      Take::item,
      {},
      "What the programs of the session before this one wrote; the next login replaces it."}},
    {Category::applicationLogs,
     {Base::data, "xorg", Take::ownFilesByPattern, kOldServerLogs,
      "The log of the X server before this one; the next start replaces it."}},

    {Category::partialDownloads,
     {Base::downloads, "", Take::filesByPattern, kPartialDownloads,
      "A browser gives a file these names until it is complete; a download that is running stays."}},
    {Category::downloadsFolder,
     {Base::downloads,
      "",
      Take::contents,
      {},
      "The folder that the item names, wherever the user has put it."}},

    {Category::crashReporterFiles,
     {Base::config, "google-chrome*/Crash Reports", Take::filesByPattern, kCrashpadReports,
      kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::config, "chromium*/Crash Reports", Take::filesByPattern, kCrashpadReports, kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::config, "BraveSoftware/*/Crash Reports", Take::filesByPattern, kCrashpadReports,
      kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::config, "microsoft-edge*/Crash Reports", Take::filesByPattern, kCrashpadReports,
      kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::config, "vivaldi*/Crash Reports", Take::filesByPattern, kCrashpadReports, kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::home, ".var/app/*/config/*/Crash Reports", Take::filesByPattern, kCrashpadReports,
      kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::home, ".var/app/*/config/*/*/Crash Reports", Take::filesByPattern, kCrashpadReports,
      kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::home, "snap/chromium/common/chromium/Crash Reports", Take::filesByPattern, kCrashpadReports,
      kChromiumReports}},
    {Category::crashReporterFiles,
     {Base::home, ".mozilla/firefox/Crash Reports", Take::filesByPattern, kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::home, ".mozilla/firefox/*/minidumps", Take::filesByPattern, kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::config, "mozilla/firefox/Crash Reports", Take::filesByPattern, kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::config, "mozilla/firefox/*/minidumps", Take::filesByPattern, kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::home, "snap/firefox/common/.mozilla/firefox/Crash Reports", Take::filesByPattern, kMozillaReports,
      kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::home, ".var/app/org.mozilla.firefox/.mozilla/firefox/Crash Reports", Take::filesByPattern,
      kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::home, ".thunderbird/Crash Reports", Take::filesByPattern, kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::home, ".var/app/org.mozilla.Thunderbird/.thunderbird/Crash Reports", Take::filesByPattern,
      kMozillaReports, kMozillaReason}},
    {Category::crashReporterFiles,
     {Base::system, "var/crash", Take::ownFilesByPattern, kSystemReports,
      "The system's reports about crashes of the user's own programs, waiting to be sent."}},

    {Category::trashCan, {Base::data, "Trash", Take::trashedItems, {}, kTrash}},
};

constexpr KeptInCaches kKeptPaths[] = {
    {"evolution", "Holds changes to calendars, contacts and mail made offline until the server has them."},
    {"rclone", "Holds files written to a mounted remote until they are uploaded."},
    {"google-drive-ocamlfuse", "Holds files written to the mounted drive until they are uploaded."},
    {"onedriver", "Holds files written to the mounted drive until they are uploaded."},
    {"davfs2", "Holds files written to a mounted server until they are uploaded."},
    {"dconf", "Where there is no run-time folder, running programs learn here that a setting has changed."},
    {"obexd", "Files received by Bluetooth arrive here."},
    {"inkscape", "Inkscape saves unsaved drawings here by itself."},
    {"audacity", "Holds recordings that have not been saved yet."},
    {"tenacity", "Holds recordings that have not been saved yet."},
    {"RawTherapee/profiles", "How the user has developed pictures, where that is not kept beside them."},
    {"ART/profiles", "How the user has developed pictures, where that is not kept beside them."},
    {"FreeCAD", "Holds what unsaved documents are recovered from after a crash."},
    {"gimp", "Holds what open pictures are recovered from after a crash."},
    {"sessions", "The saved sessions of Xfce and other session managers, which are settings."},
    {"wal", "The colour scheme that terminals and panels load at login."},
    {"keepassxc", "The list of databases that were opened last."},
    {"pypoetry/virtualenvs", "Environments that the user's own projects run in."},
    {"kioexec", "Holds remote files that are being edited until they are uploaded."},
    {"ibus", "What input methods have learnt of the user's words."},
    {"huggingface/token", "The key with which the user is logged in."},
    {"huggingface/stored_tokens", "The keys with which the user is logged in."},
    {"lm-studio", "Older versions keep the conversations and presets here."},
    {"R/renv", "The user's own projects link to the packages in here."},
    {"tmp", "The lasting temporary folder of a Flatpak application."},
};

constexpr KeptInCaches kKeptNames[] = {
    {"*autosave*", "What a program saved by itself of unsaved work."},
    {"*auto-save*", "What a program saved by itself of unsaved work."},
    {"*unsaved*", "What a program saved by itself of unsaved work."},
    {"*recover*", "What unsaved work is recovered from."},
    {"*backup*", "A copy that somebody may want back."},
    {"*history*", "Histories of shells and editors, which some are told to keep here."},
    {"undo*", "What an editor can undo in files that are closed."},
    {"swap", "Unsaved changes in an editor."},
    {"*.sw?", "Unsaved changes in an editor."},
    {"#*#", "Unsaved changes in an editor."},
    {"*draft*", "Letters and notes that are not sent yet."},
    {".fr-*", "Files opened from an archive, with changes that are not put back yet."},
    {"clip*", "What the user pinned in a list of the clipboard."},
    {"outbox", "Letters that are not sent yet."},
    {"queue", "What waits to be sent."},
    {"spool", "What waits to be sent."},
};

// A number with this ending is no log but the newest part of a LevelDB database.
constexpr const char* kKeptAmongLogs[] = {"[0-9][0-9][0-9][0-9][0-9]*.log", "*history*"};

constexpr VolumeTrashText kVolumeTrashTexts[] = {
    {"/.Trash/$UID on each volume",
     "The user has thrown these files away; the folder is the user's own, and the one "
     "above it is a sticky folder and no link."},
    {"/.Trash-$UID on each volume",
     "The user has thrown these files away; the folder is the user's own and no link."},
};

// The entry of the folder that the path is or lies in.
std::string directEntry(const std::string& folder, const std::string& path) {
  return path.substr(0, path.find('/', folder.size() + 1));
}

// Leaves alone what running programs have open in the place.
void spareWhatIsOpen(CleanupPlace& place, const ProgramsFiles& programs) {
  place.filesInUse = programs.inUse;
  if (place.take != Take::contentsInUse) return;
  for (const std::string& path : programs.opened) {
    // A program that has something open here may go on making files in the folders that it knows.
    if (isBelow(path, place.path)) place.heldFolders.push_back(directEntry(place.path, path));
  }
  for (const std::string& path : programs.locked) {
    // The files beside a locked one are the other parts of the same database.
    const std::string folder = path.substr(0, path.rfind('/'));
    if (isBelow(folder, place.path)) place.kept.push_back(folder);
  }
  for (const std::string& path : programs.programs) {
    if (isBelow(path, place.path)) place.kept.push_back(directEntry(place.path, path));
  }
}

void keepWhatIsNoCache(CleanupPlace& place) {
  for (const KeptInCaches& kept : kKeptPaths)
    place.kept.push_back(place.path + "/" + kept.path);
  for (const KeptInCaches& kept : kKeptNames)
    place.keptNames.emplace_back(kept.path);
}

bool isOwnFolder(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

bool isStickyFolder(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
}

}  // namespace

std::span<const DiskPlaceRow> diskPlaceRows() {
  return kRows;
}

std::span<const KeptInCaches> pathsKeptInCaches() {
  return kKeptPaths;
}

std::span<const KeptInCaches> namesKeptInCaches() {
  return kKeptNames;
}

std::span<const VolumeTrashText> volumeTrashTexts() {
  return kVolumeTrashTexts;
}

std::vector<CleanupPlace> diskPlaces(CleanupCategory category, const PlaceFinder& finder) {
  std::vector<CleanupPlace> places;
  for (const DiskPlaceRow& row : kRows) {
    if (row.category != category) continue;
    for (CleanupPlace& place : finder.find(row.place)) {
      const bool isKnown = std::any_of(places.begin(), places.end(), [&place](const CleanupPlace& other) {
        return other.path == place.path && other.take == place.take;
      });
      if (!isKnown) places.push_back(std::move(place));
    }
  }
  const bool isFileByFile = std::any_of(places.begin(), places.end(), [](const CleanupPlace& place) {
    return place.take == Take::contentsInUse || place.take == Take::filesByPattern ||
           place.take == Take::ownFilesByPattern;
  });
  if (!isFileByFile) return places;

  const ProgramsFiles programs = ProgramsFiles::read();
  const UserLocations& locations = finder.locations();
  const auto flatpaks = locations.resolved(locations.homeFolder() + "/" + SandboxFolders::kOfFlatpaks);
  for (CleanupPlace& place : places) {
    spareWhatIsOpen(place, programs);
    if (category == Category::applicationCaches) keepWhatIsNoCache(place);
    if (category == Category::applicationLogs)
      place.keptNames.assign(std::begin(kKeptAmongLogs), std::end(kKeptAmongLogs));
    if (category == Category::partialDownloads && finder.isInUsualDownloads(place.path)) {
      // The category takes what has this ending there by itself.
      std::erase(place.names, kUsualPartialDownload);
      place.keptNames.emplace_back(kUsualPartialDownload);
    }
    // A cache folder of its own inside another one is emptied once.
    for (const CleanupPlace& other : places) {
      if (isBelow(other.path, place.path)) place.kept.push_back(other.path);
    }
    // What runs in a sandbox has its files under other names.
    if (category == Category::applicationCaches && flatpaks && isBelow(place.path, *flatpaks))
      place.heldFolders.push_back(place.path);
  }
  return places;
}

std::vector<CleanupPlace> volumeTrashes(const std::vector<std::string>& volumes,
                                        const std::string& homeFolder) {
  std::vector<CleanupPlace> places;
  const std::string user = std::to_string(::geteuid());
  for (const std::string& volume : volumes) {
    if (volume == "/" || homeFolder == volume || isBelow(homeFolder, volume)) continue;
    const std::string shared = volume + "/.Trash";
    const std::string own = volume + "/.Trash-" + user;
    CleanupPlace place;
    place.take = Take::trashedItems;
    place.volume = volume;
    if (isStickyFolder(shared) && isOwnFolder(shared + "/" + user)) {
      place.path = shared + "/" + user;
      place.reason = kVolumeTrashTexts[0].reason;
      places.push_back(place);
    }
    if (isOwnFolder(own)) {
      place.path = own;
      place.reason = kVolumeTrashTexts[1].reason;
      places.push_back(place);
    }
  }
  return places;
}

}  // namespace harbor
