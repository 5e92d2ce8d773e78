#include "platform/linux/DesktopEntries.h"

#include <dirent.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "base/FileUrl.h"
#include "platform/linux/ExecLine.h"

namespace harbor {
namespace {

constexpr std::string_view kSuffix = ".desktop";
constexpr int kMaximumDepth = 8;
constexpr std::size_t kMaximumEntries = 20'000;

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

// The path with symbolic links resolved; the path itself when that fails.
std::string resolved(const std::string& path) {
  char buffer[PATH_MAX];
  return realpath(path.c_str(), buffer) ? std::string(buffer) : path;
}

}  // namespace

std::optional<DesktopEntries::Status> DesktopEntries::Status::of(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return Status{status.st_dev, status.st_ino, status.st_size, status.st_ctim};
}

bool DesktopEntries::Status::operator==(const Status& other) const {
  return device == other.device && inode == other.inode && size == other.size &&
         changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

DesktopEntries::DesktopEntries(XdgEnvironment environment, std::chrono::milliseconds trust)
    : environment_(std::move(environment)), trust_(trust), folders_(environment_.applicationsFolders()) {}

std::shared_ptr<const DesktopEntry> DesktopEntries::entryAt(const std::string& path) const {
  return fileAt(path).entry;
}

const DesktopEntries::File& DesktopEntries::fileAt(const std::string& path) const {
  const Instant now = std::chrono::steady_clock::now();
  const auto [position, isNew] = files_.try_emplace(path);
  File& file = position->second;
  if (!isNew && now - file.checked < trust_) return file;
  const auto status = Status::of(path);
  if (isNew || status != file.status) {
    file.status = status;
    auto entry = status ? DesktopEntry::read(path, environment_) : std::nullopt;
    file.entry = entry ? std::make_shared<const DesktopEntry>(std::move(*entry)) : nullptr;
  }
  // Asked again even for an unchanged file: the program that it names may have come or gone.
  file.offered = file.entry && file.entry->isOffered(environment_);
  file.checked = now;
  return file;
}

bool DesktopEntries::isOffered(const std::string& path) const {
  refresh();
  const auto identifier = identifierOfPath_.find(path);
  if (identifier != identifierOfPath_.end() && pathOfIdentifier_[identifier->second] != path) return false;
  return fileAt(path).offered;
}

std::string DesktopEntries::identifierOf(const std::string& path) const {
  refresh();
  const auto identifier = identifierOfPath_.find(path);
  return identifier == identifierOfPath_.end() ? stemOfPath(path) : identifier->second;
}

std::optional<std::string> DesktopEntries::withIdentifier(std::string_view identifier) const {
  refresh();
  const auto path = pathOfIdentifier_.find(std::string(identifier));
  if (path == pathOfIdentifier_.end()) return std::nullopt;
  const auto entry = entryAt(path->second);
  if (!entry || entry->hidden) return std::nullopt;
  return path->second;
}

std::optional<std::string> DesktopEntries::withProgram(const std::string& program) const {
  refresh();
  indexPrograms();
  if (program.find('/') != std::string::npos) {
    const auto byPath = pathOfProgram_.find(resolved(program));
    if (byPath != pathOfProgram_.end()) return byPath->second;
  }
  const auto byName = pathOfProgramName_.find(lastPathComponent(program));
  if (byName == pathOfProgramName_.end()) return std::nullopt;
  return byName->second;
}

std::optional<std::string> DesktopEntries::withWindowClass(std::string_view windowClass) const {
  refresh();
  indexPrograms();
  const auto path = pathOfWindowClass_.find(std::string(windowClass));
  if (path == pathOfWindowClass_.end()) return std::nullopt;
  return path->second;
}

void DesktopEntries::refresh() const {
  const Instant now = std::chrono::steady_clock::now();
  if (scanChecked_ && now - *scanChecked_ < trust_) return;
  const bool isCurrent =
      scanChecked_ && std::all_of(scannedFolders_.begin(), scannedFolders_.end(), [](const auto& folder) {
        return Status::of(folder.first) == folder.second;
      });
  if (!isCurrent) scan();
  scanChecked_ = now;
}

void DesktopEntries::scan() const {
  scannedFolders_.clear();
  pathOfIdentifier_.clear();
  identifierOfPath_.clear();
  pathsInEffect_.clear();
  programsIndexed_ = false;
  for (const std::string& folder : folders_)
    scanFolder(folder, "", 0);
  std::erase_if(files_, [this](const auto& file) { return !identifierOfPath_.contains(file.first); });
}

void DesktopEntries::scanFolder(const std::string& folder, const std::string& prefix, int depth) const {
  // The status is taken first: what changes during the listing is then seen at the next check.
  scannedFolders_.emplace_back(folder, Status::of(folder));
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.c_str()));
  if (!directory) return;
  std::vector<std::string> names;
  while (const dirent* entry = readdir(directory.get())) {
    if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    const std::string path = folder + "/" + name;
    if (name.ends_with(kSuffix)) {
      if (identifierOfPath_.size() >= kMaximumEntries) return;
      const std::string identifier = prefix + name.substr(0, name.size() - kSuffix.size());
      identifierOfPath_.emplace(path, identifier);
      if (pathOfIdentifier_.emplace(identifier, path).second) pathsInEffect_.push_back(path);
    } else if (depth < kMaximumDepth) {
      struct stat status;
      if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        scanFolder(path, prefix + name + "-", depth + 1);
    }
  }
}

void DesktopEntries::indexPrograms() const {
  if (programsIndexed_) return;
  programsIndexed_ = true;
  pathOfProgram_.clear();
  pathOfProgramName_.clear();
  pathOfWindowClass_.clear();

  struct Candidate {
    bool offered;
    std::size_t words;
    std::string path;
    std::optional<std::string> program;
    std::string windowClass;
  };
  std::vector<Candidate> candidates;
  for (const std::string& path : pathsInEffect_) {
    const File& file = fileAt(path);
    if (!file.entry || file.entry->hidden) continue;
    const auto words = splitCommandLine(file.entry->exec);
    if (!words) continue;
    const auto program = programBehind(*words);
    Candidate candidate{file.offered, words->size(), path, std::nullopt, file.entry->startupWmClass};
    if (program && program->kind == Program::Kind::executable) candidate.program = program->name;
    candidates.push_back(std::move(candidate));
  }
  std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    if (a.offered != b.offered) return a.offered;
    return a.words < b.words;
  });
  for (const Candidate& candidate : candidates) {
    if (!candidate.windowClass.empty()) pathOfWindowClass_.emplace(candidate.windowClass, candidate.path);
    if (!candidate.program) continue;
    const std::string found = environment_.findProgram(*candidate.program);
    const std::string program = resolved(found.empty() ? *candidate.program : found);
    pathOfProgram_.emplace(program, candidate.path);
    pathOfProgramName_.emplace(lastPathComponent(*candidate.program), candidate.path);
  }
}

}  // namespace harbor
