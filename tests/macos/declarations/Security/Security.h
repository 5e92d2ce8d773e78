// What the Mac platform uses of Security.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

HARBOR_NONNULL_BEGIN

typedef int32_t OSStatus;
enum { errSecSuccess = 0 };
typedef HARBOR_OPTIONS(uint32_t, SecCSFlags){kSecCSDefaultFlags = 0};
typedef struct __SecRequirement* SecRequirementRef;
HARBOR_EXPORT OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
                                                      SecRequirementRef _Nullable* _Nonnull requirement)
    HARBOR_SINCE(10.6);

HARBOR_NONNULL_END
