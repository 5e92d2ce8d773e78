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
#include "platform/linux/ProcessInformation.h"

namespace harbor {
namespace {

std::optional<std::string> linkText(const std::string& path) {
  std::array<char, PATH_MAX> text;
  const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
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

bool isRecordLocked(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return file && ::fcntl(file.get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
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

bool isFirefoxProfileInUse(const std::string& profile) {
  if (isRecordLocked(profile + "/.parentlock")) return true;
  const auto text = linkText(profile + "/lock");
  const std::size_t colon = text ? text->rfind(':') : std::string::npos;
  if (colon == std::string::npos) return false;
  const std::string_view process = std::string_view(*text).substr(colon + 1);
  // The sign says that the record lock was taken too; nobody holds that any more.
  if (process.starts_with('+')) return false;
  const auto number = numberOf(process);
  if (!number) return false;
  return !isAddressOfThisHost(text->substr(0, colon)) || isRunningAs(*number, "firefox");
}

bool isChromeFolderInUse(const std::string& userData) {
  const auto text = linkText(userData + "/SingletonLock");
  const std::size_t hyphen = text ? text->rfind('-') : std::string::npos;
  if (hyphen == std::string::npos) return false;
  const auto number = numberOf(std::string_view(*text).substr(hyphen + 1));
  if (!number) return false;
  std::array<char, HOST_NAME_MAX + 1> host{};
  if (::gethostname(host.data(), host.size() - 1) != 0) return true;
  if (text->substr(0, hyphen) != host.data() || isRunningAs(*number, "chrom")) return true;
  // In a Flatpak the number is one of the sandbox's own.
  constexpr std::string_view kFlatpaks = "/.var/app/";
  const std::size_t at = userData.find(kFlatpaks);
  if (at == std::string::npos) return false;
  const std::size_t start = at + kFlatpaks.size();
  const std::string identifier = userData.substr(start, userData.find('/', start) - start);
  const auto processes = ProcessInformation::all();
  return std::any_of(processes.begin(), processes.end(), [&](const ProcessInformation& process) {
    return process.flatpakIdentifier() == identifier;
  });
}

}  // namespace harbor
