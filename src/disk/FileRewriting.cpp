#include "disk/FileRewriting.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>

#include "base/FileDescriptor.h"

namespace harbor {
namespace {

constexpr off_t kLargestFile = off_t{16} * 1024 * 1024;

std::optional<std::string> contentsOf(int file, off_t size) {
  std::string text(static_cast<std::size_t>(size), '\0');
  std::size_t filled = 0;
  while (filled < text.size()) {
    const ssize_t count = ::read(file, text.data() + filled, text.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    filled += static_cast<std::size_t>(count);
  }
  return text;
}

bool writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// A name beside the file that nobody else can know; short, so that it fits where the file's own does.
std::string temporaryName(const std::string& name) {
  char ending[16];
  std::snprintf(ending, sizeof ending, ".%08x", static_cast<unsigned>(std::random_device()()));
  return "." + name.substr(0, 200) + ending;
}

bool isUnchanged(int folder, const std::string& name, const struct stat& before) {
  struct stat now {};
  return ::fstatat(folder, name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 && now.st_dev == before.st_dev &&
         now.st_ino == before.st_ino && now.st_size == before.st_size && now.st_mtime == before.st_mtime &&
         now.st_ctime == before.st_ctime;
}

}  // namespace

bool rewriteFile(int folder, const std::string& name, const TextEdit& edit) {
  const FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct stat before {};
  if (!file || ::fstat(file.get(), &before) != 0 || !S_ISREG(before.st_mode)) return false;
  if (before.st_uid != ::geteuid() || before.st_nlink != 1 || before.st_size > kLargestFile) return false;
  const auto old = contentsOf(file.get(), before.st_size);
  if (!old) return false;
  const auto text = edit(*old);
  if (!text) return false;
  if (*text == *old) return true;

  const std::string temporary = temporaryName(name);
  const FileDescriptor copy(
      ::openat(folder, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!copy) return false;
  const bool isComplete = writeAll(copy.get(), *text) && ::fchmod(copy.get(), before.st_mode & 07777) == 0 &&
                          ::fsync(copy.get()) == 0 && isUnchanged(folder, name, before);
  if (isComplete && ::renameat(folder, temporary.c_str(), folder, name.c_str()) == 0) return true;
  ::unlinkat(folder, temporary.c_str(), 0);
  return false;
}

}  // namespace harbor
