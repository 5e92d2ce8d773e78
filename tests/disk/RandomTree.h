// Trees of folders as a seed makes them: from one level to sixty, wide and narrow, with the names, links and
// mounts that a walk through them could stumble over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace harbor {

class RandomTree {
 public:
  enum class Mounts {
    none,
    otherFileSystems,  // on folders
    all,               // also parts of the same file system, on folders and files
  };

  // The same seed gives the same tree.
  RandomTree(std::uint64_t seed, Mounts mounts);

  // Makes the tree in an empty folder, with hard links to, and mounts of, what lies in a second folder. Paths
  // are absolute. Throws std::system_error when it cannot.
  void makeIn(const std::string& folder, const std::string& outside);
  // Removes all that lies in the folder, mounts first.
  void clear(const std::string& folder);

  // Where something is mounted, relative to the folder of the last makeIn.
  const std::set<std::string>& mountPoints() const { return mountPoints_; }
  std::size_t items() const { return items_.size() - 1; }

  // What makeIn wants in the second folder.
  static constexpr const char* kOutsideFile = "precious";
  static constexpr const char* kOutsideFolder = "deep";

 private:
  enum class Kind { folder, file, link, hardLink, pipe };
  enum class Mount { nothing, fileSystem, sameFileSystem };
  struct Item {
    std::string name;
    Kind kind = Kind::folder;
    std::string text;        // a file's contents, or where a link leads
    std::uint64_t size = 0;  // a file's, at least its contents'
    Mount mount = Mount::nothing;
    std::vector<std::size_t> children;
  };

  void makeItem(int folder, const std::string& path, std::size_t index, const std::string& outside);
  void makeChildren(int folder, const std::string& path, const Item& item, const std::string& outside);
  void mountOn(const std::string& path, const Item& item, const std::string& outside);

  std::vector<Item> items_;  // the first is the folder itself
  std::string top_;
  std::set<std::string> mountPoints_;
};

}  // namespace harbor
