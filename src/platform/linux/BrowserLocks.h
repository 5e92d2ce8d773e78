// Whether a browser is using a profile, judged by the lock that it keeps there. What a browser left behind
// when it was killed is no lock.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace harbor {

struct BrowserLock {
  // What says so. A text may have been written by anybody who may write the folder.
  enum class Evidence { kernel, text };

  Evidence evidence = Evidence::kernel;
  std::int32_t holder = 0;  // the process; 0 where it is another host's or a sandbox's own number
};

// By the record lock on ".parentlock" that a running Firefox holds, and by the link "lock" of old versions,
// which names an address and a process. The path is followed through no link.
std::optional<BrowserLock> lockOfFirefox(const std::string& profile);

// By the link "SingletonLock" in the folder that holds the profiles, which names a host and a process. A lock
// of another host counts: nothing here can tell whether it is stale. `flatpak` is the application whose
// sandbox the folder belongs to; empty: none.
std::optional<BrowserLock> lockOfChrome(const std::string& userData, const std::string& flatpak);

}  // namespace harbor
