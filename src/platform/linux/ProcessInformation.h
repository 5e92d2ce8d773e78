// What the kernel tells about a process of this user. Everything can be gone at any moment: then it is
// absent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harbor {

struct ProcessInformation {
  std::int32_t processIdentifier = 0;
  std::string executable;  // the path of the program file; of a deleted one the path it had
  std::vector<std::string> arguments;

  // Nothing when there is no such process, it belongs to somebody else or runs no program (a zombie).
  static std::optional<ProcessInformation> of(std::int32_t processIdentifier);

  // All of this user's, in no particular order.
  static std::vector<ProcessInformation> all();

  // What was in the environment when the program started.
  std::optional<std::string> environmentVariable(std::string_view name) const;

  // The application of a Flatpak sandbox.
  std::optional<std::string> flatpakIdentifier() const;
  // "NAME_APP" for a program of a snap.
  std::optional<std::string> snapIdentifier() const;

  // The program as a user would name it: the script of an interpreter, else the executable.
  std::string program() const;
};

}  // namespace harbor
