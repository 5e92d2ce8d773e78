// What the Mac platform uses of Core Foundation.
#pragma once

#include <Availability.h>

HARBOR_NONNULL_BEGIN

typedef const void* CFTypeRef;
typedef unsigned long CFTypeID;
typedef signed long CFIndex;
typedef unsigned char Boolean;
typedef uint32_t UInt32;
typedef uint16_t UInt16;

typedef const struct __attribute__((objc_bridge(NSString))) __CFString* CFStringRef;
typedef const struct __attribute__((objc_bridge(NSArray))) __CFArray* CFArrayRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary* CFDictionaryRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFNumber* CFNumberRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFBoolean* CFBooleanRef;

typedef uint8_t UInt8;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef UInt32 CFStringEncoding;
enum : CFStringEncoding { kCFStringEncodingISOLatin1 = 0x0201, kCFStringEncodingUTF8 = 0x08000100 };
HARBOR_EXPORT CFStringRef _Nullable CFStringCreateWithBytes(CFAllocatorRef _Nullable allocator,
                                                            const UInt8* bytes, CFIndex length,
                                                            CFStringEncoding encoding,
                                                            Boolean isExternalRepresentation)
    __attribute__((cf_returns_retained));

typedef HARBOR_ENUM(CFIndex, CFComparisonResult){kCFCompareLessThan = -1L, kCFCompareEqualTo = 0,
                                                 kCFCompareGreaterThan = 1};
typedef HARBOR_OPTIONS(CFIndex, CFStringCompareFlags){kCFCompareNonliteral = 16};
HARBOR_EXPORT CFComparisonResult CFStringCompare(CFStringRef first, CFStringRef second,
                                                 CFStringCompareFlags options);

HARBOR_EXPORT void CFRelease(CFTypeRef object);
HARBOR_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);
HARBOR_EXPORT CFTypeID CFBooleanGetTypeID(void);
HARBOR_EXPORT Boolean CFNumberIsFloatType(CFNumberRef number);
HARBOR_EXPORT const CFStringRef kCFBundleNameKey;

typedef struct __CFRunLoop* CFRunLoopRef;
HARBOR_EXPORT const CFStringRef kCFRunLoopCommonModes;
HARBOR_EXPORT CFRunLoopRef CFRunLoopGetMain(void);
HARBOR_EXPORT void CFRunLoopPerformBlock(CFRunLoopRef runLoop, CFTypeRef mode, void (^block)(void))
    HARBOR_SINCE(10.6);
HARBOR_EXPORT void CFRunLoopWakeUp(CFRunLoopRef runLoop);

HARBOR_NONNULL_END
