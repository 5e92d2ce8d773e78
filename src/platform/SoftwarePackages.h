// The system's own management of installed software: which package a file came with, and the program in which
// the user can remove it.
#pragma once

#include <optional>
#include <string>

namespace harbor {

struct PackageOwner {
  enum class Kind { package, flatpak, snap };
  Kind kind = Kind::package;
  std::string name;

  friend bool operator==(const PackageOwner&, const PackageOwner&) = default;
};

class SoftwarePackages {
 public:
  virtual ~SoftwarePackages() = default;

  // The package that the item at the path came with; nothing for an item of no package. Called on any thread.
  virtual std::optional<PackageOwner> ownerOf(const std::string& path) const = 0;

  // Whether there is a program that showSoftware would open.
  virtual bool canShowSoftware() const = 0;
  // Opens the software centre, at the application's page where that is possible. False when none was started.
  virtual bool showSoftware(const std::string& applicationPath) = 0;
};

}  // namespace harbor
