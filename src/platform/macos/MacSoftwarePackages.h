// Software packages on the Mac: an application is its bundle, and no bundle belongs to anything else.
#pragma once

#include "platform/SoftwarePackages.h"

namespace harbor {

class MacSoftwarePackages : public SoftwarePackages {
 public:
  std::optional<PackageOwner> ownerOf(const std::string&) const override { return std::nullopt; }
  bool canShowSoftware() const override { return false; }
  bool showSoftware(const std::string&) override { return false; }
};

}  // namespace harbor
