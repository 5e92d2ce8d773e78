// The Mac's extended attributes, whose calls take one value more than those of Linux.
#pragma once

#include "../Availability.h"

HARBOR_EXPORT int fremovexattr(int descriptor, const char* name, int options) HARBOR_SINCE(10.4);
