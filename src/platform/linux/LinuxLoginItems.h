// Launch at login through an entry in the user's autostart folder, which points at the login helper. The
// entry belongs to the user: what was changed in it is kept, and what forbids it is respected.
#pragma once

#include <functional>
#include <string>

#include "platform/LoginItems.h"

namespace harbor {

class LinuxLoginItems : public LoginItems {
 public:
  struct Programs {
    std::string launcher;  // absolute paths
    std::string program;   // what the launcher is to start
  };

  // `configHome` is $XDG_CONFIG_HOME; empty: there is none, and nothing can be registered. `whenForbidden` is
  // called when the item is to be enabled but the user has disabled the entry by the desktop's own means.
  LinuxLoginItems(std::string configHome, Programs programs, std::function<void()> whenForbidden);

  // Enabling writes the entry where there is none; one that is there keeps what the user changed in it. It is
  // not enabled against Hidden=true or X-GNOME-Autostart-enabled=false: false then. Disabling deletes the
  // entry, or hides it when the user has changed it, to be shown again by enabling.
  bool setEnabled(std::string_view bundleIdentifier, State state) override;

 private:
  std::string entryPath(std::string_view bundleIdentifier) const;
  bool enable(const std::string& path) const;
  bool disable(const std::string& path) const;
  std::string newEntry() const;

  std::string configHome_;
  Programs programs_;
  std::function<void()> whenForbidden_;
};

}  // namespace harbor
