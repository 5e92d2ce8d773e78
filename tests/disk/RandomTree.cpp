#include "RandomTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <random>
#include <system_error>

#include "base/FileDescriptor.h"

namespace harbor {
namespace {

constexpr std::size_t kMostLevels = 60;
constexpr std::size_t kLongestName = 255;
// What is mounted is reached by its whole path, which a system call limits.
constexpr std::size_t kLongestMountPath = 3000;

class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}
  std::size_t below(std::size_t end) { return static_cast<std::size_t>(engine_() % end); }
  std::size_t from(std::size_t first, std::size_t last) { return first + below(last - first + 1); }
  bool oneIn(std::size_t cases) { return below(cases) == 0; }

 private:
  std::mt19937_64 engine_;
};

std::string oddName(Dice& dice) {
  switch (dice.below(12)) {
    case 0:
      return "two\nlines";
    case 1:
      return "." + std::to_string(dice.below(10));
    case 2:
      return "-rf";
    case 3:
      return "...";
    case 4:
      return " ";
    case 5:
      return "\xff\xfe" + std::to_string(dice.below(100));
    case 6:
      return std::string(kLongestName, static_cast<char>('a' + dice.below(26)));
    case 7:
      return dice.oneIn(2) ? "lock" : "SingletonLock";
    case 8:
      return ".#" + std::to_string(dice.below(10));
    case 9:
      return "Keep " + std::to_string(dice.below(10));
    case 10:
      return std::to_string(dice.below(100)) + ".lock";
    default: {
      std::string bytes(dice.from(1, 12), ' ');
      for (char& byte : bytes) {
        byte = static_cast<char>(dice.from(1, 255));
        if (byte == '/' || byte == '.') byte = '_';
      }
      return bytes;
    }
  }
}

std::string newName(Dice& dice, std::set<std::string>& used, bool isLong) {
  std::string name = dice.oneIn(6)    ? oddName(dice)
                     : dice.oneIn(10) ? std::to_string(dice.below(50)) + ".download"
                                      : "n" + std::to_string(dice.below(1000));
  if (isLong && name.size() < kLongestName) name.insert(0, kLongestName - name.size(), 'l');
  const std::string end = name;
  while (!used.insert(name).second) {
    const std::string number = std::to_string(dice.below(1'000'000));
    name = number + end.substr(0, kLongestName - number.size());
  }
  return name;
}

std::string linkTarget(Dice& dice) {
  switch (dice.below(7)) {
    case 0:
      return "nowhere";
    case 1:
      return "..";
    case 2:
      return "../../outside/deep";
    case 3:
      return "/";
    case 4:
      return "/nowhere/at/all";
    case 5:
      return ".";
    default:
      return "../n" + std::to_string(dice.below(1000));
  }
}

void check(bool isDone, const char* what) {
  if (!isDone) throw std::system_error(errno, std::generic_category(), what);
}

FileDescriptor openFolderIn(int folder, const std::string& name) {
  FileDescriptor child(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  check(static_cast<bool>(child), "openat");
  return child;
}

void clearOpen(int folder) {
  const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  check(own >= 0, "openat");
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(own), ::closedir);
  std::vector<std::string> names;
  while (const dirent* const entry = ::readdir(stream.get()))
    names.emplace_back(entry->d_name);
  for (const std::string& name : names) {
    if (name == "." || name == ".." || ::unlinkat(folder, name.c_str(), 0) == 0) continue;
    check(errno == EISDIR, "unlinkat");
    clearOpen(openFolderIn(folder, name).get());
    check(::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0, "unlinkat");
  }
}

}  // namespace

RandomTree::RandomTree(std::uint64_t seed, Mounts mounts) : items_(1) {
  Dice dice(seed);
  struct Place {
    std::size_t level = 0;
    std::size_t pathLength = 0;
    std::set<std::string> names;
  };
  std::vector<Place> places(1);         // by item
  std::vector<std::size_t> folders{0};  // as items
  std::vector<std::size_t> files;

  const std::size_t levels = dice.from(1, dice.oneIn(2) ? 8 : kMostLevels);
  const bool isLarge = dice.oneIn(8);
  const std::size_t size = isLarge ? dice.from(120, 300) : dice.from(0, 60);
  const std::size_t foldersInTen = dice.from(isLarge ? 6 : 1, 9);
  const std::size_t deepInTen = dice.from(0, 9);
  const bool hasLongNames = dice.oneIn(8);

  const auto add = [&](std::size_t parent, bool isFolder) {
    Item item;
    item.name = newName(dice, places[parent].names, hasLongNames && dice.oneIn(2));
    if (!isFolder) {
      const std::size_t kind = dice.below(12);
      if (kind == 0 || kind == 1) {
        item.kind = Kind::link;
        item.text = linkTarget(dice);
      } else if (kind == 2) {
        item.kind = Kind::hardLink;
      } else if (kind == 3 && dice.oneIn(4)) {
        item.kind = Kind::pipe;
      } else {
        item.kind = Kind::file;
        item.text = std::to_string(seed) + " " + std::to_string(items_.size());
        item.size = dice.oneIn(20) ? dice.below(std::size_t{1} << 40) : dice.below(100'000);
        item.size = std::max<std::uint64_t>(item.size, item.text.size());
      }
    }
    const std::size_t index = items_.size();
    places.push_back({places[parent].level + 1, places[parent].pathLength + 1 + item.name.size(), {}});
    (isFolder ? folders : files).push_back(index);
    items_[parent].children.push_back(index);
    items_.push_back(std::move(item));
    return index;
  };

  // One branch as deep as the tree goes, then items anywhere, more of them deep down in some trees.
  for (std::size_t last = 0; places[last].level + 1 < levels;)
    last = add(last, true);
  while (items_.size() < size) {
    const std::size_t near = folders.size() - std::min<std::size_t>(folders.size(), 8);
    const std::size_t parent = folders[dice.below(10) < deepInTen ? dice.from(near, folders.size() - 1)
                                                                  : dice.below(folders.size())];
    const bool mayHoldFolder = places[parent].level + 1 < levels;
    add(parent, mayHoldFolder && dice.below(10) < foldersInTen);
  }
  // Enough in one folder for two threads, or for its names to be read in several turns.
  if (dice.oneIn(20)) {
    const std::size_t parent = folders[dice.below(folders.size())];
    for (std::size_t i = dice.from(260, hasLongNames ? 600 : 300); i > 0; --i)
      add(parent, places[parent].level + 1 < levels && dice.below(10) < foldersInTen);
  }

  if (mounts == Mounts::none || !dice.oneIn(12)) return;
  for (std::size_t i = dice.from(1, 2); i > 0 && items_.size() > 1; --i) {
    const std::size_t index = dice.from(1, items_.size() - 1);
    Item& item = items_[index];
    if (places[index].pathLength > kLongestMountPath) continue;
    const bool ofSame = mounts == Mounts::all && dice.oneIn(2);
    if (item.kind == Kind::folder) item.mount = ofSame ? Mount::sameFileSystem : Mount::fileSystem;
    if (item.kind == Kind::file && mounts == Mounts::all) item.mount = Mount::sameFileSystem;
  }
}

void RandomTree::makeIn(const std::string& folder, const std::string& outside) {
  top_ = folder;
  mountPoints_.clear();
  makeChildren(openFolderIn(AT_FDCWD, folder).get(), "", items_.front(), outside);
}

void RandomTree::makeChildren(int folder, const std::string& path, const Item& item,
                              const std::string& outside) {
  for (const std::size_t child : item.children)
    makeItem(folder, path, child, outside);
}

void RandomTree::makeItem(int folder, const std::string& above, std::size_t index,
                          const std::string& outside) {
  const Item& item = items_[index];
  const char* const name = item.name.c_str();
  const std::string path = above.empty() ? item.name : above + "/" + item.name;
  switch (item.kind) {
    case Kind::folder: {
      check(::mkdirat(folder, name, 0700) == 0, "mkdirat");
      const FileDescriptor child = openFolderIn(folder, item.name);
      makeChildren(child.get(), path, item, outside);
      break;
    }
    case Kind::file: {
      const FileDescriptor file(::openat(folder, name, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
      check(::write(file.get(), item.text.data(), item.text.size()) >= 0, "write");
      check(::ftruncate(file.get(), static_cast<off_t>(item.size)) == 0, "ftruncate");
      break;
    }
    case Kind::link:
      check(::symlinkat(item.text.c_str(), folder, name) == 0, "symlinkat");
      break;
    case Kind::hardLink:
      check(::linkat(AT_FDCWD, (outside + "/" + kOutsideFile).c_str(), folder, name, 0) == 0, "linkat");
      break;
    case Kind::pipe:
      check(::mknodat(folder, name, S_IFIFO | 0600, 0) == 0, "mknodat");
      break;
  }
  if (item.mount != Mount::nothing) mountOn(path, item, outside);
}

void RandomTree::mountOn(const std::string& path, const Item& item, const std::string& outside) {
  const std::string place = top_ + "/" + path;
  if (item.mount == Mount::fileSystem) {
    check(::mount("none", place.c_str(), "tmpfs", 0, nullptr) == 0, "mount");
    check(::mkdir((place + "/mounted").c_str(), 0700) == 0, "mkdir");
  } else {
    const std::string source = outside + "/" + (item.kind == Kind::folder ? kOutsideFolder : kOutsideFile);
    check(::mount(source.c_str(), place.c_str(), nullptr, MS_BIND, nullptr) == 0, "mount");
  }
  mountPoints_.insert(path);
}

void RandomTree::clear(const std::string& folder) {
  for (const std::string& path : mountPoints_)
    check(::umount2((top_ + "/" + path).c_str(), MNT_DETACH) == 0, "umount2");
  mountPoints_.clear();
  clearOpen(openFolderIn(AT_FDCWD, folder).get());
}

}  // namespace harbor
