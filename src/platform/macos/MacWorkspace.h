// The shared NSWorkspace.
#pragma once

#include "platform/Workspace.h"

namespace harbor {

class MacWorkspace : public Workspace {
 public:
  std::vector<RunningApplication> runningApplications() const override;
  std::optional<RunningApplication> frontmostApplication() const override;
  std::optional<RunningApplication> runningApplication(std::int32_t processIdentifier) const override;
  bool isRunning(std::string_view bundleIdentifier) const override;
  std::optional<std::string> fullPathForApplication(std::string_view name) const override;
  bool openFile(const FileUrl& url) override;
  bool openUrl(std::string_view url) override;
  void reveal(const std::vector<FileUrl>& urls) override;
  Subscription onWillSleep(std::function<void()> handler) override;
  Subscription onDidWake(std::function<void()> handler) override;
  Subscription onActiveSpaceDidChange(std::function<void()> handler) override;
};

}  // namespace harbor
