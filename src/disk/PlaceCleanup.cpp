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

FolderMeasure measureWholeItem(const CleanupPlace& place, const FolderGate& gate) {
  const FolderGate::Opened parent = gate.openParent(FolderWay(place));
  if (!parent.folder) return {};
  const std::string name = lastPathComponent(place.path);
  const auto facts = factsOfItem(parent.folder.get(), name.c_str());
  FolderMeasure measure = measureItem(parent.folder.get(), name.c_str());
  if (facts && !facts->isMountRoot && facts->type == ItemType::folder) ++measure.items;
  return measure;
}

}  // namespace

FolderMeasure measurePlace(const CleanupPlace& place, const FolderGate& gate) {
  const auto folder = [&] { return gate.open(FolderWay(place)).folder; };
  switch (place.take) {
    case Take::item:
      return measureWholeItem(place, gate);
    case Take::contents:
      return measureContents(folder());
    case Take::contentsInUse:
    case Take::filesByPattern:
    case Take::ownFilesByPattern:
      return measureFileByFile(folder(), FileSelection(place));
    case Take::entriesByPattern:
      return measureEntries(folder(), testOfPatterns(place));
    case Take::itemsByExtension:
      return measureMatches(
          folder(), [&place](std::string_view name) { return hasOneOfExtensions(name, place.names); });
    case Take::trashedItems:
      return measureTrash(folder());
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
  const FolderWay way(place);
  switch (place.take) {
    case Take::item:
      return removal_.removeItem(way).bytes;
    case Take::contents:
      return diskUtility_.emptyFolder(way);
    case Take::contentsInUse:
    case Take::filesByPattern:
    case Take::ownFilesByPattern:
      return removal_.removeFileByFile(way, FileSelection(place)).bytes;
    case Take::entriesByPattern:
      return removal_.removeEntries(way, testOfPatterns(place)).bytes;
    case Take::itemsByExtension:
      return diskUtility_.deleteByExtension(way, place.names);
    case Take::trashedItems:
      return removal_.emptyTrash(way).bytes;
    case Take::attributes:
      removal_.eraseAttributes(way, place.names);
      break;
    case Take::databaseRows:
      deleteRows(place);
      break;
    case Take::database:
      removal_.removeDatabase(way);
      break;
    case Take::profile:
      break;
    case Take::settings:
      edit(place,
           [&place](std::string_view text) { return std::optional(withoutSettings(text, place.names)); });
      break;
    case Take::recentFiles:
      edit(place, [&place](std::string_view text) { return withoutRecentFiles(text, place.names); });
      break;
  }
  return 0;
}

void PlaceCleanup::edit(const CleanupPlace& place, const TextEdit& textEdit) {
  const FolderGate::Opened folder = removal_.gate().openParent(FolderWay(place));
  if (folder.folder) rewriteFile(folder.folder.get(), lastPathComponent(place.path), textEdit);
}

void PlaceCleanup::deleteRows(const CleanupPlace& place) {
  const FolderGate::Opened folder = removal_.gate().openParent(FolderWay(place));
  if (!folder.folder) return;
  const std::string name = lastPathComponent(place.path);
  // A command on a database that is not there would make an empty one. What a crash has left beside it names
  // further files, which the browser itself knows to trust.
  const auto database = factsOfItem(folder.folder.get(), name.c_str());
  const auto journal = factsOfItem(folder.folder.get(), (name + "-journal").c_str());
  if (!database || database->type != ItemType::file || (journal && journal->bytes > 0)) return;
  // The statements alone count: no function of the database's own triggers may open or write a file, and a
  // link in the database's place is not followed.
  for (const std::string& statement : place.names)
    shell_.run("sqlite3 -safe -nofollow " + quotedForShell("./" + name) + " " + quotedForShell(statement),
               folder.folder);
}

}  // namespace harbor
