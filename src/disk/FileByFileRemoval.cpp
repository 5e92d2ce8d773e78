#include "disk/FileByFileRemoval.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace harbor {
namespace {

// A folder that goes on being filled is given up after so many tries.
constexpr int kMostPasses = 100;

}  // namespace

FileByFileRemoval::FileByFileRemoval(const FileSelection& selection, CleanupStatus& status,
                                     const ItemFacts& top, const FolderListing& listing)
    : selection_(selection), status_(status), listing_(listing), itemsBeforePass_(1) {
  if (selection_.holds(top)) heldDepth_ = 0;
}

TreeVisitor::Verdict FileByFileRemoval::found(const Found& item) {
  const auto facts = factsOfItem(item.parent, item.name);
  const bool isListed = item.depth == 1;
  if (!facts || (isListed && !listing_.held(item.name, *facts))) return Verdict::goOn;
  if (facts->isMountRoot) return Verdict::mountPoint;
  if (facts->type == ItemType::folder)
    return selection_.enters(*facts, item.name) ? Verdict::enter : Verdict::goOn;
  if (!selection_.takes(item, *facts)) return Verdict::goOn;
  const bool isRemoved = isListed ? removeIfSame(item.parent, item.name, *facts, 0) == 0
                                  : ::unlinkat(item.parent, item.name, 0) == 0;
  if (!isRemoved) return Verdict::goOn;
  bytes_ += facts->bytes;
  ++items_;
  status_.add(1, facts->bytes);
  return Verdict::goOn;
}

bool FileByFileRemoval::keeps(const Found& item, const ItemFacts& folder) const {
  return item.depth == 1 && !listing_.held(item.name, folder);
}

void FileByFileRemoval::entered(const ItemFacts& folder, std::size_t depth) {
  if (!heldDepth_ && selection_.holds(folder)) heldDepth_ = depth;
  if (itemsBeforePass_.size() <= depth) itemsBeforePass_.resize(depth + 1);
  itemsBeforePass_[depth] = items_;
}

TreeVisitor::Verdict FileByFileRemoval::couldNotEnter(const Found&, int) {
  return Verdict::goOn;
}

bool FileByFileRemoval::hasRemovedInPass(std::size_t depth) {
  return items_ > std::exchange(itemsBeforePass_[depth], items_);
}

TreeVisitor::Leaving FileByFileRemoval::left(const Left& folder) {
  // Some file systems leave entries out when others are removed while the folder is read.
  const bool isWorthReading = hasRemovedInPass(folder.depth) && folder.passes < kMostPasses;
  if (folder.depth == 0) return isWorthReading ? Leaving::readAgain : Leaving::done;
  if (heldDepth_) {
    if (isWorthReading) return Leaving::readAgain;
    if (*heldDepth_ == folder.depth) heldDepth_.reset();
    return Leaving::done;
  }
  if (folder.holdsMountPoint || ::unlinkat(folder.parent, folder.name, AT_REMOVEDIR) == 0)
    return Leaving::done;
  return (errno == ENOTEMPTY || errno == EEXIST) && isWorthReading ? Leaving::readAgain : Leaving::done;
}

}  // namespace harbor
