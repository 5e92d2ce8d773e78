#include "platform/linux/ProgramsFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string_view>

namespace harbor {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

// The entries of a folder that are numbers.
std::vector<std::string> numbersIn(const std::string& path) {
  std::vector<std::string> numbers;
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(path.c_str()));
  while (const dirent* entry = folder ? ::readdir(folder.get()) : nullptr) {
    if (entry->d_name[0] >= '0' && entry->d_name[0] <= '9') numbers.emplace_back(entry->d_name);
  }
  return numbers;
}

// The absolute path that a link of the kernel leads to; empty when there is none, as for a socket.
std::string targetOf(const std::string& link) {
  std::array<char, 4096> text;
  const ssize_t length = ::readlink(link.c_str(), text.data(), text.size());
  if (length <= 0 || text[0] != '/') return {};
  return std::string(text.data(), static_cast<std::size_t>(length));
}

bool isOpenForWriting(const std::string& information) {
  std::ifstream file(information);
  for (std::string line; std::getline(file, line);) {
    constexpr std::string_view kFlags = "flags:";
    if (!line.starts_with(kFlags)) continue;
    const std::size_t start = line.find_first_not_of(" \t", kFlags.size());
    if (start == std::string::npos) return false;
    std::uint64_t flags = 0;
    std::from_chars(line.data() + start, line.data() + line.size(), flags, 8);
    return (flags & O_ACCMODE) != O_RDONLY;
  }
  return false;
}

// The inodes of the files that are locked. Their devices are those of the file systems, which are not always
// the ones that the files themselves tell.
std::set<std::uint64_t> lockedInodes(const std::string& processes) {
  std::set<std::uint64_t> inodes;
  std::ifstream file(processes + "/locks");
  // "1: POSIX  ADVISORY  WRITE 1234 08:02:131085 0 EOF"
  for (std::string line; std::getline(file, line);) {
    const std::size_t second = line.rfind(':');
    if (second == std::string::npos) continue;
    std::uint64_t inode = 0;
    const auto parsed = std::from_chars(line.data() + second + 1, line.data() + line.size(), inode);
    if (parsed.ec == std::errc()) inodes.insert(inode);
  }
  return inodes;
}

// Adds the files that the process shares its writable memory with; it may have closed them since.
void addSharedMemory(const std::string& maps, std::set<FileIdentity>& files) {
  std::ifstream file(maps);
  // "7f1c0a000000-7f1c0a021000 rw-s 00000000 08:02 131085    /home/ann/.cache/index"
  for (std::string line; std::getline(file, line);) {
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned long long inode = 0;
    char access[5] = "";
    if (std::sscanf(line.c_str(), "%*s %4s %*s %x:%x %llu", access, &major, &minor, &inode) != 4) continue;
    if (access[1] == 'w' && access[3] == 's' && inode != 0)
      files.insert({(std::uint64_t{major} << 32) | minor, inode});
  }
}

}  // namespace

ProgramsFiles ProgramsFiles::read(const std::string& processes) {
  ProgramsFiles files;
  const auto locks = lockedInodes(processes);
  const std::string self = std::to_string(::getpid());
  for (const std::string& process : numbersIn(processes)) {
    if (process == self) continue;
    const std::string folder = processes + "/" + process;
    if (std::string program = targetOf(folder + "/exe"); !program.empty())
      files.programs.push_back(std::move(program));
    if (std::string path = targetOf(folder + "/cwd"); !path.empty()) files.opened.push_back(std::move(path));
    addSharedMemory(folder + "/maps", files.inUse);
    for (const std::string& number : numbersIn(folder + "/fd")) {
      const std::string link = folder + "/fd/" + number;
      std::string path = targetOf(link);
      struct stat status {};
      if (path.empty() || ::stat(link.c_str(), &status) != 0) continue;
      if (S_ISREG(status.st_mode)) {
        const bool isLocked = locks.contains(status.st_ino);
        if (isLocked) files.locked.push_back(path);
        if (isLocked || isOpenForWriting(folder + "/fdinfo/" + number)) {
          files.inUse.insert({(std::uint64_t{major(status.st_dev)} << 32) | minor(status.st_dev),
                              static_cast<std::uint64_t>(status.st_ino)});
        }
      }
      files.opened.push_back(std::move(path));
    }
  }
  return files;
}

}  // namespace harbor
