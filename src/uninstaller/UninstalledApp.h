// What one review of an application left behind: the application and the files found to belong to it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/FileUrl.h"
#include "platform/PropertyListCoder.h"

namespace harbor {

// One related file or folder.
struct AppRelatedData {
  std::optional<FileUrl> filePath;
  std::uint64_t fileSize = 0;  // bytes, a folder's with everything below it; 0 until measured
  bool isSelected = false;     // chosen for deletion

  friend bool operator==(const AppRelatedData&, const AppRelatedData&) = default;
};

// One application. Shared by the history and the windows that show it.
struct UninstalledApp {
  std::optional<FileUrl> appName;              // the application's URL, despite the name
  std::vector<AppRelatedData> appRelatedData;  // in search order; the application itself is the first
};

using UninstalledApps = std::vector<std::shared_ptr<UninstalledApp>>;

// The list as an array of dictionaries keyed by the fields' names; an absent URL is left out.
std::optional<Data> encodeUninstalledApps(const PropertyListCoder& coder, const UninstalledApps& apps);

// Strict about types and required fields: one wrong value anywhere fails the whole list. Unknown keys are
// ignored.
std::optional<UninstalledApps> decodeUninstalledApps(const PropertyListCoder& coder, const Data& bytes);

}  // namespace harbor
