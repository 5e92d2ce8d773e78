// What the Mac platform uses of the dispatch library.
#pragma once

#import <Foundation/Objects.h>

HARBOR_NONNULL_BEGIN

@protocol OS_dispatch_object <NSObject>
@end
@protocol OS_dispatch_queue <OS_dispatch_object>
@end
@protocol OS_dispatch_group <OS_dispatch_object>
@end
typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_group>* dispatch_group_t;
typedef void (^dispatch_block_t)(void);
typedef uint64_t dispatch_time_t;

#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)
#define NSEC_PER_MSEC 1000000ull

enum { QOS_CLASS_USER_INITIATED = 0x19, QOS_CLASS_UTILITY = 0x11 };

HARBOR_EXPORT dispatch_queue_t dispatch_get_main_queue(void);
HARBOR_EXPORT dispatch_queue_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags)
    HARBOR_SINCE(10.6);
HARBOR_EXPORT void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) HARBOR_SINCE(10.6);
HARBOR_EXPORT void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block)
    HARBOR_SINCE(10.6);
HARBOR_EXPORT dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) HARBOR_SINCE(10.6);
HARBOR_EXPORT dispatch_group_t dispatch_group_create(void) __attribute__((ns_returns_retained))
HARBOR_SINCE(10.6);
HARBOR_EXPORT void dispatch_group_async(dispatch_group_t group, dispatch_queue_t queue,
                                        dispatch_block_t block) HARBOR_SINCE(10.6);
HARBOR_EXPORT intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t timeout)
    HARBOR_SINCE(10.6);

HARBOR_NONNULL_END
