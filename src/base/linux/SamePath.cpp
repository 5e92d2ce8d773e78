#include "base/FileUrl.h"

namespace harbor {

bool isSamePath(std::string_view a, std::string_view b) {
  return a == b;
}

}  // namespace harbor
