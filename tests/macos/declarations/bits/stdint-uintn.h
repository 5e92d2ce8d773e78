// The unsigned integers of a fixed width as the Mac has them.
#pragma once

#include <bits/types.h>

#ifdef __APPLE__
typedef unsigned char uint8_t;
typedef unsigned short uint16_t;
typedef unsigned int uint32_t;
typedef unsigned long long uint64_t;
#else
#include_next <bits/stdint-uintn.h>
#endif
