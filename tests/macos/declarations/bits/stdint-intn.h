// The integers of a fixed width as the Mac has them: 64 bits are a long long there, and a long here.
#pragma once

#include <bits/types.h>

#ifdef __APPLE__
typedef signed char int8_t;
typedef short int16_t;
typedef int int32_t;
typedef long long int64_t;
#else
#include_next <bits/stdint-intn.h>
#endif
