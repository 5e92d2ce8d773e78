#include "disk/InfoPlist.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/FileDescriptor.h"

namespace harbor {
namespace {

// An Info.plist is some kilobytes; a file beyond this is something else.
constexpr off_t kLargestInfoFile = off_t{16} * 1024 * 1024;

std::optional<Data> readRegularFile(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if (status.st_size > kLargestInfoFile) return std::nullopt;
  Data bytes(static_cast<std::size_t>(status.st_size));
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

}  // namespace

std::optional<PropertyList> informationOfBundle(const std::string& path, const ApplicationBundles& bundles,
                                                const PropertyListCoder& propertyLists) {
  if (auto information = bundles.ownInformation(path)) return information;
  const auto bytes = readRegularFile(path + "/Contents/Info.plist");
  return bytes ? propertyLists.decode(*bytes) : std::nullopt;
}

std::optional<std::string> textOfInformation(const std::optional<PropertyList>& information,
                                             const char* key) {
  const PropertyList* value = information ? information->find(key) : nullptr;
  const auto* text = value ? value->as<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

}  // namespace harbor
