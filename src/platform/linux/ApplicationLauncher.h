// Starts applications as the desktop does, without a shell in between, and finds the one that opens a file or
// an address.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileUrl.h"
#include "platform/linux/DesktopEntries.h"

namespace harbor {

class ApplicationLauncher {
 public:
  explicit ApplicationLauncher(const DesktopEntries& entries) : entries_(entries) {}

  // A desktop entry of an application is started; anything else is opened by the user's application for its
  // type. False when there is none, or it could not be started.
  bool openFile(const FileUrl& url) const;
  bool openUrl(std::string_view url) const;

  // Asks the session's file manager to show the files selected; without one that can, opens the folder that
  // the first lies in. Does not wait for either.
  void reveal(const std::vector<FileUrl>& urls) const;

  // The path of the entry that opens such a type, by the user's and then the system's associations; nothing
  // when no application is known for it.
  std::optional<std::string> defaultApplication(std::string_view mimeType) const;

 private:
  struct Target {
    std::string file;  // both empty: nothing is opened
    std::string url;
  };

  bool start(const std::string& entryPath, const Target& target) const;
  bool activate(const std::string& entryPath, const Target& target) const;
  std::optional<std::vector<std::string>> inTerminal(std::vector<std::string> arguments) const;

  const DesktopEntries& entries_;
};

}  // namespace harbor
