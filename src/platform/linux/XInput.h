// The X input extension for C++: its C header has a field that is called like a keyword.
#pragma once

#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xinput.h>
#undef explicit
#pragma GCC diagnostic pop
