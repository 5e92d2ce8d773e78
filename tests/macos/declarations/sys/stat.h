// What the Mac's facts of a file add to those of POSIX: when it was born.
#pragma once

#include_next <sys/stat.h>

#ifdef __APPLE__
#define st_birthtimespec st_ctim
#endif
