#include "disk/TrashFolder.h"

#include <fcntl.h>

#include <string_view>
#include <utility>

#include "disk/FolderReader.h"

namespace harbor {
namespace {

constexpr std::string_view kRecordEnding = ".trashinfo";

}  // namespace

FileDescriptor openPartOfTrash(int trash, const char* name) {
  FileDescriptor part(::openat(trash, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  const auto facts = part ? factsOfDescriptor(part.get()) : std::nullopt;
  const auto above = factsOfDescriptor(trash);
  if (!facts || !above || facts->isMountRoot || facts->device != above->device) return {};
  return part;
}

std::map<std::string, std::string> recordsOfTrash(int trash) {
  std::map<std::string, std::string> records;
  const FileDescriptor folder = openPartOfTrash(trash, kTrashRecords);
  if (!folder) return records;
  FolderReader reader(FolderReader::Order::asStored);
  for (bool atEnd = false; !atEnd;) {
    const auto result = reader.read(folder.get(), FolderReader::kLargestBatch);
    atEnd = result.atEnd;
    for (const FolderEntry& entry : result.entries) {
      const std::string_view name = entry.name;
      if (!name.ends_with(kRecordEnding) || name.size() == kRecordEnding.size()) continue;
      const auto facts = factsOfItem(folder.get(), entry.name);
      if (facts && facts->type == ItemType::file)
        records.emplace(name, name.substr(0, name.size() - kRecordEnding.size()));
    }
  }
  return records;
}

FolderMeasure measureTrash(const FileDescriptor& trash) {
  if (!trash) return {};
  FileDescriptor items = openPartOfTrash(trash.get(), kTrashedItems);
  // Records of items that nobody can get at stay, as the items do.
  const bool recordsStay = !items && (factsOfItem(trash.get(), kTrashedItems) || errno != ENOENT);
  FolderMeasure sum = measureContents(std::move(items));
  sum += measureContents(openPartOfTrash(trash.get(), kExpungedItems));
  const FileDescriptor info = openPartOfTrash(trash.get(), kTrashRecords);
  for (const auto& record : recordsOfTrash(trash.get())) {
    if (!recordsStay) sum += measureItem(info.get(), record.first.c_str());
  }
  const auto sizes = factsOfItem(trash.get(), kTrashedSizes);
  if (sizes && sizes->type != ItemType::folder) sum += {sizes->bytes, 1};
  return sum;
}

}  // namespace harbor
