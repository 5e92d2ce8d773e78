#include "platform/linux/DurableFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <memory>
#include <string_view>
#include <vector>

namespace harbor {
namespace {

constexpr int kMostLinks = 40;
constexpr int kMostNamesAside = 10'000;
constexpr mode_t kPrivateFile = S_IRUSR | S_IWUSR;
constexpr mode_t kPrivateFolder = S_IRWXU;
constexpr std::string_view kTemporarySuffix = ".tmp";

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return number_; }
  bool isOpen() const { return number_ >= 0; }
  // Closing can report that earlier writes failed.
  bool close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

// With its trailing slash; empty for a path that has none.
std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

// Hidden, and named after the process: one that is killed leaves at most one such file.
std::string temporaryPrefix(const std::string& path) {
  return "." + nameOf(path) + ".";
}

std::string temporaryPath(const std::string& path) {
  return folderOf(path) + temporaryPrefix(path) + std::to_string(::getpid()) + std::string(kTemporarySuffix);
}

bool makeFolders(const std::string& folder) {
  for (std::size_t slash = folder.find('/', 1); slash != std::string::npos;
       slash = folder.find('/', slash + 1)) {
    if (::mkdir(folder.substr(0, slash).c_str(), kPrivateFolder) != 0 && errno != EEXIST) return false;
  }
  return true;
}

Descriptor createPrivateFile(const std::string& path) {
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
  int file = ::open(path.c_str(), flags, kPrivateFile);
  if (file < 0 && errno == ENOENT && makeFolders(folderOf(path))) {
    file = ::open(path.c_str(), flags, kPrivateFile);
  } else if (file < 0 && errno == EEXIST && ::unlink(path.c_str()) == 0) {
    // Left by a process that was killed and had this one's number.
    file = ::open(path.c_str(), flags, kPrivateFile);
  }
  return Descriptor(file);
}

bool writeAll(int file, const Data& bytes) {
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t count = ::write(file, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

bool isRunning(pid_t process) {
  return ::kill(process, 0) == 0 || errno == EPERM;
}

// Like rename(2), but never over an existing file.
bool renameWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // The file system cannot do it in one step.
  return ::link(from.c_str(), to.c_str()) == 0 && ::unlink(from.c_str()) == 0;
}

}  // namespace

std::optional<std::string> DurableFile::target() const {
  std::string path = path_;
  for (int links = 0; links <= kMostLinks; ++links) {
    std::vector<char> buffer(PATH_MAX);
    const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0) {
      if (errno == EINVAL || errno == ENOENT) return path;
      return std::nullopt;
    }
    if (static_cast<std::size_t>(length) == buffer.size()) return std::nullopt;
    const std::string destination(buffer.data(), static_cast<std::size_t>(length));
    path = destination.starts_with('/') ? destination : folderOf(path) + destination;
  }
  return std::nullopt;
}

DurableFile::Contents DurableFile::read(std::uint64_t limitInBytes) const {
  // Non-blocking, because opening a pipe waits for its other end otherwise.
  const Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.isOpen()) {
    const bool isMissing = errno == ENOENT;
    return {isMissing ? ReadResult::missing : ReadResult::unreadable, {}};
  }
  struct stat status {};
  if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {ReadResult::unreadable, {}};
  // Best effort: on another user's file, or a file system without modes, the contents still count.
  if (status.st_mode & (S_IRWXG | S_IRWXO)) (void)!::fchmod(file.get(), kPrivateFile);
  if (static_cast<std::uint64_t>(status.st_size) > limitInBytes) return {ReadResult::tooLarge, {}};

  Contents contents{ReadResult::complete, Data(static_cast<std::size_t>(status.st_size) + 1)};
  std::size_t length = 0;
  for (;;) {
    const ssize_t count = ::read(file.get(), contents.bytes.data() + length, contents.bytes.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return {ReadResult::unreadable, {}};
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length > limitInBytes) return {ReadResult::tooLarge, {}};
    if (length == contents.bytes.size()) contents.bytes.resize(length * 2);
  }
  contents.bytes.resize(length);
  return contents;
}

bool DurableFile::replace(const Data& bytes) const {
  const auto path = target();
  if (!path) return false;
  const std::string temporary = temporaryPath(*path);
  Descriptor file = createPrivateFile(temporary);
  if (!file.isOpen()) return false;
  // The mode once more, because the process's umask may have taken bits away. The rename comes after the
  // fsync, so that the path never names contents that a power cut could still lose.
  const bool isReplaced = ::fchmod(file.get(), kPrivateFile) == 0 && writeAll(file.get(), bytes) &&
                          ::fsync(file.get()) == 0 && file.close() &&
                          ::rename(temporary.c_str(), path->c_str()) == 0;
  if (!isReplaced) ::unlink(temporary.c_str());
  return isReplaced;
}

std::optional<std::string> DurableFile::setAside() const {
  const auto path = target();
  if (!path) return std::nullopt;
  for (int number = 1; number <= kMostNamesAside; ++number) {
    const std::string aside = *path + ".broken-" + std::to_string(number);
    if (renameWithoutReplacing(*path, aside)) {
      ::chmod(aside.c_str(), kPrivateFile);
      return aside;
    }
    if (errno != EEXIST) return std::nullopt;
  }
  return std::nullopt;
}

void DurableFile::removeLeftovers() const {
  const auto path = target();
  if (!path) return;
  const std::string folder = folderOf(*path);
  const std::string prefix = temporaryPrefix(*path);
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(folder.empty() ? "." : folder.c_str()),
                                                    ::closedir);
  if (!listing) return;
  while (const dirent* entry = ::readdir(listing.get())) {
    std::string_view name = entry->d_name;
    if (!name.starts_with(prefix) || !name.ends_with(kTemporarySuffix)) continue;
    if (name.size() <= prefix.size() + kTemporarySuffix.size()) continue;
    const std::string_view number =
        name.substr(prefix.size(), name.size() - prefix.size() - kTemporarySuffix.size());
    pid_t process = 0;
    const auto [end, error] = std::from_chars(number.begin(), number.end(), process);
    if (error != std::errc() || end != number.end() || process <= 0) continue;
    // A running process may be in the middle of a write.
    if (!isRunning(process)) ::unlink((folder + std::string(name)).c_str());
  }
}

std::optional<DurableFile::Stamp> DurableFile::stamp() const {
  struct stat status {};
  if (::stat(path_.c_str(), &status) != 0) {
    return errno == ENOENT ? std::optional<Stamp>(Stamp{}) : std::nullopt;
  }
  return Stamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

}  // namespace harbor
