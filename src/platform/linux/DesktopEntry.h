// One application's desktop entry as a value. Reading is total: whatever the bytes are, the result is an
// entry or nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/KeyFile.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

struct DesktopEntry {
  std::string name;  // in the user's language, on one line; empty when the entry gives none
  std::string untranslatedName;
  std::string exec;  // the command line, its escapes resolved; empty for an entry that D-Bus starts
  std::string tryExec;
  std::string workingDirectory;
  std::string icon;
  std::string startupWmClass;
  std::string flatpak;  // the id of the Flatpak that it comes with; empty: none
  std::string snap;     // the name of the snap that it comes with; empty: none
  std::vector<std::string> onlyShowIn;
  std::vector<std::string> notShowIn;
  bool limitsDesktops = false;  // whether OnlyShowIn stands at all
  bool hidden = false;          // the user has deleted it
  bool noDisplay = false;
  bool terminal = false;
  bool dbusActivatable = false;

  // Nothing when the file is no desktop entry of type Application.
  static std::optional<DesktopEntry> from(const KeyFile& file, const XdgEnvironment& environment);
  static std::optional<DesktopEntry> parse(std::string_view bytes, const XdgEnvironment& environment);
  static std::optional<DesktopEntry> read(const std::string& path, const XdgEnvironment& environment);

  // Whether the desktop lists it: not hidden, meant for this desktop, its program installed.
  bool isOffered(const XdgEnvironment& environment) const;
};

}  // namespace harbor
