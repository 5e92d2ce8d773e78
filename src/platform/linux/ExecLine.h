// The command line of a desktop entry: its words, its field codes, and the program that it is really about.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/DesktopEntry.h"

namespace harbor {

// The words of a command line by the shell's quoting rules, nothing else of the shell applying. Nothing when
// a quotation is not closed.
std::optional<std::vector<std::string>> splitCommandLine(std::string_view line);

// The arguments to start an entry with, field codes replaced. `file` and `url` name what is to be opened,
// both empty for none; `path` is the entry's own. Nothing when the command line is malformed or empty.
std::optional<std::vector<std::string>> expandExec(const DesktopEntry& entry, const std::string& path,
                                                   const std::string& file, const std::string& url);

// What a command line runs once launchers and interpreters are stepped over.
struct Program {
  enum class Kind { executable, applicationId };
  Kind kind = Kind::executable;
  std::string name;  // a path or a file name; for an application id the id without ".desktop"

  friend bool operator==(const Program&, const Program&) = default;
};

// Nothing when no program is found behind them ("python3 -m http.server", "env" alone).
std::optional<Program> programBehind(const std::vector<std::string>& arguments);

// Whether the file name is a launcher's or an interpreter's, whose own name says nothing about what runs.
bool isLauncherOrInterpreter(std::string_view fileName);

}  // namespace harbor
