// The one way in which this program goes through a folder's contents, for measuring and for removing alike.
//
// Every step is relative to an open folder and never follows a link, so nothing that is swapped in while the
// walk runs leads it out of the folder that it was given. It does not enter what is mounted inside. Depth,
// length of paths, number of entries and the bytes of names have no limit; the number of open descriptors has
// one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/FileDescriptor.h"
#include "disk/FolderReader.h"
#include "disk/ItemFacts.h"

namespace harbor {

class TreeVisitor {
 public:
  enum class Verdict {
    goOn,        // the item is dealt with
    enter,       // the item is a folder and its contents follow
    mountPoint,  // the item stays because something is mounted on it
    stop,        // the walk ends here
  };
  enum class Leaving { done, readAgain, stop };

  struct Found {
    int parent = -1;  // the open folder that holds the item
    const char* name = nullptr;
    ItemType type = ItemType::unknown;
    std::size_t depth = 1;  // 1 for what lies directly in the folder that is walked
  };
  struct Left {
    int parent = -1;  // negative for the folder that is walked itself
    const char* name = nullptr;
    std::size_t depth = 0;
    ItemFacts facts;               // the folder's own, as it was entered
    bool holdsMountPoint = false;  // at any depth
    int passes = 1;                // how often its entries have been read
  };

  virtual ~TreeVisitor() = default;

  virtual Verdict found(const Found& item) = 0;
  // Whether an opened folder stays with all that it holds, as if something were mounted on it. `item` is what
  // was found there; these are the facts of what was opened.
  virtual bool keeps(const Found&, const ItemFacts&) const { return false; }
  // A folder has been opened and its contents follow.
  virtual void entered(const ItemFacts& folder, std::size_t depth) = 0;
  // An item that was to be entered could not be opened as a folder. `enter` means the same as `goOn` here.
  virtual Verdict couldNotEnter(const Found& item, int error) = 0;
  // All that a folder holds has been gone through.
  virtual Leaving left(const Left& folder) = 0;
  // A folder on the way back is no longer where it was; the walk goes on above it, or ends.
  virtual Verdict lost() = 0;
};

// Walks all that lies below the open folder. With more than one visitor the folders are shared out to as many
// threads, each with its own visitor; that suits visitors that neither remove folders nor care for the order.
// Ends when everything has been visited or a visitor stops.
void walkBelow(FileDescriptor folder, FolderReader::Order order, const std::vector<TreeVisitor*>& visitors);

// The same with one visitor that leaves a folder after everything in it. Where a folder holds many items a
// second thread takes its share of them: the visitor is called from both, with an item from one.
void walkBelowInOrder(FileDescriptor folder, FolderReader::Order order, TreeVisitor& visitor);

// Walks the item of that name in an open folder, and all that lies below it, as depth 1; like
// walkBelowInOrder.
void walkItem(int parent, const char* name, FolderReader::Order order, TreeVisitor& visitor);

}  // namespace harbor
