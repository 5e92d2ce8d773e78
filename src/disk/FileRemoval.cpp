#include "disk/FileRemoval.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <set>

#include "disk/AttributeErasing.h"
#include "disk/FileByFileRemoval.h"
#include "disk/FolderMeasure.h"
#include "base/FolderPath.h"
#include "disk/TrashFolder.h"
#include "disk/TreeWalk.h"

namespace harbor {
namespace {

// A folder that goes on being filled, or an item that goes on changing its kind, is given up after so many
// tries.
constexpr int kMostPasses = 100;

// The folders that hold the users' home folders by custom, and the superuser's own, whatever the user
// database says.
constexpr std::array<std::string_view, 3> kFoldersOfHomes{"home", "Users", "root"};

bool isBelow(const std::vector<std::string>& path, const std::vector<std::string>& folder) {
  return path.size() > folder.size() && std::equal(folder.begin(), folder.end(), path.begin());
}

bool isBelowOneOf(const std::vector<std::string>& path,
                  const std::vector<std::vector<std::string>>& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&](const auto& folder) { return isBelow(path, folder); });
}

// The home folder's components as they are written and as they really are; empty when it is no folder that a
// user can have.
std::vector<std::vector<std::string>> namesOfHome(const std::string& home) {
  auto written = pathComponents(home);
  if (!home.starts_with('/') || written.empty() || home.find('\0') != std::string::npos) return {};
  auto resolved = FolderPath::resolve(home);
  if (!resolved) return {std::move(written)};
  return {std::move(written), std::move(resolved->components)};
}

std::optional<ItemFacts> factsOfFolder(const std::string& path) {
  const auto place = FolderPath::resolve(path);
  return place && place->folder ? factsOfDescriptor(place->folder.get()) : std::nullopt;
}

// Removes whatever the walk finds, folders on the way back. Two threads may call it.
class RemovingVisitor : public TreeVisitor {
 public:
  // The home folder stays, should a second mount have brought it below what is removed.
  RemovingVisitor(CleanupStatus& status, const std::optional<ItemFacts>& home)
      : status_(status), home_(home) {}

  Verdict found(const Found& item) override {
    if (item.type == ItemType::folder) return Verdict::enter;
    const auto facts = factsOfItem(item.parent, item.name);
    if (facts && facts->isMountRoot) return Verdict::mountPoint;
    if (facts && facts->type == ItemType::folder) return Verdict::enter;
    if (::unlinkat(item.parent, item.name, 0) == 0) {
      count(facts ? facts->bytes : 0);
      return Verdict::goOn;
    }
    const int error = errno;
    if (error == ENOENT) return Verdict::goOn;
    if (error == EISDIR) return Verdict::enter;
    return fail(error);
  }

  bool keeps(const ItemFacts& folder) const override { return home_ && folder.isSameItemAs(*home_); }
  void entered(const ItemFacts&, std::size_t) override {}

  Verdict couldNotEnter(const Found& item, int error) override {
    if (error == ENOENT) return Verdict::goOn;
    if (error == ENOTDIR || error == ELOOP) {
      // Something else was put in the folder's place since its entry was read.
      const auto facts = factsOfItem(item.parent, item.name);
      if (facts && facts->isMountRoot) return Verdict::mountPoint;
      if (::unlinkat(item.parent, item.name, 0) == 0) {
        count(facts ? facts->bytes : 0);
        return Verdict::goOn;
      }
      if (errno == ENOENT) return Verdict::goOn;
      if (errno != EISDIR) return fail(errno);
      contested_ = true;
      return Verdict::goOn;
    }
    const auto facts = factsOfItem(item.parent, item.name);
    if (facts && facts->isMountRoot) return Verdict::mountPoint;
    // A folder that may not be read can still be removed when it is empty.
    if (::unlinkat(item.parent, item.name, AT_REMOVEDIR) != 0) return fail(error);
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
    if (::unlinkat(folder.parent, folder.name, AT_REMOVEDIR) == 0) {
      count(folder.depth > 1 ? folder.bytes : 0);
      return Leaving::done;
    }
    const int error = errno;
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
  using Remove = std::function<RemovalOutcome(int parent, const char* name)>;

  MatchRemovingVisitor(const FileRemoval::NameTest& matches, const Remove& remove)
      : matches_(matches), remove_(remove) {}

  Verdict found(const Found& item) override {
    if (matches_(item.name)) {
      const RemovalOutcome removed = remove_(item.parent, item.name);
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
  RemovalOutcome outcome_;
};

RemovalOutcome refused(RemovalRefusal refusal) {
  RemovalOutcome outcome;
  outcome.refusal = refusal;
  return outcome;
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

std::optional<RemovalRefusal> FileRemoval::refusalForText(const std::string& path) const {
  if (path.empty()) return RemovalRefusal::emptyPath;
  if (path.find('\0') != std::string::npos) return RemovalRefusal::zeroByte;
  if (path.front() != '/') return RemovalRefusal::relativePath;
  const auto components = pathComponents(path);
  if (std::find(components.begin(), components.end(), "..") != components.end())
    return RemovalRefusal::parentReference;
  return refusalForPlace(components);
}

std::optional<RemovalRefusal> FileRemoval::refusalForPlace(const std::vector<std::string>& place) const {
  if (place.size() <= 1) return RemovalRefusal::rootOrDirectChild;

  const auto homes = namesOfHome(home_());
  if (homes.empty()) return RemovalRefusal::noHomeFolder;
  for (const auto& home : homes) {
    if (place == home || isBelow(home, place)) return RemovalRefusal::homeOrAbove;
  }
  if (isBelowOneOf(place, homes)) return std::nullopt;

  // What lies beside the own home folder is somebody else's.
  for (auto beside : homes) {
    beside.pop_back();
    if (!beside.empty() && isBelow(place, beside)) return RemovalRefusal::foreignHome;
  }
  for (const std::string_view custom : kFoldersOfHomes) {
    if (place.front() == custom) return RemovalRefusal::foreignHome;
  }
  return std::nullopt;
}

std::optional<RemovalRefusal> FileRemoval::refusalForWay(const std::vector<std::string>& path,
                                                         const std::vector<std::string>& place) const {
  if (const auto refusal = refusalForPlace(place)) return refusal;
  const auto homes = namesOfHome(home_());
  // The trash of a volume that somebody hands over may be a link to whatever he likes.
  if (isBelowOneOf(place, homes) && !isBelowOneOf(path, homes)) return RemovalRefusal::leadsIntoHome;
  return std::nullopt;
}

bool FileRemoval::isHomeOrAbove(const ItemFacts& folder) const {
  auto home = FolderPath::resolve(home_());
  // Without descriptors nobody can tell.
  if (!home && (errno == EMFILE || errno == ENFILE)) return true;
  while (home && home->folder) {
    const auto facts = factsOfDescriptor(home->folder.get());
    if (facts && facts->isSameItemAs(folder)) return true;
    if (home->components.empty()) break;
    home->components.pop_back();
    std::string above = "/";
    for (const std::string& component : home->components)
      above += component + "/";
    home = FolderPath::resolve(above);
  }
  return false;
}

FileDescriptor FileRemoval::openTopFolder(const std::string& path, RemovalOutcome& outcome) const {
  if (const auto refusal = refusalForText(path)) {
    outcome.refusal = refusal;
    return {};
  }
  const auto place = FolderPath::resolve(path);
  if (!place) {
    outcome.openError = errno;
    return {};
  }
  if (const auto refusal = refusalForWay(pathComponents(path), place->components)) {
    outcome.refusal = refusal;
    return {};
  }
  FileDescriptor folder(::openat(place->folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto facts = folder ? factsOfDescriptor(folder.get()) : std::nullopt;
  if (!facts) {
    outcome.openError = errno;
    return {};
  }
  if (isHomeOrAbove(*facts)) {
    outcome.refusal = RemovalRefusal::homeOrAbove;
    return {};
  }
  return folder;
}

RemovalOutcome FileRemoval::removeEntry(int parent, const char* name) {
  const auto facts = factsOfItem(parent, name);
  if (!facts) return failed(errno);
  if (facts->type == ItemType::folder && isHomeOrAbove(*facts)) return refused(RemovalRefusal::homeOrAbove);
  RemovingVisitor visitor(status_, factsOfFolder(home_()));
  for (int tries = 0; tries < kMostPasses; ++tries) {
    walkItem(parent, name, FolderReader::Order::byInode, visitor);
    if (visitor.outcome().error != 0 || !visitor.takeContested()) return visitor.outcome();
  }
  RemovalOutcome outcome = visitor.outcome();
  outcome.error = EBUSY;
  return outcome;
}

RemovalOutcome FileRemoval::removeItem(const std::string& path) {
  if (const auto refusal = refusalForText(path)) return refused(*refusal);
  auto components = pathComponents(path);
  const std::string name = components.back();
  components.pop_back();
  std::string above = "/";
  for (const std::string& component : components)
    above += component + "/";
  const auto parent = FolderPath::resolve(above);
  if (!parent) return failed(errno);
  auto place = parent->components;
  place.push_back(name);
  if (const auto refusal = refusalForWay(pathComponents(path), place)) return refused(*refusal);
  return removeEntry(parent->folder.get(), name.c_str());
}

RemovalOutcome FileRemoval::emptyFolder(const std::string& path) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(path, outcome);
  if (!folder) return outcome;
  RemovingVisitor visitor(status_, factsOfFolder(home_()));
  visitor.readTopAgain();
  walkBelowInOrder(std::move(folder), FolderReader::Order::byInode, visitor);
  return visitor.outcome();
}

RemovalOutcome FileRemoval::removeEntries(const std::string& folderPath, const NameTest& matches) {
  RemovalOutcome outcome;
  const FileDescriptor folder = openTopFolder(folderPath, outcome);
  if (!folder) return outcome;
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
        const FolderMeasure measure = measureItem(folder.get(), entry.name);
        const RemovalOutcome removed = removeEntry(folder.get(), entry.name);
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

RemovalOutcome FileRemoval::removeMatches(const std::string& folderPath, const NameTest& matches) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(folderPath, outcome);
  if (!folder) return outcome;
  const MatchRemovingVisitor::Remove remove = [this](int parent, const char* name) {
    return removeEntry(parent, name);
  };
  MatchRemovingVisitor first(matches, remove);
  MatchRemovingVisitor second(matches, remove);
  walkBelow(std::move(folder), FolderReader::Order::asStored, {&first, &second});
  for (const auto* visitor : {&first, &second}) {
    outcome.bytes += visitor->outcome().bytes;
    outcome.items += visitor->outcome().items;
    if (visitor->outcome().error != 0) outcome.error = visitor->outcome().error;
  }
  return outcome;
}

RemovalOutcome FileRemoval::removeFileByFile(const std::string& folderPath, const FileSelection& selection) {
  RemovalOutcome outcome;
  FileDescriptor folder = openTopFolder(folderPath, outcome);
  const auto facts = folder ? factsOfDescriptor(folder.get()) : std::nullopt;
  if (!facts) return outcome;
  FileByFileRemoval visitor(selection, status_, *facts);
  walkBelow(std::move(folder), FolderReader::Order::byInode, {&visitor});
  outcome.bytes = visitor.bytes();
  outcome.items = visitor.items();
  return outcome;
}

void FileRemoval::removeEachEntry(const FileDescriptor& folder, RemovalOutcome& outcome) {
  // All names before the first removal: what is thrown away meanwhile, nobody has confirmed.
  std::vector<std::string> names;
  FolderReader reader(FolderReader::Order::byInode);
  for (bool atEnd = !folder; !atEnd;) {
    const auto result = reader.read(folder.get(), FolderReader::kLargestBatch);
    atEnd = result.atEnd;
    for (const FolderEntry& entry : result.entries)
      names.emplace_back(entry.name);
  }
  for (const std::string& name : names)
    outcome.add(removeEntry(folder.get(), name.c_str()));
}

RemovalOutcome FileRemoval::emptyTrash(const std::string& path) {
  RemovalOutcome outcome;
  const FileDescriptor trash = openTopFolder(path, outcome);
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

RemovalOutcome FileRemoval::eraseAttributes(const std::string& path, const std::vector<std::string>& names) {
  RemovalOutcome outcome;
  if ((outcome.refusal = refusalForText(path))) return outcome;
  AttributeErasing visitor(names);
  FileDescriptor item(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!item) return failed(errno);
  visitor.erase(item.get());
  const auto facts = factsOfDescriptor(item.get());
  if (facts && facts->type == ItemType::folder) {
    FileDescriptor folder = openTopFolder(path, outcome);
    if (folder) walkBelow(std::move(folder), FolderReader::Order::asStored, {&visitor});
  }
  outcome.items = visitor.items();
  return outcome;
}

}  // namespace harbor
