// Whether a browser is using a profile, judged by the lock that it keeps there. What a browser left behind
// when it was killed is no lock.
#pragma once

#include <string>

namespace harbor {

// By the record lock on ".parentlock" that a running Firefox holds, and by the link "lock" of old versions,
// which names an address and a process.
bool isFirefoxProfileInUse(const std::string& profile);

// By the link "SingletonLock" in the folder that holds the profiles, which names a host and a process. A lock
// of another host counts: nothing here can tell whether it is stale.
bool isChromeFolderInUse(const std::string& userData);

}  // namespace harbor
