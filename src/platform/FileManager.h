// The places that the platform knows by purpose.
#pragma once

#include <vector>

#include "base/FileUrl.h"

namespace harbor {

class FileManager {
 public:
  // Local: what the machine's users install. System: what comes with the system.
  enum class Domain { local, system };

  virtual ~FileManager() = default;

  // The folders that applications are installed in, the one that takes precedence first; none is created.
  // Empty when the platform cannot locate any.
  virtual std::vector<FileUrl> applicationsFolders(Domain domain) const = 0;
};

}  // namespace harbor
