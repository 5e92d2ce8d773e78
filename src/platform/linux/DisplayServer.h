// Finds out which display server the program can use before Qt does, which would abort where there is none.
#pragma once

#include <string>

namespace harbor {

struct DisplayServer {
  std::string qtPlatform;  // the name of Qt's platform plugin; empty: there is no display
  std::string problem;     // a sentence for the user when there is none
};

// X11 where a server answers, since it does everything, also within a Wayland session; else Wayland where
// there is a compositor. What QT_QPA_PLATFORM names comes before both, and has to be there as well.
DisplayServer findDisplayServer();

}  // namespace harbor
