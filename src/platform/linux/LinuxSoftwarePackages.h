// Software as Debian, Flatpak and Snap install it, and the desktop's program for managing it.
#pragma once

#include <string>

#include "platform/SoftwarePackages.h"
#include "platform/linux/ApplicationLauncher.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/DpkgFiles.h"

namespace harbor {

class LinuxSoftwarePackages : public SoftwarePackages {
 public:
  // `root` as in DpkgFiles.
  explicit LinuxSoftwarePackages(const DesktopEntries& entries, std::string root = {});

  std::optional<PackageOwner> ownerOf(const std::string& path) const override;
  // The program that opens "appstream:" addresses, else a well-known software centre.
  bool canShowSoftware() const override;
  bool showSoftware(const std::string& applicationPath) override;

  // The name by which software centres know an application: that of the description which names its desktop
  // entry. Nothing where the entry's identifier cannot stand in an address.
  std::optional<std::string> componentOf(const std::string& applicationPath) const;

 private:
  std::optional<std::string> centre() const;

  const DesktopEntries& entries_;
  ApplicationLauncher launcher_;
  DpkgFiles dpkg_;
  std::string flatpakOfUser_;
};

}  // namespace harbor
