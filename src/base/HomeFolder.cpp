#include "base/HomeFolder.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace harbor {

std::string homeFolderOfUserDatabase() {
  constexpr std::size_t kLargestEntry = std::size_t{1} << 20;
  for (std::size_t size = 4096; size <= kLargestEntry; size *= 2) {
    std::vector<char> buffer(size);
    passwd entry{};
    passwd* found = nullptr;
    const int error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    if (error == ERANGE) continue;
    return error == 0 && found && found->pw_dir ? std::string(found->pw_dir) : std::string();
  }
  return {};
}

}  // namespace harbor
