#include "disk/TWDiskUtility.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "base/FileUrl.h"
#include "disk/FolderMeasure.h"
#include "disk/InfoPlist.h"
#include "disk/ItemFacts.h"

namespace harbor {
namespace {

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::uint64_t> bytesUnlessFailed(const RemovalOutcome& outcome) {
  if (outcome.error != 0) return std::nullopt;
  return outcome.bytes;
}

}  // namespace

std::uint64_t TWDiskUtility::sizeOfItem(const std::string& path) {
  const auto facts = factsOfItem(AT_FDCWD, path.c_str());
  return facts ? facts->bytes : 0;
}

std::int64_t TWDiskUtility::sizeOfFolder(const std::string& path) {
  return static_cast<std::int64_t>(measureFolder(path).bytes);
}

void TWDiskUtility::deleteItem(const std::string& path) {
  removal_.removeItem(path);
}

std::optional<std::uint64_t> TWDiskUtility::emptyFolder(const FolderWay& way) {
  return bytesUnlessFailed(removal_.emptyFolder(way));
}

std::uint64_t TWDiskUtility::deleteByPrefix(const std::string& folder, std::string_view text) {
  return removal_
      .removeEntries(folder,
                     [this, wanted = text_.lowercased(text)](std::string_view name) {
                       return text_.lowercased(name).starts_with(wanted);
                     })
      .bytes;
}

std::uint64_t TWDiskUtility::deleteByPartOfName(const std::string& folder, std::string_view text) {
  return removal_
      .removeEntries(folder,
                     [this, wanted = text_.lowercased(text)](std::string_view name) {
                       return text_.lowercased(name).find(wanted) != std::string::npos;
                     })
      .bytes;
}

std::optional<std::uint64_t> TWDiskUtility::deleteByExtension(const FolderWay& folder,
                                                              const std::vector<std::string>& extensions) {
  return bytesUnlessFailed(removal_.removeMatches(
      folder, [&extensions](std::string_view name) { return hasOneOfExtensions(name, extensions); }));
}

std::optional<std::string> TWDiskUtility::bundleIdentifierOfApplication(std::string_view name) const {
  const auto path = workspace_.fullPathForApplication(name);
  if (!path) return std::nullopt;
  if (!bundles_.ownInformation(*path) && !isFolder(*path)) return application_.bundleIdentifier();
  return identifierOfBundle(*path);
}

std::optional<std::string> TWDiskUtility::identifierOfBundle(const std::string& path) const {
  return informationOfBundle(path, "CFBundleIdentifier");
}

std::optional<std::string> TWDiskUtility::displayNameOfBundle(const std::string& path) const {
  return informationOfBundle(path, "CFBundleDisplayName");
}

std::optional<std::string> TWDiskUtility::nameOfBundle(const std::string& path) const {
  return informationOfBundle(path, "CFBundleName");
}

std::optional<std::string> TWDiskUtility::executableOfBundle(const std::string& path) const {
  return informationOfBundle(path, "CFBundleExecutable");
}

std::optional<std::string> TWDiskUtility::informationOfBundle(const std::string& path,
                                                              const char* key) const {
  return textOfInformation(harbor::informationOfBundle(path, bundles_, propertyLists_), key);
}

}  // namespace harbor
