// Which processes run an installed browser. A program that merely is called like one, as those are that come
// with test tools, is none.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/MacApplications.h"
#include "platform/linux/ProcessInformation.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

class BrowserPrograms {
 public:
  explicit BrowserPrograms(XdgEnvironment environment) : environment_(std::move(environment)) {}

  // Whether a desktop entry of the application is installed.
  bool isInstalled(std::string_view bundleIdentifier) const;

  // Whether the process is the installed application: in its Flatpak or snap, or the program of its desktop
  // entry, or one of the application's file names beside that program. Where that program and the process
  // both are the system's, their folders may differ: it is a script that starts the other.
  bool isRunIn(const ProcessInformation& process, const MacApplication& application) const;

 private:
  std::vector<std::string> programsOf(const MacApplication& application) const;

  XdgEnvironment environment_;
};

// The same by the paths: whether `executable` is what an entry with this program starts. Both are without
// links.
bool isStartedBy(const std::string& executable, const std::string& program,
                 const MacApplication& application);

}  // namespace harbor
