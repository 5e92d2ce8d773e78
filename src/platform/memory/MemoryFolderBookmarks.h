// Bookmarks whose data is the folder's path and the number of the folder that a test says is there: replacing
// the folder makes the data stale, removing it makes the data unresolvable.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/FolderBookmarks.h"

namespace harbor {

class MemoryFolderBookmarks : public FolderBookmarks {
 public:
  std::optional<Data> create(const FileUrl& url) override {
    if (failsToCreate) return std::nullopt;
    const std::string text = std::to_string(generations[url.path]) + ":" + url.path;
    return Data(text.begin(), text.end());
  }
  std::optional<Resolved> resolve(const Data& data) const override {
    const std::string text(data.begin(), data.end());
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) return std::nullopt;
    const std::string path = text.substr(colon + 1);
    if (gone.contains(path)) return std::nullopt;
    const auto generation = generations.find(path);
    const int current = generation == generations.end() ? 0 : generation->second;
    return Resolved{{path, true}, text.substr(0, colon) != std::to_string(current)};
  }
  bool startAccessing(const FileUrl& url) override {
    accessed.push_back(url);
    return true;
  }
  bool needsGrant(const FileUrl& folder) const override { return !needless.contains(folder.path); }
  bool confinesProgram() const override { return confines; }

  // Another folder now stands at the path.
  void replaceFolder(const std::string& path) { ++generations[path]; }

  std::map<std::string, int> generations;
  std::set<std::string> gone;
  std::set<std::string> needless;  // folders that need no grant
  std::vector<FileUrl> accessed;
  bool failsToCreate = false;
  bool confines = true;
};

}  // namespace harbor
