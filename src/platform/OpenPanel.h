// The modal panel in which the user picks one existing folder.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/FileUrl.h"

namespace harbor {

struct OpenPanelRequest {
  std::string title;
  std::string message;  // plain text, shown inside the panel
  FileUrl directory;    // what the panel shows first
  // Whether an item may be picked; the Open button is enabled for no other.
  std::function<bool(const FileUrl& url)> shouldEnable;
};

class OpenPanel {
 public:
  virtual ~OpenPanel() = default;

  // Shows the panel and blocks the caller until it is closed, while timers go on. The folder that was picked,
  // as the user named it; nothing when the user cancelled.
  virtual std::optional<FileUrl> run(const OpenPanelRequest& request) = 0;
};

}  // namespace harbor
