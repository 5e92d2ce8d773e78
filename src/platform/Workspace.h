// The running desktop session: which applications run and which is in front, opening things, sleep and wake.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileUrl.h"
#include "base/Subscription.h"
#include "platform/Application.h"

namespace harbor {

struct RunningApplication {
  std::int32_t processIdentifier = 0;
  std::optional<std::string> bundleIdentifier;
  std::optional<FileUrl> bundleUrl;  // the application bundle, or what stands for one on the platform
  std::string name;                  // for display
  ActivationPolicy activationPolicy = ActivationPolicy::regular;
};

class Workspace {
 public:
  virtual ~Workspace() = default;

  virtual std::vector<RunningApplication> runningApplications() const = 0;
  virtual std::optional<RunningApplication> frontmostApplication() const = 0;
  // Nothing when the process is no application or does not exist.
  virtual std::optional<RunningApplication> runningApplication(std::int32_t processIdentifier) const = 0;

  // Whether an application with this bundle identifier runs; a platform whose applications carry other
  // identifiers knows which of its own stand for it.
  virtual bool isRunning(std::string_view bundleIdentifier) const = 0;

  // The path of the installed application of that name; nothing when there is none.
  virtual std::optional<std::string> fullPathForApplication(std::string_view name) const = 0;

  // Opens a file, folder or application as the desktop would; false when nothing could be started. The Mac's
  // screen saver, "/System/Library/CoreServices/ScreenSaverEngine.app", stands for the desktop's own.
  virtual bool openFile(const FileUrl& url) = 0;
  // Opens a web address or another application's URL; false when nothing could be started.
  virtual bool openUrl(std::string_view url) = 0;
  // Shows the files selected in a file viewer window; where that cannot be had, the folder that the first
  // lies in.
  virtual void reveal(const std::vector<FileUrl>& urls) = 0;

  // The machine is about to sleep; the handler has run to its end before it does, where the platform allows a
  // delay.
  virtual Subscription onWillSleep(std::function<void()> handler) = 0;
  virtual Subscription onDidWake(std::function<void()> handler) = 0;
  // The user went to another space (workspace), or the space shows another wallpaper.
  virtual Subscription onActiveSpaceDidChange(std::function<void()> handler) = 0;
};

}  // namespace harbor
