// Folders of desktop entries as a user's environment names them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/linux/XdgEnvironment.h"
#include "support/TemporaryFolder.h"

namespace harbor {

class DesktopEntriesFixture : public testing::Test {
 protected:
  DesktopEntriesFixture() {
    environment.dataHome = folder.path("home");
    environment.dataDirectories = {folder.path("local"), folder.path("usr")};
    environment.configHome = folder.path("config");
    environment.searchPath = {folder.path("bin")};
    environment.locale = "de_DE.UTF-8";
  }

  std::string add(const std::string& place, const std::string& name, const std::string& keys = {}) {
    return folder.makeFile(place, "[Desktop Entry]\nType=Application\nName=" + name +
                                      "\nExec=" + (keys.empty() ? "tool" : keys) + "\n");
  }

  TemporaryFolder folder;
  XdgEnvironment environment;
};

}  // namespace harbor
