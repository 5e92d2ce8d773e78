// What the command line alone decides, before anything of the desktop is needed.
#pragma once

#include <optional>

namespace harbor {

// Answers on standard output, or refuses on standard error. The exit status; nullopt when the program is to
// run.
std::optional<int> answerCommandLine(int argc, char** argv);

}  // namespace harbor
