#include "uninstaller/RelatedPlaceSearch.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "base/FileDescriptor.h"
#include "disk/FolderReader.h"
#include "uninstaller/ApplicationIdentity.h"

namespace harbor {
namespace {

bool contains(const std::vector<std::string>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool isFolder(int parent, const FolderEntry& entry) {
  if (entry.type != ItemType::unknown) return entry.type == ItemType::folder;
  const auto facts = factsOfItem(parent, entry.name);
  return facts && facts->type == ItemType::folder;
}

}  // namespace

bool RelatedPlaceSearch::isHeld(const std::string& path) const {
  for (std::size_t end = path.size(); end != std::string::npos && end > 0; end = path.rfind('/', end - 1)) {
    if (held_.contains(path.substr(0, end))) return true;
  }
  return false;
}

void RelatedPlaceSearch::append(FileUrl url, std::vector<FileUrl>& urls) {
  if (isHeld(url.path)) return;
  held_.insert(url.path);
  urls.push_back(std::move(url));
}

void RelatedPlaceSearch::appendNamed(const Wanted& wanted, const std::string& folder, int level,
                                     std::vector<FileUrl>& urls) {
  if (mayContinue_ && !mayContinue_()) return;
  // The place itself may be reached through a link, what lies below it not.
  const int links = level > 1 ? O_NOFOLLOW : 0;
  const FileDescriptor descriptor(
      ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | links));
  if (!descriptor) return;

  std::vector<std::string> folders;
  FolderReader reader(FolderReader::Order::asStored);
  for (bool atEnd = false; !atEnd;) {
    const FolderReader::Result batch = reader.read(descriptor.get(), FolderReader::kLargestBatch);
    atEnd = batch.atEnd;
    for (const FolderEntry& entry : batch.entries) {
      if (level == 1 && contains(wanted.place.leftAlone, entry.name)) continue;
      if (level >= wanted.place.first && wanted.names.contains(foldedName(entry.name, text_))) {
        append({folder + "/" + entry.name, isFolder(descriptor.get(), entry)}, urls);
      } else if (level < wanted.place.last && isFolder(descriptor.get(), entry)) {
        folders.push_back(folder + "/" + entry.name);
      }
    }
  }
  for (const std::string& inner : folders) {
    if (!isHeld(inner)) appendNamed(wanted, inner, level + 1, urls);
  }
}

void RelatedPlaceSearch::leaveOut(const std::vector<FileUrl>& items) {
  for (const FileUrl& item : items)
    held_.insert(item.path);
}

std::vector<FileUrl> RelatedPlaceSearch::find(const RelatedPlace& place) {
  std::vector<FileUrl> urls;
  if (place.last == 0) {
    struct stat status;
    if (::lstat(place.folder.c_str(), &status) == 0) append({place.folder, S_ISDIR(status.st_mode)}, urls);
    return urls;
  }
  Wanted wanted{place, {}};
  for (const std::string& name : place.names) {
    for (const std::string& ending : place.endings)
      wanted.names.insert(foldedName(name + ending, text_));
  }
  if (!wanted.names.empty()) appendNamed(wanted, place.folder, 1, urls);
  return urls;
}

}  // namespace harbor
