// What the Mac platform uses of Core Graphics: geometry, the main display, the window list, pictures of
// windows.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

HARBOR_NONNULL_BEGIN

typedef double CGFloat;
typedef struct {
  CGFloat x;
  CGFloat y;
} CGPoint;
typedef struct {
  CGFloat width;
  CGFloat height;
} CGSize;
typedef struct {
  CGPoint origin;
  CGSize size;
} CGRect;

static inline CGPoint CGPointMake(CGFloat x, CGFloat y) {
  return {x, y};
}
static inline CGSize CGSizeMake(CGFloat width, CGFloat height) {
  return {width, height};
}
static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  return {{x, y}, {width, height}};
}
HARBOR_EXPORT const CGRect CGRectZero;
HARBOR_EXPORT bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef _Nullable dictionary,
                                                          CGRect* _Nullable rectangle);

typedef uint32_t CGDirectDisplayID;
HARBOR_EXPORT CGDirectDisplayID CGMainDisplayID(void);
HARBOR_EXPORT CGRect CGDisplayBounds(CGDirectDisplayID display);

typedef struct CGImage* CGImageRef;
HARBOR_EXPORT void CGImageRelease(CGImageRef _Nullable image);

typedef struct CGColor* CGColorRef;

typedef uint32_t CGWindowID;
enum { kCGNullWindowID = 0 };
typedef HARBOR_OPTIONS(uint32_t, CGWindowListOption){
    kCGWindowListOptionAll = 0,
    kCGWindowListOptionOnScreenOnly = 1 << 0,
    kCGWindowListOptionIncludingWindow = 1 << 3,
    kCGWindowListExcludeDesktopElements = 1 << 4,
};
typedef HARBOR_OPTIONS(uint32_t, CGWindowImageOption){
    kCGWindowImageDefault = 0,
};
HARBOR_EXPORT const CFStringRef kCGWindowNumber;
HARBOR_EXPORT const CFStringRef kCGWindowLayer;
HARBOR_EXPORT const CFStringRef kCGWindowBounds;
HARBOR_EXPORT const CFStringRef kCGWindowOwnerPID;
HARBOR_EXPORT const CFStringRef kCGWindowOwnerName;
HARBOR_EXPORT const CFStringRef kCGWindowName;
HARBOR_EXPORT CFArrayRef _Nullable CGWindowListCopyWindowInfo(CGWindowListOption option,
                                                              CGWindowID relativeToWindow)
    __attribute__((cf_returns_retained));
HARBOR_EXPORT CGImageRef _Nullable CGWindowListCreateImage(CGRect screenBounds, CGWindowListOption listOption,
                                                           CGWindowID windowID,
                                                           CGWindowImageOption imageOption)
    __attribute__((cf_returns_retained)) HARBOR_SINCE_UNTIL_GONE(10.5, 14.0, 15.0);

HARBOR_EXPORT bool CGPreflightScreenCaptureAccess(void) HARBOR_SINCE(10.15);
HARBOR_EXPORT bool CGRequestScreenCaptureAccess(void) HARBOR_SINCE(10.15);

typedef int32_t CGWindowLevel;
typedef HARBOR_ENUM(int32_t, CGWindowLevelKey){
    kCGNormalWindowLevelKey = 4,
    kCGScreenSaverWindowLevelKey = 13,
    kCGDesktopIconWindowLevelKey = 18,
};
HARBOR_EXPORT CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key);

HARBOR_NONNULL_END
