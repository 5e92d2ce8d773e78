// The session by its window manager's properties, the process table, the desktop entries and logind. Without
// an X server there is no front application and no window, and the rest works.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>

#include "platform/Workspace.h"
#include "platform/linux/ApplicationLauncher.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/MacApplications.h"
#include "platform/linux/ProcessInformation.h"
#include "platform/linux/SleepMonitor.h"
#include "platform/linux/WindowHints.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class LinuxWorkspace : public Workspace {
 public:
  // Takes the X server's properties over a connection of its own. `startScreenSaver` starts the desktop's
  // screen saver and tells whether it could; empty where there is none.
  explicit LinuxWorkspace(const DesktopEntries& entries, std::function<bool()> startScreenSaver = {});

  // Every application with a window, and every program of this user that has a desktop entry or is the
  // counterpart of a Mac application; each once. The bundle identifier is that of the Mac application where
  // there is one, else the desktop entry's. The bundle URL is the desktop entry, else the program file.
  std::vector<RunningApplication> runningApplications() const override;
  std::optional<RunningApplication> frontmostApplication() const override;
  // An answer may be two seconds old as long as no window came or went and the desktop stayed the same.
  std::optional<RunningApplication> runningApplication(std::int32_t processIdentifier) const override;

  // By a Mac bundle identifier or a desktop entry's. A name on the session bus counts as the identifier of
  // who owns it.
  bool isRunning(std::string_view bundleIdentifier) const override;

  std::optional<std::string> fullPathForApplication(std::string_view name) const override;

  bool openFile(const FileUrl& url) override;
  // An address that nothing here opens is told to the user in a notification.
  bool openUrl(std::string_view url) override;
  void reveal(const std::vector<FileUrl>& urls) override { launcher_.reveal(urls); }

  Subscription onWillSleep(std::function<void()> handler) override;
  Subscription onDidWake(std::function<void()> handler) override;
  Subscription onActiveSpaceDidChange(std::function<void()> handler) override;

 private:
  void forgetAnswersWithTheWindows();
  std::optional<RunningApplication> lookUp(std::int32_t processIdentifier) const;
  std::optional<RunningApplication> applicationOf(const WindowHints& hints) const;
  RunningApplication applicationOf(const std::optional<std::string>& entry,
                                   const std::optional<ProcessInformation>& process,
                                   const WindowHints& hints) const;
  std::optional<std::string> entryOf(const WindowHints& hints) const;
  std::optional<std::string> entryOf(const ProcessInformation& process) const;
  std::optional<std::string> entryOfLaunch(const ProcessInformation& process) const;
  std::optional<std::string> entryOfMac(const MacApplication& application) const;

  const DesktopEntries& entries_;
  ApplicationLauncher launcher_;
  std::function<bool()> startScreenSaver_;
  std::unique_ptr<XcbConnection> connection_;
  std::unique_ptr<WindowHintsReader> windows_;
  SleepMonitor sleep_;
  // Focus mode asks about the same process twice a second; a look at all windows is too dear for that.
  mutable std::map<std::int32_t, std::optional<RunningApplication>> answers_;
  mutable std::chrono::steady_clock::time_point answersSince_;
  Subscription windowListChanges_;
};

}  // namespace harbor
