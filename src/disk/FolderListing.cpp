#include "disk/FolderListing.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <string_view>

#include "disk/FolderReader.h"

namespace harbor {
namespace {

constexpr std::size_t kMostEntries = 1'000'000;

std::int64_t now() {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME, &time);
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// File systems take the time from a clock that advances a hundred times a second or more often: what is born
// after the listing can bear a time this much before it.
constexpr std::int64_t kTick = 10'000'000;

// Gives an item its name back, or a numbered one if that has been taken meanwhile.
void putBack(int folder, const char* aside, const std::string& name) {
  if (renameIfFree(folder, aside, name.c_str())) return;
  for (int number = 2; errno == EEXIST && number < 1000; ++number) {
    if (renameIfFree(folder, aside, (name + " (" + std::to_string(number) + ")").c_str())) return;
  }
}

std::uint64_t randomNumber() {
  std::random_device device;
  return (std::uint64_t{device()} << 32) | device();
}

std::uint64_t mixed(std::uint64_t value) {
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
  return value ^ (value >> 31);
}

}  // namespace

FolderListing::FolderListing(int folder) : seed_(randomNumber()), begin_(now() - kTick) {
  ::lseek(folder, 0, SEEK_SET);
  FolderReader reader(FolderReader::Order::asStored);
  for (bool atEnd = false; !atEnd && isComplete_;) {
    const auto result = reader.read(folder, FolderReader::kLargestBatch);
    atEnd = result.atEnd;
    for (const FolderEntry& entry : result.entries) {
      const auto facts = factsOfItem(folder, entry.name);
      if (!facts) continue;
      if (fingerprints_.size() == kMostEntries) {
        isComplete_ = false;
        break;
      }
      fingerprints_.push_back(fingerprint(entry.name, *facts));
    }
  }
  ::lseek(folder, 0, SEEK_SET);
  std::sort(fingerprints_.begin(), fingerprints_.end());
}

std::uint64_t FolderListing::fingerprint(const char* name, const ItemFacts& item) const {
  std::uint64_t value = mixed(seed_ ^ std::hash<std::string_view>()(name));
  for (const std::uint64_t part : {item.device, item.inode, static_cast<std::uint64_t>(item.born)})
    value = mixed(value ^ part);
  return value;
}

bool FolderListing::held(const char* name, const ItemFacts& item) const {
  const std::uint64_t wanted = fingerprint(name, item);
  if (std::binary_search(fingerprints_.begin(), fingerprints_.end(), wanted)) return true;
  return !isComplete_ && item.born != 0 && item.born < begin_;
}

int removeIfSame(int folder, const char* name, const ItemFacts& seen, int flags) {
  // An empty folder that takes the name in this very moment holds nothing that could be lost.
  if (flags != 0) {
    const auto facts = factsOfItem(folder, name);
    if (!facts) return errno;
    if (!facts->isSameItemAs(seen)) return ENOENT;
    return ::unlinkat(folder, name, flags) == 0 ? 0 : errno;
  }
  // Another program may put a new file in place of this one at any moment, so the item is first given a name
  // that nobody knows, and looked at under that.
  thread_local std::uint64_t names = randomNumber();
  char aside[40];
  std::snprintf(aside, sizeof aside, ".harbor-tray-%016llx", static_cast<unsigned long long>(mixed(++names)));
  // Where an entry cannot be renamed, as on a full disk, it can still be removed.
  if (!renameIfFree(folder, name, aside)) {
    if (errno == ENOENT) return ENOENT;
    return ::unlinkat(folder, name, 0) == 0 ? 0 : errno;
  }
  const auto moved = factsOfItem(folder, aside);
  if (moved && moved->isSameItemAs(seen)) {
    if (::unlinkat(folder, aside, 0) == 0) return 0;
    const int error = errno;
    putBack(folder, aside, name);
    return error;
  }
  putBack(folder, aside, name);
  return ENOENT;
}

}  // namespace harbor
