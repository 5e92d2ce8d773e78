#include "disk/FileRemoval.h"

#include <fcntl.h>

#include <atomic>
#include <cerrno>
#include <set>

#include "base/FolderPath.h"
#include "disk/AttributeErasing.h"
#include "disk/FileByFileRemoval.h"
#include "disk/FolderMeasure.h"
#include "disk/TrashFolder.h"
#include "disk/TreeWalk.h"

namespace harbor {
namespace {

// A folder that goes on being filled, or an item that goes on changing its kind, is given up after so many
// tries.
constexpr int kMostPasses = 100;

// Removes what the walk finds, folders on the way back. Two threads may call it.
class RemovingVisitor : public TreeVisitor {
 public:
  // Of the direct entries only those in the listing go, or all without one. The home folder stays, should a
  // second mount have brought it below what is removed.
  RemovingVisitor(CleanupStatus& status, const std::optional<ItemFacts>& home, const FolderListing* listing)
      : status_(status), home_(home), listing_(listing) {}

  Verdict found(const Found& item) override {
    if (item.type == ItemType::folder && !isListed(item.depth)) return Verdict::enter;
    const auto facts = factsOfItem(item.parent, item.name);
    if (stays(item, facts)) return Verdict::goOn;
    if (facts && facts->isMountRoot) return Verdict::mountPoint;
    if (facts && facts->type == ItemType::folder) return Verdict::enter;
    const int error = remove(item, facts, 0);
    if (error == 0) {
      count(facts ? facts->bytes : 0);
      return Verdict::goOn;
    }
    if (error == ENOENT) return Verdict::goOn;
    if (error == EISDIR) return Verdict::enter;
    return fail(error);
  }

  bool keeps(const Found& item, const ItemFacts& folder) const override {
    return stays(item, folder) || (home_ && folder.isSameItemAs(*home_));
  }
  void entered(const ItemFacts&, std::size_t) override {}

  Verdict couldNotEnter(const Found& item, int error) override {
    if (error == ENOENT) return Verdict::goOn;
    if (error == ENOTDIR || error == ELOOP) {
      // Something else was put in the folder's place since its entry was read.
      const auto facts = factsOfItem(item.parent, item.name);
      if (stays(item, facts)) return Verdict::goOn;
      if (facts && facts->isMountRoot) return Verdict::mountPoint;
      const int failure = remove(item, facts, 0);
      if (failure == 0) count(facts ? facts->bytes : 0);
      if (failure == 0 || failure == ENOENT) return Verdict::goOn;
      if (failure != EISDIR) return fail(failure);
      contested_ = true;
      return Verdict::goOn;
    }
    const auto facts = factsOfItem(item.parent, item.name);
    if (stays(item, facts)) return Verdict::goOn;
    if (facts && facts->isMountRoot) return Verdict::mountPoint;
    // A folder that may not be read can still be removed when it is empty.
    if (remove(item, facts, AT_REMOVEDIR) != 0) return fail(error);
    count(facts && item.depth > 1 ? facts->bytes : 0);
    return Verdict::goOn;
  }

  Leaving left(const Left& folder) override {
    if (folder.depth == 0) {
      // Some file systems leave entries out when others are removed while the folder is read.
      const bool removedSome = items_ > itemsBeforePass_;
      itemsBeforePass_ = items_;
      const bool again = readsTopAgain_ && (removedSome || contested_) && folder.passes < kMostPasses;
      if (again) contested_ = false;
      return again ? Leaving::readAgain : Leaving::done;
    }
    if (folder.holdsMountPoint) return Leaving::done;
    const int error =
        remove({folder.parent, folder.name, ItemType::folder, folder.depth}, folder.facts, AT_REMOVEDIR);
    if (error == 0) {
      count(folder.depth > 1 ? folder.facts.bytes : 0);
      return Leaving::done;
    }
    if (error == ENOENT) return Leaving::done;
    if (error == ENOTDIR) {
      contested_ = true;
      return Leaving::done;
    }
    if ((error == ENOTEMPTY || error == EEXIST) && folder.passes < kMostPasses) return Leaving::readAgain;
    const auto facts = factsOfItem(folder.parent, folder.name);
    if (error == EBUSY && facts && facts->isMountRoot) return Leaving::done;
    fail(error);
    return Leaving::stop;
  }

  Verdict lost() override { return fail(ESTALE); }

  void readTopAgain() { readsTopAgain_ = true; }
  // Whether an item changed its kind under the walk and may have been left; asking forgets it.
  bool takeContested() { return contested_.exchange(false); }
  RemovalOutcome outcome() const {
    RemovalOutcome outcome;
    outcome.bytes = bytes_;
    outcome.items = items_;
    outcome.error = error_;
    return outcome;
  }

 private:
  bool isListed(std::size_t depth) const { return listing_ && depth == 1; }
  // Whether the item arrived after the listing was made.
  bool stays(const Found& item, const std::optional<ItemFacts>& facts) const {
    return isListed(item.depth) && (!facts || !listing_->held(item.name, *facts));
  }
  // As removeIfSame for a listed entry, as unlinkat for others.
  int remove(const Found& item, const std::optional<ItemFacts>& facts, int flags) const {
    if (isListed(item.depth)) return facts ? removeIfSame(item.parent, item.name, *facts, flags) : ENOENT;
    return ::unlinkat(item.parent, item.name, flags) == 0 ? 0 : errno;
  }
  Verdict fail(int error) {
    int none = 0;
    error_.compare_exchange_strong(none, error);
    return Verdict::stop;
  }
  void count(std::uint64_t bytes) {
    bytes_.fetch_add(bytes, std::memory_order_relaxed);
    items_.fetch_add(1, std::memory_order_relaxed);
    status_.add(1, bytes);
  }

  CleanupStatus& status_;
  const std::optional<ItemFacts> home_;
  const FolderListing* const listing_;
  std::atomic<std::uint64_t> bytes_ = 0;
  std::atomic<std::uint64_t> items_ = 0;
  std::uint64_t itemsBeforePass_ = 0;
  std::atomic<int> error_ = 0;
  std::atomic<bool> contested_ = false;
  bool readsTopAgain_ = false;
};

// Finds the matches and has each removed.
class MatchRemovingVisitor : public TreeVisitor {
 public:
  // Removes an entry; with a listing, only if that held it.
  using Remove = std::function<RemovalOutcome(int parent, const char* name, const FolderListing* listing)>;

  MatchRemovingVisitor(const FileRemoval::NameTest& matches, const Remove& remove,
                       const FolderListing& listing)
      : matches_(matches), remove_(remove), listing_(listing) {}

  bool keeps(const Found& item, const ItemFacts& folder) const override {
    return item.depth == 1 && !listing_.held(item.name, folder);
  }
  Verdict found(const Found& item) override {
    if (matches_(item.name)) {
      const RemovalOutcome removed = remove_(item.parent, item.name, item.depth == 1 ? &listing_ : nullptr);
      outcome_.bytes += removed.bytes;
      outcome_.items += removed.items;
      if (removed.error == 0 || removed.error == ENOENT) return Verdict::goOn;
      outcome_.error = removed.error;
      return Verdict::stop;
    }
    if (item.type != ItemType::unknown) {
      return item.type == ItemType::folder ? Verdict::enter : Verdict::goOn;
    }
    const auto facts = factsOfItem(item.parent, item.name);
    return facts && facts->type == ItemType::folder ? Verdict::enter : Verdict::goOn;
  }
  void entered(const ItemFacts&, std::size_t) override {}
  Verdict couldNotEnter(const Found&, int) override { return Verdict::goOn; }
  Leaving left(const Left&) override { return Leaving::done; }
  Verdict lost() override { return Verdict::goOn; }

  const RemovalOutcome& outcome() const { return outcome_; }

 private:
  const FileRemoval::NameTest& matches_;
  const Remove& remove_;
  const FolderListing& listing_;
  RemovalOutcome outcome_;
};

RemovalOutcome refused(RemovalRefusal refusal) {
  RemovalOutcome outcome;
  outcome.refusal = refusal;
  return outcome;
}

bool isForLackOfDescriptors(int error) {
  return error == EMFILE || error == ENFILE;
}

RemovalOutcome failed(int error) {
  RemovalOutcome outcome;
  outcome.error = error;
  return outcome;
}

}  // namespace

void RemovalOutcome::add(const RemovalOutcome& item) {
  bytes += item.bytes;
  items += item.items;
  if (item.error != 0 && item.error != ENOENT) error = item.error;
}

FileDescriptor FileRemoval::openTopFolder(const FolderWay& way, RemovalOutcome& outcome) const {
  FolderGate::Opened opened = gate_.open(way);
  outcome.refusal = opened.refusal;
  outcome.openError = opened.error;
  return std::move(opened.folder);
}

RemovalOutcome FileRemoval::removeEntry(int parent, const char* name, const FolderListing* listing) {
  const auto facts = factsOfItem(parent, name);
  if (!facts) return failed(errno);
  if (listing && !listing->held(name, *facts)) return {};
  if (facts->type == ItemType::folder && gate_.isHomeOrAbove(*facts))
    return refused(RemovalRefusal::homeOrAbove);
  const auto home = gate_.homeFacts();
  if (!home && isForLackOfDescriptors(errno)) return failed(errno);
  RemovingVisitor visitor(status_, home, listing);
  for (int tries = 0; tries < kMostPasses; ++tries) {
    walkItem(parent, name, FolderReader::Order::byInode, visitor);
    if (visitor.outcome().error != 0 || !visitor.takeContested()) return visitor.outcome();
  }
  RemovalOutcome outcome = visitor.outcome();
  outcome.error = EBUSY;
  return outcome;
}

RemovalOutcome FileRemoval::removeItem(const FolderWay& way) {
  const FolderGate::Opened parent = gate_.openParent(way);
  if (parent.refusal) return refused(*parent.refusal);
  if (!parent.folder) return failed(parent.error);
  return removeEntry(parent.folder.get(), pathComponents(way.path).back().c_str());
}

RemovalOutcome FileRemoval::removeDatabase(const FolderWay& way) {
  const FolderGate::Opened parent = gate_.openParent(way);
  if (parent.refusal) return refused(*parent.refusal);
  if (!parent.folder) return failed(parent.error);
  const std::string name = pathComponents(way.path).back();
  const RemovalOutcome outcome = removeEntry(parent.folder.get(), name.c_str());
  // A database that stays without its journal would be a broken one.
  if (factsOfItem(parent.folder.get(), name.c_str())) return outcome;
  for (const char* companion : {"-wal", "-shm", "-journal"})
    removeEntry(parent.folder.get(), (name + companion).c_str());
  return outcome;
}

RemovalOutcome FileRemoval::emptyFolder(const FolderWay& way) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(way, outcome);
  if (!folder) return outcome;
  const FolderListing listing(folder.get());
  const auto home = gate_.homeFacts();
  // Without it nobody could tell the home folder from what goes.
  if (!home && isForLackOfDescriptors(errno)) return failed(errno);
  RemovingVisitor visitor(status_, home, &listing);
  visitor.readTopAgain();
  walkBelowInOrder(std::move(folder), FolderReader::Order::byInode, visitor);
  return visitor.outcome();
}

RemovalOutcome FileRemoval::removeEntries(const FolderWay& way, const NameTest& matches) {
  RemovalOutcome outcome;
  const FileDescriptor folder = openTopFolder(way, outcome);
  if (!folder) return outcome;
  const FolderListing listing(folder.get());
  FolderReader reader(FolderReader::Order::asStored);
  std::set<std::string> left;
  // Some file systems leave entries out when others are removed while the folder is read.
  for (int pass = 0; pass < kMostPasses; ++pass) {
    const std::uint64_t itemsBefore = outcome.items;
    ::lseek(folder.get(), 0, SEEK_SET);
    for (bool atEnd = false; !atEnd;) {
      const auto result = reader.read(folder.get(), FolderReader::kLargestBatch);
      atEnd = result.atEnd;
      for (const FolderEntry& entry : result.entries) {
        if (!matches(entry.name) || left.contains(entry.name)) continue;
        const auto facts = factsOfItem(folder.get(), entry.name);
        if (!facts || !listing.held(entry.name, *facts)) continue;
        const FolderMeasure measure = measureItem(folder.get(), entry.name);
        const RemovalOutcome removed = removeEntry(folder.get(), entry.name, &listing);
        if (removed.refusal || removed.error != 0) left.insert(entry.name);
        if (removed.refusal) continue;
        outcome.bytes += measure.bytes;
        outcome.items += removed.items;
        if (removed.error != 0) outcome.error = removed.error;
      }
    }
    if (outcome.items == itemsBefore) break;
  }
  return outcome;
}

RemovalOutcome FileRemoval::removeMatches(const FolderWay& way, const NameTest& matches) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(way, outcome);
  if (!folder) return outcome;
  const FolderListing listing(folder.get());
  const MatchRemovingVisitor::Remove remove = [this](int parent, const char* name,
                                                     const FolderListing* held) {
    return removeEntry(parent, name, held);
  };
  MatchRemovingVisitor first(matches, remove, listing);
  MatchRemovingVisitor second(matches, remove, listing);
  walkBelow(std::move(folder), FolderReader::Order::asStored, {&first, &second});
  for (const auto* visitor : {&first, &second}) {
    outcome.bytes += visitor->outcome().bytes;
    outcome.items += visitor->outcome().items;
    if (visitor->outcome().error != 0) outcome.error = visitor->outcome().error;
  }
  return outcome;
}

RemovalOutcome FileRemoval::removeFileByFile(const FolderWay& way, const FileSelection& selection) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(way, outcome);
  const auto facts = folder ? factsOfDescriptor(folder.get()) : std::nullopt;
  if (!facts) return outcome;
  const FolderListing listing(folder.get());
  FileByFileRemoval visitor(selection, status_, *facts, listing);
  walkBelow(std::move(folder), FolderReader::Order::byInode, {&visitor});
  outcome.bytes = visitor.bytes();
  outcome.items = visitor.items();
  return outcome;
}

void FileRemoval::removeEachEntry(const FileDescriptor& folder, RemovalOutcome& outcome) {
  if (!folder) return;
  // All names before the first removal: what is thrown away meanwhile, nobody has confirmed.
  const FolderListing listing(folder.get());
  std::vector<std::string> names;
  FolderReader reader(FolderReader::Order::byInode);
  for (bool atEnd = false; !atEnd;) {
    const auto result = reader.read(folder.get(), FolderReader::kLargestBatch);
    atEnd = result.atEnd;
    for (const FolderEntry& entry : result.entries)
      names.emplace_back(entry.name);
  }
  for (const std::string& name : names)
    outcome.add(removeEntry(folder.get(), name.c_str(), &listing));
}

RemovalOutcome FileRemoval::emptyTrash(const FolderWay& way) {
  RemovalOutcome outcome;
  const FileDescriptor trash = openTopFolder(way, outcome);
  if (!trash) return outcome;
  // A record that is made while the items go is about an item that is on its way into the trash.
  const auto records = recordsOfTrash(trash.get());
  const FileDescriptor info = openPartOfTrash(trash.get(), kTrashRecords);
  const FileDescriptor items = openPartOfTrash(trash.get(), kTrashedItems);
  const bool hasNoItems = !items && !factsOfItem(trash.get(), kTrashedItems) && errno == ENOENT;
  removeEachEntry(items, outcome);
  removeEachEntry(openPartOfTrash(trash.get(), kExpungedItems), outcome);
  for (const auto& [record, item] : records) {
    const bool isGone = hasNoItems || (items && !factsOfItem(items.get(), item.c_str()) && errno == ENOENT);
    if (isGone) outcome.add(removeEntry(info.get(), record.c_str()));
  }
  const auto sizes = factsOfItem(trash.get(), kTrashedSizes);
  if (sizes && sizes->type != ItemType::folder) outcome.add(removeEntry(trash.get(), kTrashedSizes));
  return outcome;
}

RemovalOutcome FileRemoval::eraseAttributes(const FolderWay& way, const std::vector<std::string>& names) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(way, outcome);
  if (!folder) return outcome;
  AttributeErasing visitor(names);
  visitor.erase(folder.get());
  walkBelow(std::move(folder), FolderReader::Order::asStored, {&visitor});
  outcome.items = visitor.items();
  return outcome;
}

}  // namespace harbor
