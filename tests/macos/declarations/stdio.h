// What the Mac's C library adds to the calls on files.
#pragma once

#include_next <stdio.h>

#include "Availability.h"

#ifdef __APPLE__
#define RENAME_EXCL 0x00000004
HARBOR_EXPORT int renameatx_np(int fromFolder, const char* from, int toFolder, const char* to,
                               unsigned int flags) HARBOR_SINCE(10.12);
#endif
