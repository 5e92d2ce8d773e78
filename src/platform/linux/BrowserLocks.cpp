#include "platform/linux/BrowserLocks.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <memory>
#include <optional>
#include <string_view>

#include "base/FileDescriptor.h"
#include "base/FileUrl.h"
#include "base/FolderPath.h"
#include "platform/linux/ProcessInformation.h"

namespace harbor {
namespace {

std::optional<std::string> linkText(const std::string& folder, const char* name) {
  std::array<char, PATH_MAX> text;
  const auto place = FolderPath::withoutLinks(folder);
  const ssize_t length = place ? ::readlinkat(place->folder.get(), name, text.data(), text.size()) : -1;
  if (length <= 0 || static_cast<std::size_t>(length) == text.size()) return std::nullopt;
  return std::string(text.data(), static_cast<std::size_t>(length));
}

std::optional<std::int32_t> numberOf(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number <= 0) return std::nullopt;
  return number;
}

// A process number is soon given to somebody else: only a program of the right name is the one that is meant.
bool isRunningAs(std::int32_t processIdentifier, std::string_view nameStart) {
  const auto process = ProcessInformation::of(processIdentifier);
  return process && lastPathComponent(process->executable).starts_with(nameStart);
}

// The process that holds a record lock on the file.
std::optional<std::int32_t> recordLockHolder(const std::string& folder, const char* name) {
  const auto place = FolderPath::withoutLinks(folder);
  if (!place) return std::nullopt;
  const FileDescriptor file(
      ::openat(place->folder.get(), name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  if (!file || ::fcntl(file.get(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return std::max<std::int32_t>(lock.l_pid, 0);
}

bool isAddressOfThisHost(const std::string& address) {
  in_addr wanted{};
  if (::inet_pton(AF_INET, address.c_str(), &wanted) != 1) return false;
  ifaddrs* list = nullptr;
  if (::getifaddrs(&list) != 0) return false;
  const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(list, ::freeifaddrs);
  if ((ntohl(wanted.s_addr) >> 24) == IN_LOOPBACKNET) return true;
  for (const ifaddrs* one = list; one; one = one->ifa_next) {
    if (!one->ifa_addr || one->ifa_addr->sa_family != AF_INET) continue;
    if (reinterpret_cast<const sockaddr_in*>(one->ifa_addr)->sin_addr.s_addr == wanted.s_addr) return true;
  }
  return false;
}

}  // namespace

std::optional<BrowserLock> lockOfFirefox(const std::string& profile) {
  if (const auto holder = recordLockHolder(profile, ".parentlock"))
    return BrowserLock{BrowserLock::Evidence::kernel, *holder};
  const auto text = linkText(profile, "lock");
  const std::size_t colon = text ? text->rfind(':') : std::string::npos;
  if (colon == std::string::npos) return std::nullopt;
  const std::string_view process = std::string_view(*text).substr(colon + 1);
  // The sign says that the record lock was taken too; nobody holds that any more.
  if (process.starts_with('+')) return std::nullopt;
  const auto number = numberOf(process);
  if (!number) return std::nullopt;
  if (!isAddressOfThisHost(text->substr(0, colon))) return BrowserLock{BrowserLock::Evidence::text, 0};
  if (!isRunningAs(*number, "firefox")) return std::nullopt;
  return BrowserLock{BrowserLock::Evidence::text, *number};
}

std::optional<BrowserLock> lockOfChrome(const std::string& userData, const std::string& flatpak) {
  const auto text = linkText(userData, "SingletonLock");
  const std::size_t hyphen = text ? text->rfind('-') : std::string::npos;
  if (hyphen == std::string::npos) return std::nullopt;
  const auto number = numberOf(std::string_view(*text).substr(hyphen + 1));
  if (!number) return std::nullopt;
  std::array<char, HOST_NAME_MAX + 1> host{};
  const bool isOfThisHost =
      ::gethostname(host.data(), host.size() - 1) == 0 && text->substr(0, hyphen) == host.data();
  if (!isOfThisHost) return BrowserLock{BrowserLock::Evidence::text, 0};
  if (isRunningAs(*number, "chrom")) return BrowserLock{BrowserLock::Evidence::text, *number};
  // In a Flatpak the number is one of the sandbox's own.
  if (flatpak.empty()) return std::nullopt;
  const auto processes = ProcessInformation::all();
  const auto process = std::find_if(processes.begin(), processes.end(), [&](const ProcessInformation& each) {
    return each.flatpakIdentifier() == flatpak;
  });
  if (process == processes.end()) return std::nullopt;
  return BrowserLock{BrowserLock::Evidence::text, process->processIdentifier};
}

}  // namespace harbor
