#include <sys/xattr.h>

#include "disk/AttributeErasing.h"

namespace harbor {

bool removeAttribute(int descriptor, const char* name) {
  return ::fremovexattr(descriptor, name, 0) == 0;
}

}  // namespace harbor
