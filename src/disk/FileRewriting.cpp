#include "disk/FileRewriting.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

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

bool isUnchanged(const std::string& path, const struct stat& before) {
  struct stat now {};
  return ::lstat(path.c_str(), &now) == 0 && now.st_dev == before.st_dev && now.st_ino == before.st_ino &&
         now.st_size == before.st_size && now.st_mtime == before.st_mtime && now.st_ctime == before.st_ctime;
}

}  // namespace

bool rewriteFile(const std::string& path, const TextEdit& edit) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct stat before {};
  if (!file || ::fstat(file.get(), &before) != 0 || !S_ISREG(before.st_mode)) return false;
  if (before.st_uid != ::geteuid() || before.st_nlink != 1 || before.st_size > kLargestFile) return false;
  const auto old = contentsOf(file.get(), before.st_size);
  if (!old) return false;
  const auto text = edit(*old);
  if (!text) return false;
  if (*text == *old) return true;

  std::string temporary = path + ".XXXXXX";
  const FileDescriptor copy(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!copy) return false;
  const bool isComplete = writeAll(copy.get(), *text) && ::fchmod(copy.get(), before.st_mode & 07777) == 0 &&
                          ::fsync(copy.get()) == 0 && isUnchanged(path, before);
  if (isComplete && ::rename(temporary.c_str(), path.c_str()) == 0) return true;
  ::unlink(temporary.c_str());
  return false;
}

}  // namespace harbor
