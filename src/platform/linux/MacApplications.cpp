#include "platform/linux/MacApplications.h"

#include <algorithm>

namespace harbor {
namespace {

template <typename Matches>
const MacApplication* find(std::string_view text, Matches matches) {
  if (text.empty()) return nullptr;
  const auto row = std::find_if(std::begin(kMacApplications), std::end(kMacApplications), matches);
  return row == std::end(kMacApplications) ? nullptr : row;
}

}  // namespace

const MacApplication* macApplicationWithIdentifier(std::string_view bundleIdentifier) {
  return find(bundleIdentifier,
              [&](const MacApplication& row) { return row.bundleIdentifier == bundleIdentifier; });
}

const MacApplication* macApplicationStandingInFor(std::string_view bundleIdentifier) {
  return find(bundleIdentifier,
              [&](const MacApplication& row) { return row.standsInFor == bundleIdentifier; });
}

const MacApplication* macApplicationWithDesktopIdentifier(std::string_view identifier) {
  return find(identifier, [&](const MacApplication& row) {
    return std::count(row.desktopIdentifiers.begin(), row.desktopIdentifiers.end(), identifier) > 0;
  });
}

const MacApplication* macApplicationWithProgram(std::string_view fileName) {
  return find(fileName, [&](const MacApplication& row) {
    return std::count(row.programs.begin(), row.programs.end(), fileName) > 0;
  });
}

const MacApplication* macApplicationWithBundleName(std::string_view bundleName) {
  if (bundleName.ends_with(".app")) bundleName.remove_suffix(4);
  return find(bundleName, [&](const MacApplication& row) { return row.bundleName == bundleName; });
}

}  // namespace harbor
