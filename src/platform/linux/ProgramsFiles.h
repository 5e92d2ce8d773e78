// What the user's running programs have open, as the kernel lists it.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/CleanupPlaces.h"

namespace harbor {

struct ProgramsFiles {
  // The files that a program has open or mapped for writing, or holds a lock on.
  std::set<FileIdentity> inUse;
  // The paths of all files and folders that a program has open or works in.
  std::vector<std::string> opened;
  std::vector<std::string> locked;    // the paths of those with a lock
  std::vector<std::string> programs;  // the paths of the programs themselves

  // Of all processes that may be looked at, this one left out. `processes` is the kernel's folder of them;
  // what cannot be read there counts as nothing open.
  static ProgramsFiles read(const std::string& processes = "/proc");
};

}  // namespace harbor
