#include "disk/PlaceCleanup.h"

#include <fcntl.h>

#include "base/FileUrl.h"
#include "disk/RecordEditing.h"
#include "disk/TrashFolder.h"

namespace harbor {
namespace {

using Take = CleanupPlace::Take;

FileRemoval::NameTest testOfPatterns(const CleanupPlace& place) {
  return [&place](std::string_view name) { return matchesOneOfPatterns(name, place.names); };
}

std::string quotedForShell(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'') {
      quoted += "'\\''";
    } else {
      quoted += character;
    }
  }
  return quoted + "'";
}

FolderMeasure measureWholeItem(const std::string& path) {
  const auto facts = factsOfItem(AT_FDCWD, path.c_str());
  FolderMeasure measure = measureItem(AT_FDCWD, path.c_str());
  if (facts && !facts->isMountRoot && facts->type == ItemType::folder) ++measure.items;
  return measure;
}

}  // namespace

FolderMeasure measurePlace(const CleanupPlace& place) {
  switch (place.take) {
    case Take::item:
      return measureWholeItem(place.path);
    case Take::contents:
      return measureContents(place.path);
    case Take::contentsInUse:
    case Take::filesByPattern:
    case Take::ownFilesByPattern:
      return measureFileByFile(place.path, FileSelection(place));
    case Take::entriesByPattern:
      return measureEntries(place.path, testOfPatterns(place));
    case Take::itemsByExtension:
      return measureMatches(
          place.path, [&place](std::string_view name) { return hasOneOfExtensions(name, place.names); });
    case Take::trashedItems:
      return measureTrash(place.path);
    case Take::attributes:
    case Take::databaseRows:
    case Take::database:
    case Take::profile:
    case Take::settings:
    case Take::recentFiles:
      break;
  }
  return {};
}

std::optional<std::uint64_t> PlaceCleanup::clean(const CleanupPlace& place) {
  switch (place.take) {
    case Take::item:
      return removal_.removeItem(place.path).bytes;
    case Take::contents:
      return diskUtility_.emptyFolder(place.path);
    case Take::contentsInUse:
    case Take::filesByPattern:
    case Take::ownFilesByPattern:
      return removal_.removeFileByFile(place.path, FileSelection(place)).bytes;
    case Take::entriesByPattern:
      return removal_.removeEntries(place.path, testOfPatterns(place)).bytes;
    case Take::itemsByExtension:
      return diskUtility_.deleteByExtension(place.path, place.names);
    case Take::trashedItems:
      return removal_.emptyTrash(place.path).bytes;
    case Take::attributes:
      removal_.eraseAttributes(place.path, place.names);
      break;
    case Take::databaseRows:
      deleteRows(place);
      break;
    case Take::database:
      removeDatabase(place.path);
      break;
    case Take::profile:
      break;
    case Take::settings:
      edit(place.path,
           [&place](std::string_view text) { return std::optional(withoutSettings(text, place.names)); });
      break;
    case Take::recentFiles:
      edit(place.path, [&place](std::string_view text) { return withoutRecentFiles(text, place.names); });
      break;
  }
  return 0;
}

void PlaceCleanup::removeDatabase(const std::string& path) {
  removal_.removeItem(path);
  // A database that stays without its journal would be a broken one.
  if (factsOfItem(AT_FDCWD, path.c_str())) return;
  for (const char* companion : {"-wal", "-shm", "-journal"})
    removal_.removeItem(path + companion);
}

void PlaceCleanup::edit(const std::string& path, const TextEdit& textEdit) {
  if (!removal_.refusalForText(path)) rewriteFile(path, textEdit);
}

void PlaceCleanup::deleteRows(const CleanupPlace& place) {
  // A command on a database that is not there would make an empty one, and one that is a link would change
  // what it leads to.
  const auto facts = factsOfItem(AT_FDCWD, place.path.c_str());
  if (removal_.refusalForText(place.path) || !facts || facts->type != ItemType::file) return;
  const std::string name = lastPathComponent(place.path);
  const std::string folder = place.path.substr(0, place.path.size() - name.size());
  for (const std::string& statement : place.names)
    shell_.run("sqlite3 " + quotedForShell("./" + name) + " " + quotedForShell(statement), folder);
}

}  // namespace harbor
