// Every item below a folder as it stood at one moment, for showing what a cleanup took and that it left all
// else alone.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <tuple>

namespace harbor {

struct ItemRecord {
  mode_t mode = 0;
  std::uint64_t inode = 0;
  off_t size = 0;
  std::int64_t modified = 0;  // nanoseconds
  std::string linkTarget;

  friend bool operator==(const ItemRecord&, const ItemRecord&) = default;
};

using TreeSnapshot = std::map<std::string, ItemRecord>;  // by path relative to the folder

inline TreeSnapshot snapshotOf(const std::string& folder) {
  TreeSnapshot snapshot;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string path = entry.path().string();
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) continue;
    ItemRecord record{status.st_mode,
                      status.st_ino,
                      status.st_size,
                      status.st_mtim.tv_sec * std::int64_t{1'000'000'000} + status.st_mtim.tv_nsec,
                      {}};
    if (S_ISLNK(status.st_mode)) record.linkTarget = std::filesystem::read_symlink(entry.path()).string();
    snapshot.emplace(path.substr(folder.size() + 1), std::move(record));
  }
  return snapshot;
}

inline std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

// Expects that the paths, with all below them, are gone and that nothing else has changed in any way, except
// that the folders which held the removed items show it.
inline void expectOnlyRemoved(const TreeSnapshot& before, const TreeSnapshot& after,
                              const std::set<std::string>& removed) {
  const auto isRemoved = [&](std::string path) {
    for (; !path.empty(); path = parentOf(path)) {
      if (removed.contains(path)) return true;
    }
    return false;
  };
  std::set<std::string> touched;
  for (const std::string& path : removed) {
    EXPECT_TRUE(before.contains(path)) << path << " was not there";
    touched.insert(parentOf(path));
  }
  for (const auto& [path, record] : before) {
    const auto now = after.find(path);
    if (isRemoved(path)) {
      EXPECT_TRUE(now == after.end()) << path << " is still there";
    } else if (now == after.end()) {
      ADD_FAILURE() << path << " is gone";
    } else if (touched.contains(path)) {
      EXPECT_EQ(now->second.mode, record.mode) << path;
      EXPECT_EQ(now->second.inode, record.inode) << path;
    } else {
      EXPECT_TRUE(now->second == record) << path << " has changed";
    }
  }
  for (const auto& [path, record] : after)
    EXPECT_TRUE(before.contains(path)) << path << " is new";
}

}  // namespace harbor
