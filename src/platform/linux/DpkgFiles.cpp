#include "platform/linux/DpkgFiles.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

#include "base/FileDescriptor.h"
#include "base/FileUrl.h"

namespace harbor {
namespace {

constexpr std::string_view kListEnding = ".list";
// Folders that are links into /usr on systems of today, while the lists may name either.
constexpr std::string_view kMergedFolders[] = {"bin", "lib", "lib32", "lib64", "libx32", "sbin"};

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

// Appends to what the buffer holds. False when the file cannot be read.
bool readFile(int folder, const char* name, std::string& contents) {
  const FileDescriptor file(::openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status;
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  contents.resize(static_cast<std::size_t>(status.st_size));
  std::size_t length = 0;
  while (length < contents.size()) {
    const ssize_t count = ::read(file.get(), contents.data() + length, contents.size() - length);
    if (count <= 0) break;
    length += static_cast<std::size_t>(count);
  }
  contents.resize(length);
  return true;
}

// Calls visit(line) until it returns false.
template <typename Visit>
void eachLine(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (!visit(text.substr(0, end))) return;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::vector<std::string> foldersAbove(const std::string& path) {
  std::vector<std::string> folders;  // the topmost first
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
    folders.push_back(path.substr(0, slash));
  return folders;
}

// "libfoo" for "libfoo:amd64.list".
std::string_view packageOfList(std::string_view name) {
  name.remove_suffix(kListEnding.size());
  return name.substr(0, name.find(':'));
}

bool isLink(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool contains(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

DpkgFiles::DpkgFiles(std::string root) : root_(std::move(root)), folder_(root_ + "/var/lib/dpkg") {}

std::vector<std::string> DpkgFiles::spellingsOf(const std::string& path) const {
  std::vector<std::string> spellings{path};
  const std::size_t slash = path.rfind('/');
  char buffer[PATH_MAX];
  // The last component is not resolved: a link is what the package brought, not what it leads to.
  if (realpath((root_ + path.substr(0, slash) + "/").c_str(), buffer)) {
    std::string folder = buffer;
    if (folder.starts_with(root_)) folder.erase(0, root_.size());
    if (folder == "/") folder.clear();
    std::string spelling = folder + path.substr(slash);
    if (!contains(spellings, spelling)) spellings.insert(spellings.begin(), std::move(spelling));
  }
  const std::string resolved = spellings.front();
  for (const std::string_view merged : kMergedFolders) {
    const std::string top = "/" + std::string(merged);
    if (resolved.starts_with("/usr" + top + "/") && isLink(root_ + top))
      spellings.push_back(resolved.substr(4));
  }
  return spellings;
}

std::vector<DpkgFiles::Diversion> DpkgFiles::diversions() const {
  std::string text;
  if (!readFile(AT_FDCWD, (folder_ + "/diversions").c_str(), text)) return {};
  std::vector<std::string> lines;
  eachLine(text, [&lines](std::string_view line) {
    lines.emplace_back(line);
    return true;
  });
  std::vector<Diversion> found;
  for (std::size_t i = 0; i + 2 < lines.size(); i += 3)
    found.push_back({lines[i], lines[i + 1], lines[i + 2]});
  return found;
}

std::optional<std::string> DpkgFiles::searchLists(const std::vector<std::string>& spellings,
                                                  const Accepts& accepts) const {
  const std::string lists = folder_ + "/info";
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(lists.c_str()));
  if (!directory) return std::nullopt;
  const std::unordered_set<std::string_view> wanted(spellings.begin(), spellings.end());
  const std::vector<std::string> above = foldersAbove(spellings.front());
  std::unordered_set<std::string_view> unseen(above.begin(), above.end());
  std::optional<std::string> owner;
  std::string text;
  bool hasReadAll = true;
  while (const dirent* entry = readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    if (!name.ends_with(kListEnding)) continue;
    if (!readFile(dirfd(directory.get()), entry->d_name, text)) {
      hasReadAll = false;
      continue;
    }
    eachLine(text, [&](std::string_view line) {
      unseen.erase(line);
      if (wanted.contains(line) && accepts(packageOfList(name))) owner = packageOfList(name);
      return !owner;
    });
    if (owner) return owner;
  }
  if (!hasReadAll) return std::nullopt;
  for (const std::string& folder : above) {
    if (unseen.contains(folder)) {
      foreignFolders_.insert(folder);
      break;
    }
  }
  return std::nullopt;
}

void DpkgFiles::forgetAfterChange() const {
  struct stat status;
  const timespec changed = stat((folder_ + "/info").c_str(), &status) == 0 ? status.st_mtim : timespec{};
  if (changed.tv_sec != changed_.tv_sec || changed.tv_nsec != changed_.tv_nsec) foreignFolders_.clear();
  changed_ = changed;
}

std::optional<std::string> DpkgFiles::packageOf(const std::string& path) const {
  if (path.size() < 2 || path.front() != '/') return std::nullopt;
  const std::lock_guard lock(mutex_);
  forgetAfterChange();
  const std::vector<std::string> spellings = spellingsOf(path);
  const std::vector<std::string> above = foldersAbove(spellings.front());
  if (spellings.size() == 1 && std::any_of(above.begin(), above.end(), [this](const std::string& folder) {
        return foreignFolders_.contains(folder);
      })) {
    return std::nullopt;
  }
  for (const Diversion& diversion : diversions()) {
    if (contains(spellings, diversion.divertedTo)) {
      return searchLists({diversion.original},
                         [&](std::string_view package) { return package != diversion.package; });
    }
    if (contains(spellings, diversion.original)) {
      return searchLists(spellings, [&](std::string_view package) { return package == diversion.package; });
    }
  }
  return searchLists(spellings, [](std::string_view) { return true; });
}

}  // namespace harbor
