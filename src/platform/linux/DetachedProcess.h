// A program that goes on by itself: in a session of its own, with nothing of this process but its
// environment.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace harbor {

struct DetachedProcess {
  std::string program;                                           // absolute
  std::vector<std::string> arguments;                            // the program's own name first
  std::string workingDirectory;                                  // empty: the user's home
  std::vector<std::pair<std::string, std::string>> environment;  // on top of this process's own
  // The variable that is to hold the started program's own process number; empty for none.
  std::string processNumberVariable;

  // False when the program could not be executed.
  bool start() const;
};

}  // namespace harbor
