// Which Debian package a file came with, read from the lists that dpkg keeps of what it installed.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace harbor {

class DpkgFiles {
 public:
  // `root` stands in front of all that is read and asked about; empty for the system's own.
  explicit DpkgFiles(std::string root = {});

  // The package that the file or folder at that absolute path came with, whatever links lead to its folder; a
  // folder that several packages share is one of theirs. A file that stands where another package's file was
  // diverted from is of the package that asked for it. Nothing for what no package brought. On any thread.
  std::optional<std::string> packageOf(const std::string& path) const;

 private:
  struct Diversion {
    std::string original;
    std::string divertedTo;
    std::string package;  // the one that asked for it; ":" for the administrator
  };
  using Accepts = std::function<bool(std::string_view package)>;

  std::vector<std::string> spellingsOf(const std::string& path) const;
  std::vector<Diversion> diversions() const;
  std::optional<std::string> searchLists(const std::vector<std::string>& spellings,
                                         const Accepts& accepts) const;
  void forgetAfterChange() const;

  std::string root_;
  std::string folder_;
  mutable std::mutex mutex_;
  // Folders that stand in no list, so that nothing below them does: true until a package comes or goes.
  mutable std::unordered_set<std::string> foreignFolders_;
  mutable timespec changed_{};
};

}  // namespace harbor
