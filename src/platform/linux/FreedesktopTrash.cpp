#include "platform/linux/FreedesktopTrash.h"

#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/FileUrl.h"

namespace harbor {
namespace {

constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;
constexpr std::size_t kLongestName = 255;
constexpr std::string_view kInfoSuffix = ".trashinfo";
constexpr int kMostNames = 10'000;

// Percent-encoded as in a file URL, without its scheme.
std::string percentEncoded(const std::string& path) {
  static constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-._~";
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string text;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (kPlain.find(character) != std::string_view::npos) {
      text += character;
    } else {
      text += '%';
      text += kHex[byte >> 4];
      text += kHex[byte & 15];
    }
  }
  return text;
}

std::string localTimeNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  return text;
}

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::optional<std::string> resolvedPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
  return resolved ? std::optional<std::string>(resolved.get()) : std::nullopt;
}

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string joined(const std::string& folder, const std::string& name) {
  return folder == "/" ? folder + name : folder + "/" + name;
}

std::optional<std::uint64_t> mountOf(const std::string& path) {
  struct statx status;
  if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &status) != 0) return std::nullopt;
  if (!(status.stx_mask & STATX_MNT_ID)) return std::nullopt;
  return status.stx_mnt_id;
}

// The folder in which the file system that holds `folder` is mounted.
std::optional<std::string> topFolderOf(std::string folder) {
  const auto mount = mountOf(folder);
  if (!mount) return std::nullopt;
  while (folder != "/" && mountOf(parentOf(folder)) == mount)
    folder = parentOf(folder);
  return folder;
}

// Opens a folder of the user's own, making it where it is missing; nothing where something else stands there.
FileDescriptor openOwnFolder(int parent, const char* name, uid_t user) {
  if (::mkdirat(parent, name, kPrivateFolder) != 0 && errno != EEXIST) return {};
  FileDescriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status;
  if (folder && (::fstat(folder.get(), &status) != 0 || status.st_uid != user)) return {};
  return folder;
}

// Opens the home trash, making it and the folders above it where they are missing. Unlike on a volume that
// others share, the folder may be a symbolic link: it is the user's own choice.
FileDescriptor openHomeTrash(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    ::mkdir(path.substr(0, slash).c_str(), kPrivateFolder);
  }
  ::mkdir(path.c_str(), kPrivateFolder);
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// "name", "name 2", "name 3", … with the extension kept, no longer than a name may be with its info file's
// suffix.
std::string numberedName(const std::string& name, int number) {
  std::string extension = pathExtension(name);
  if (!extension.empty()) extension.insert(0, 1, '.');
  if (extension.size() > 32) extension.clear();
  const std::string suffix = number == 1 ? extension : " " + std::to_string(number) + extension;
  std::string stem = name.substr(0, name.size() - extension.size());
  const std::size_t longest = kLongestName - kInfoSuffix.size() - suffix.size();
  if (stem.size() > longest) stem.resize(longest);
  return stem + suffix;
}

// The space that a folder takes on disk, in bytes.
std::uint64_t spaceOnDisk(const std::string& path) {
  std::string root = path;
  char* roots[] = {root.data(), nullptr};
  const std::unique_ptr<FTS, decltype(&fts_close)> walk(
      fts_open(roots, FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV, nullptr), &fts_close);
  std::uint64_t bytes = 0;
  while (FTSENT* entry = walk ? fts_read(walk.get()) : nullptr) {
    if (entry->fts_info == FTS_DP || entry->fts_info == FTS_NS) continue;
    bytes += static_cast<std::uint64_t>(entry->fts_statp->st_blocks) * 512;
  }
  return bytes;
}

}  // namespace

struct FreedesktopTrash::Item {
  FileDescriptor parent;
  std::string name;
  std::string path;  // absolute, with the links above the item resolved
  struct stat status;
};

FreedesktopTrash::FreedesktopTrash(std::string dataHome, uid_t user,
                                   std::function<void(std::function<void()>)> inBackground)
    : homeTrash_(std::move(dataHome) + "/Trash"), user_(user), inBackground_(std::move(inBackground)) {}

std::optional<std::string> FreedesktopTrash::trash(const std::string& path) {
  const std::string plain = FileUrl::fromPath(path).path;
  if (plain.empty() || plain.front() != '/' || plain == "/") return std::nullopt;
  Item item;
  item.name = lastPathComponent(plain);
  const auto parent = resolvedPath(parentOf(plain));
  if (!parent || item.name == "." || item.name == "..") return std::nullopt;
  item.path = joined(*parent, item.name);
  item.parent = FileDescriptor(::open(parent->c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!item.parent ||
      ::fstatat(item.parent.get(), item.name.c_str(), &item.status, AT_SYMLINK_NOFOLLOW) != 0) {
    return std::nullopt;
  }

  Attempt attempt = Attempt::otherFileSystem;
  if (auto moved = trashInto(homeTrash_, item, item.path, attempt)) return moved;
  if (attempt != Attempt::otherFileSystem) return std::nullopt;

  const auto top = topFolderOf(*parent);
  if (!top) return std::nullopt;
  const std::string relative = item.path.substr(*top == "/" ? 1 : top->size() + 1);
  const std::string user = std::to_string(user_);
  struct stat shared;
  const std::string sharedTrash = joined(*top, ".Trash");
  if (::lstat(sharedTrash.c_str(), &shared) == 0 && S_ISDIR(shared.st_mode) &&
      (shared.st_mode & S_ISVTX) != 0) {
    if (auto moved = trashInto(sharedTrash + "/" + user, item, relative, attempt)) return moved;
  }
  return trashInto(joined(*top, ".Trash-" + user), item, relative, attempt);
}

std::optional<std::string> FreedesktopTrash::trashInto(const std::string& trashFolder, const Item& item,
                                                       const std::string& recordedPath, Attempt& attempt) {
  attempt = Attempt::failed;
  FileDescriptor trash;
  if (trashFolder == homeTrash_) {
    // The home trash is not made for an item that it cannot take.
    struct stat nearest;
    std::string existing = trashFolder;
    while (existing != "/" && ::stat(existing.c_str(), &nearest) != 0)
      existing = parentOf(existing);
    if (::stat(existing.c_str(), &nearest) != 0 || nearest.st_dev != item.status.st_dev) {
      attempt = Attempt::otherFileSystem;
      return std::nullopt;
    }
    trash = openHomeTrash(trashFolder);
  } else {
    const FileDescriptor above(
        ::open(parentOf(trashFolder).c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (above) trash = openOwnFolder(above.get(), lastPathComponent(trashFolder).c_str(), user_);
  }
  if (!trash) return std::nullopt;
  const FileDescriptor files = openOwnFolder(trash.get(), "files", user_);
  const FileDescriptor info = openOwnFolder(trash.get(), "info", user_);
  if (!files || !info) return std::nullopt;

  const std::string text =
      "[Trash Info]\nPath=" + percentEncoded(recordedPath) + "\nDeletionDate=" + localTimeNow() + "\n";
  for (int number = 1; number <= kMostNames; ++number) {
    const std::string name = numberedName(item.name, number);
    const std::string infoName = name + std::string(kInfoSuffix);
    // The info file is made first and exclusively: whoever makes it owns the name.
    const FileDescriptor reserved(::openat(
        info.get(), infoName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kPrivateFile));
    if (!reserved && errno == EEXIST) continue;
    if (!reserved) return std::nullopt;
    int error = 0;
    if (!writeAll(reserved.get(), text) || ::fsync(reserved.get()) != 0) {
      error = EIO;
    } else if (::renameat2(item.parent.get(), item.name.c_str(), files.get(), name.c_str(),
                           RENAME_NOREPLACE) != 0) {
      error = errno;
    }
    if (error == 0) {
      if (S_ISDIR(item.status.st_mode)) recordDirectorySize(trashFolder, name);
      return trashFolder + "/files/" + name;
    }
    ::unlinkat(info.get(), infoName.c_str(), 0);
    if (error == EEXIST) continue;  // an item without an info file has the name
    if (error == EXDEV) attempt = Attempt::otherFileSystem;
    return std::nullopt;
  }
  return std::nullopt;
}

// The folder's size, the time of its info file and its name: a line in a file that saves others the
// measuring. It is a cache that any reader rebuilds, so a failure to write it is none of the move.
void FreedesktopTrash::recordDirectorySize(const std::string& trashFolder, const std::string& name) {
  inBackground_([lock = sizesLock_, trashFolder, name] {
    const std::uint64_t bytes = spaceOnDisk(trashFolder + "/files/" + name);
    struct stat info;
    if (::stat((trashFolder + "/info/" + name + std::string(kInfoSuffix)).c_str(), &info) != 0) return;

    const std::lock_guard<std::mutex> held(*lock);
    const std::string sizes = trashFolder + "/directorysizes";
    const std::string encoded = percentEncoded(name);
    std::string text;
    if (const FileDescriptor old(::open(sizes.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
        old) {
      constexpr std::size_t kLargestCache = 16 << 20;
      char buffer[16384];
      std::string content;
      for (ssize_t count;
           content.size() < kLargestCache && (count = ::read(old.get(), buffer, sizeof buffer)) > 0;) {
        content.append(buffer, static_cast<std::size_t>(count));
      }
      std::istringstream lines(content);
      for (std::string line; std::getline(lines, line);) {
        if (!line.ends_with(" " + encoded)) text += line + "\n";
      }
    }
    text += std::to_string(bytes) + " " + std::to_string(info.st_mtime) + " " + encoded + "\n";
    std::string temporary = trashFolder + "/directorysizes.XXXXXX";
    const FileDescriptor fresh(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!fresh) return;
    if (!writeAll(fresh.get(), text) || ::rename(temporary.c_str(), sizes.c_str()) != 0)
      ::unlink(temporary.c_str());
  });
}

}  // namespace harbor
