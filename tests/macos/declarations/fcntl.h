// What the Mac's C library adds to the descriptors of POSIX.
#pragma once

#include_next <fcntl.h>

#define O_EVTONLY 0x00008000
#define F_GETPATH 50
