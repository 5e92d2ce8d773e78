// What an application is on disk: a bundle folder, or what stands for one on the platform.
#pragma once

#include <optional>
#include <string>

namespace harbor {

class ApplicationBundles {
 public:
  virtual ~ApplicationBundles() = default;

  // Whether the path is an application that is offered to the user. Such a path is never entered.
  virtual bool isApplication(const std::string& path) const = 0;

  // The name for the user, in the user's language; the file's name without its extension where the
  // application gives none or is gone.
  virtual std::string displayName(const std::string& path) const = 0;

  // The key by which lists of applications are sorted, ascending, as plain text.
  virtual std::string sortKey(const std::string& path) const = 0;
};

}  // namespace harbor
