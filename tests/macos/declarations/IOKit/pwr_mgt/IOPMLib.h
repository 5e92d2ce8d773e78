// What the Mac platform uses of IOKit's power management.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

HARBOR_NONNULL_BEGIN

typedef int IOReturn;
typedef uint32_t IOPMAssertionID;
typedef uint32_t IOPMAssertionLevel;
enum { kIOReturnSuccess = 0 };
enum { kIOPMAssertionLevelOff = 0, kIOPMAssertionLevelOn = 255 };

HARBOR_EXPORT IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level,
                                                   CFStringRef name, IOPMAssertionID* identifier)
    HARBOR_SINCE(10.6);
HARBOR_EXPORT IOReturn IOPMAssertionRelease(IOPMAssertionID identifier) HARBOR_SINCE(10.5);

HARBOR_NONNULL_END
