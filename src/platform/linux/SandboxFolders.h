// The folders in the home folder that programs in a sandbox (Flatpaks and snaps) may write. What is found in
// one of them decides nothing about what lies outside of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace harbor {

class SandboxFolders {
 public:
  // The folder that holds one folder for each sandbox, below the home folder.
  static constexpr const char* kOfFlatpaks = ".var/app";
  static constexpr const char* kOfSnaps = "snap";

  // As they are now. Without a home folder there are none.
  explicit SandboxFolders(const std::string& homeFolder);

  // The folder of the one sandbox that may write the item at the path, in which no component is a link;
  // nullopt when no sandbox may.
  std::optional<std::string> holding(const std::string& path) const;

  // Where links are not followed: whoever put them there may have been a sandbox.
  const std::vector<std::string>& untrusted() const { return untrusted_; }

 private:
  std::vector<std::string> folders_;    // each holds one folder for each sandbox
  std::vector<std::string> elsewhere_;  // folders of sandboxes that the user has moved
  std::vector<std::string> untrusted_;
};

}  // namespace harbor
