// The Trash of the freedesktop rules: items are moved, never copied and never removed for good. Each trash
// has a folder "files" with the items and a folder "info" that says where each came from.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace harbor {

class FreedesktopTrash {
 public:
  // `dataHome`: the folder that holds the home trash ("Trash"); made when missing. `user`: whose trash
  // folders are used on other volumes. `inBackground`: runs a task on a thread of its own; folders are
  // measured there.
  FreedesktopTrash(std::string dataHome, uid_t user, std::function<void(std::function<void()>)> inBackground);

  // Moves the item, itself when it is a symbolic link, to the home trash where that lies on the same file
  // system, else to the trash of the item's volume. Gives the path in the trash; nothing when the item stays
  // where it was.
  std::optional<std::string> trash(const std::string& path);

 private:
  enum class Attempt { moved, otherFileSystem, failed };
  struct Item;

  std::optional<std::string> trashInto(const std::string& trashFolder, const Item& item,
                                       const std::string& recordedPath, Attempt& attempt);
  void recordDirectorySize(const std::string& trashFolder, const std::string& name);

  std::string homeTrash_;
  uid_t user_;
  std::function<void(std::function<void()>)> inBackground_;
  // The background tasks rewrite one file; shared with those that outlive the trash.
  std::shared_ptr<std::mutex> sizesLock_ = std::make_shared<std::mutex>();
};

}  // namespace harbor
