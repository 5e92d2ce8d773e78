// The words in which the declarations of this folder say since when something exists and until when it was
// advised, and which values may be absent.
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define HARBOR_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define HARBOR_SINCE_UNTIL(version, end) \
  __attribute__((availability(macos, introduced = version, deprecated = end)))

#define HARBOR_SINCE_UNTIL_GONE(version, end, gone) \
  __attribute__((availability(macos, introduced = version, deprecated = end, obsoleted = gone)))

#ifdef __cplusplus
#define HARBOR_EXPORT extern "C"
#else
#define HARBOR_EXPORT extern
#endif

#define HARBOR_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define HARBOR_NONNULL_END _Pragma("clang assume_nonnull end")

// An enumeration is a type of its own; options are plain integers, since C++ has no implicit way back from
// their union.
#define HARBOR_ENUM(type, name) \
  enum name : type name;        \
  enum name : type
#define HARBOR_OPTIONS(type, name) \
  type name;                       \
  enum : type
