// The desktop entries that are installed, by path, by identifier, and by what runs or shows them. What was
// read is kept as long as the files' status says that it still holds, so that asking about hundreds of
// entries at each menu costs little. Main thread only.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

class DesktopEntries {
 public:
  // What has been looked at on disk is not looked at again within `trust`.
  explicit DesktopEntries(XdgEnvironment environment,
                          std::chrono::milliseconds trust = std::chrono::milliseconds(1000));

  const XdgEnvironment& environment() const { return environment_; }

  // The entry in that file, null when there is none. The same object as long as the file has not changed.
  std::shared_ptr<const DesktopEntry> entryAt(const std::string& path) const;

  // Whether the file is an entry that the desktop lists: offered, and not shadowed by a file of the same
  // identifier in a folder of higher precedence.
  bool isOffered(const std::string& path) const;

  // "org.gnome.Terminal" for the path of its entry: the place below its applications folder, slashes as
  // hyphens, without ".desktop".
  std::string identifierOf(const std::string& path) const;

  // The three look-ups give the path of an entry in effect (neither shadowed nor hidden); nothing when there
  // is none.
  std::optional<std::string> withIdentifier(std::string_view identifier) const;
  // By the program that the command line is really about: a program's path, else its file name. Entries that
  // are offered come first, then those with the shorter command line.
  std::optional<std::string> withProgram(const std::string& program) const;
  // By the WM_CLASS that the entry names for its windows; letter case counts.
  std::optional<std::string> withWindowClass(std::string_view windowClass) const;

 private:
  using Instant = std::chrono::steady_clock::time_point;

  // What tells that a file or folder is as it was.
  struct Status {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec changed{};

    static std::optional<Status> of(const std::string& path);
    bool operator==(const Status& other) const;
  };
  struct File {
    std::optional<Status> status;
    Instant checked;
    std::shared_ptr<const DesktopEntry> entry;
    bool offered = false;
  };

  const File& fileAt(const std::string& path) const;
  void refresh() const;
  void scan() const;
  void scanFolder(const std::string& folder, const std::string& prefix, int depth) const;
  void indexPrograms() const;

  XdgEnvironment environment_;
  std::chrono::milliseconds trust_;
  std::vector<std::string> folders_;

  mutable std::optional<Instant> scanChecked_;
  mutable std::vector<std::pair<std::string, std::optional<Status>>> scannedFolders_;
  mutable std::unordered_map<std::string, std::string> pathOfIdentifier_;  // the one in effect
  mutable std::unordered_map<std::string, std::string> identifierOfPath_;
  mutable std::vector<std::string> pathsInEffect_;  // in order of precedence
  mutable bool programsIndexed_ = false;
  mutable std::unordered_map<std::string, std::string> pathOfProgram_;
  mutable std::unordered_map<std::string, std::string> pathOfProgramName_;
  mutable std::unordered_map<std::string, std::string> pathOfWindowClass_;
  mutable std::unordered_map<std::string, File> files_;
};

}  // namespace harbor
