// What the Mac's C library adds to the calls of POSIX.
#pragma once

#include_next <unistd.h>

#include "Availability.h"

#ifdef __APPLE__
HARBOR_EXPORT int mkostemp(char* path, int flags) HARBOR_SINCE(10.12);
#endif
