#import "platform/macos/MacApplicationBundles.h"

#import "platform/macos/MacValues.h"

namespace harbor {

bool MacApplicationBundles::isApplication(const std::string& path) const {
  return pathExtension(path) == "app";
}

std::optional<std::string> MacApplicationBundles::localizedDisplayName(const std::string& path) const {
  NSBundle* const bundle = [NSBundle bundleWithURL:nsUrl({path, true})];
  const id name = bundle.localizedInfoDictionary[@"CFBundleDisplayName"];
  return [name isKindOfClass:NSString.class] ? std::optional(textOf(name)) : std::nullopt;
}

std::string MacApplicationBundles::displayName(const std::string& path) const {
  return localizedDisplayName(path).value_or(stemOfPath(path));
}

std::string MacApplicationBundles::sortKey(const std::string& path) const {
  return text_.lowercased(lastPathComponent(path));
}

std::optional<PropertyList> MacApplicationBundles::ownInformation(const std::string&) const {
  return std::nullopt;
}

std::vector<std::string> MacApplicationBundles::wholeNames(const std::string&) const {
  return {};
}

std::vector<RelatedPlace> MacApplicationBundles::relatedPlaces(const std::string&) const {
  return {};
}

bool MacApplicationBundles::isBundleNamed(const std::string& path, std::string_view bundleName) const {
  if (lastPathComponent(path) != bundleName || !isApplication(path)) return false;
  NSString* const file = nsString(path);
  BOOL isDirectory = NO;
  return file && [NSFileManager.defaultManager fileExistsAtPath:file isDirectory:&isDirectory] && isDirectory;
}

}  // namespace harbor
