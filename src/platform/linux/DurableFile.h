// A private file that is only ever replaced as a whole: whenever the process or the machine stops, its path
// names either the complete old contents or the complete new ones.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/PropertyList.h"

namespace harbor {

class DurableFile {
 public:
  enum class ReadResult {
    complete,
    missing,
    tooLarge,    // a regular file of more than the limit; nothing of it was read
    unreadable,  // no permission, no regular file, a loop of links, an input error
  };
  struct Contents {
    ReadResult result = ReadResult::unreadable;
    Data bytes;  // empty unless complete
  };
  // What tells whether the file is still the one that was seen before; the default stands for no file.
  struct Stamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;
    friend bool operator==(const Stamp&, const Stamp&) = default;
  };

  // When the path is a symbolic link, the file is what it leads to, and the link stays.
  explicit DurableFile(std::string path) : path_(std::move(path)) {}

  // Reads the file without ever waiting for another process (a pipe or a device is "unreadable"). A file that
  // other users could read is made private on the way.
  Contents read(std::uint64_t limitInBytes) const;

  // Replaces the contents through a temporary file in the same folder, with mode 0600: one fsync, one rename.
  // Missing folders are made with mode 0700. False when the new contents could not be made durable; the old
  // ones are then still there.
  bool replace(const Data& bytes) const;

  // Moves the file, as it is but with mode 0600, to a new name beside it that no file had, and returns that
  // name's path; nothing when the file could not be moved.
  std::optional<std::string> setAside() const;

  // Deletes the temporary files that processes left here which ended while replacing the contents.
  void removeLeftovers() const;

  // Of the file as it is now; nothing when that cannot be told.
  std::optional<Stamp> stamp() const;

 private:
  // The path behind all links; nothing when they form a loop or cannot be read.
  std::optional<std::string> target() const;

  std::string path_;
};

}  // namespace harbor
