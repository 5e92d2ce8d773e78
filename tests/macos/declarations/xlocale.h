// Where the Mac's C library declares what depends on a locale, for its C++ library.
#pragma once

#include <ctype.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>

#include "Availability.h"

// These are no macros on the Mac.
#undef isdigit_l
#undef isxdigit_l

HARBOR_EXPORT double strtod_l(const char*, char**, locale_t);
HARBOR_EXPORT float strtof_l(const char*, char**, locale_t);
HARBOR_EXPORT long double strtold_l(const char*, char**, locale_t);
HARBOR_EXPORT long long strtoll_l(const char*, char**, int, locale_t);
HARBOR_EXPORT unsigned long long strtoull_l(const char*, char**, int, locale_t);
HARBOR_EXPORT int snprintf_l(char*, size_t, locale_t, const char*, ...);
HARBOR_EXPORT int asprintf_l(char**, locale_t, const char*, ...);
HARBOR_EXPORT int sscanf_l(const char*, locale_t, const char*, ...);
