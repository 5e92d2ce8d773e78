// What the desktop's base-directory rules take from the environment, as a value that a test can make up.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace harbor {

struct XdgEnvironment {
  std::string dataHome;                      // "/home/ann/.local/share"; empty: none
  std::vector<std::string> dataDirectories;  // in order of precedence, behind dataHome
  std::string configHome;
  std::vector<std::string> configDirectories;
  std::vector<std::string> searchPath;       // where programs are looked up
  std::vector<std::string> currentDesktops;  // "XFCE", "GNOME", …
  std::string locale;                        // "de_AT.UTF-8@euro"; empty or "C": no language
  std::string systemApplications = "/Applications";

  // The rules' defaults stand in for what is not set; relative paths are ignored.
  static XdgEnvironment fromProcess();

  // The suffixes under which a localised key is looked up, the best one first, ended by none ("").
  std::vector<std::string> localeSuffixes() const;

  // The "applications" folders that desktop entries live in, the one that takes precedence first.
  std::vector<std::string> applicationsFolders() const;

  // The absolute path of a program named as in a command line; empty when there is no such executable.
  std::string findProgram(std::string_view name) const;
};

}  // namespace harbor
