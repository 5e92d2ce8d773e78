// Goes through a folder and removes the files that a selection takes. What cannot be removed stays and keeps
// nothing else from going.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "disk/FileSelection.h"
#include "disk/FolderListing.h"
#include "disk/TreeWalk.h"
#include "platform/CleanupProgress.h"

namespace harbor {

// For one thread. Files are unlinked and never shortened: a program that has one open or mapped keeps what it
// sees.
class FileByFileRemoval : public TreeVisitor {
 public:
  // Of the direct entries only those in the listing go.
  FileByFileRemoval(const FileSelection& selection, CleanupStatus& status, const ItemFacts& top,
                    const FolderListing& listing);

  Verdict found(const Found& item) override;
  bool keeps(const Found& item, const ItemFacts& folder) const override;
  void entered(const ItemFacts& folder, std::size_t depth) override;
  Verdict couldNotEnter(const Found& item, int error) override;
  Leaving left(const Left& folder) override;
  Verdict lost() override { return Verdict::goOn; }

  // The files, without the folders that have become empty and were removed with them.
  std::uint64_t bytes() const { return bytes_; }
  std::uint64_t items() const { return items_; }

 private:
  bool hasRemovedInPass(std::size_t depth);

  const FileSelection& selection_;
  CleanupStatus& status_;
  const FolderListing& listing_;
  std::uint64_t bytes_ = 0;
  std::uint64_t items_ = 0;
  std::optional<std::size_t> heldDepth_;        // of the folder that holds all below it
  std::vector<std::uint64_t> itemsBeforePass_;  // by depth
};

}  // namespace harbor
