// Packages that a test makes up.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/SoftwarePackages.h"

namespace harbor {

class MemorySoftwarePackages : public SoftwarePackages {
 public:
  std::optional<PackageOwner> ownerOf(const std::string& path) const override {
    const auto owner = owners.find(path);
    return owner == owners.end() ? std::nullopt : std::optional(owner->second);
  }
  bool canShowSoftware() const override { return hasSoftwareCentre; }
  bool showSoftware(const std::string& applicationPath) override {
    shown.push_back(applicationPath);
    return hasSoftwareCentre;
  }

  std::map<std::string, PackageOwner> owners;  // by path
  bool hasSoftwareCentre = true;
  std::vector<std::string> shown;  // application paths
};

}  // namespace harbor
