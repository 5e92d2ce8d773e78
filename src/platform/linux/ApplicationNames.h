// The names by which an application that is a desktop entry calls its files, told from the words that say
// nothing about it: a file that is found by mistake is worse than one that is missed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Text.h"
#include "platform/linux/DesktopEntries.h"

namespace harbor {

struct ApplicationNames {
  // Names of the host's files that are this application's alone, each once: its identifier, its programs as
  // the command line names them behind all wrappers and interpreters, and those of its titles and window
  // classes that a program or the identifier confirms.
  std::vector<std::string> names;
  std::optional<std::string> flatpak;  // the id; the application's files are then the sandbox's
  std::optional<std::string> snap;     // the name of the instance
  std::string program;                 // the program's absolute path; empty where none is found
  // Whether the program is called like the application, and so not one that anything may start ("true").
  bool isProgramNamedLikeIt = false;
};

// Nothing for a path that is no entry.
std::optional<ApplicationNames> applicationNames(const DesktopEntries& entries, const std::string& path,
                                                 const Text& text);

// Whether a title is a word that names no application: "Files", "Terminal", or the name of a folder that all
// applications share.
bool isCommonWord(std::string_view name, const Text& text);

}  // namespace harbor
