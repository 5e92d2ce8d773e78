// Where the Mac's C library keeps a thread's error.
#pragma once

#include_next <errno.h>

#include "Availability.h"

#ifdef __APPLE__
#undef errno
HARBOR_EXPORT int* __error(void);
#define errno (*__error())
#endif
