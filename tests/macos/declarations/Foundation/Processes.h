// Timers, run loops and notifications.
#pragma once

#import <Foundation/Objects.h>

HARBOR_NONNULL_BEGIN

typedef NSString* NSRunLoopMode;
HARBOR_EXPORT NSRunLoopMode const NSRunLoopCommonModes;

@interface NSTimer : NSObject
+ (NSTimer*)timerWithTimeInterval:(NSTimeInterval)interval
                          repeats:(BOOL)repeats
                            block:(void (^)(NSTimer* timer))block HARBOR_SINCE(10.12);
- (void)invalidate;
@end

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* mainRunLoop HARBOR_SINCE(10.5);
- (void)addTimer:(NSTimer*)timer forMode:(NSRunLoopMode)mode;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue HARBOR_SINCE(10.6);
@end

typedef NSString* NSNotificationName;
@interface NSNotification : NSObject
@property(readonly, copy) NSNotificationName name;
@property(nullable, readonly, strong) id object;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)object;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block HARBOR_SINCE(10.6);
- (void)removeObserver:(id)observer;
@end

typedef HARBOR_ENUM(NSUInteger, NSNotificationSuspensionBehavior){
    NSNotificationSuspensionBehaviorDeliverImmediately = 4,
};
@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable NSString*)object;
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(nullable NSNotificationName)name
                object:(nullable NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)suspensionBehavior;
- (void)postNotificationName:(NSNotificationName)name object:(nullable NSString*)object;
@end

typedef HARBOR_OPTIONS(uint64_t, NSActivityOptions){
    NSActivityIdleSystemSleepDisabled = (1ULL << 20),
    NSActivityUserInitiated = (0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled),
    NSActivityUserInitiatedAllowingIdleSystemSleep = (NSActivityUserInitiated &
                                                      ~NSActivityIdleSystemSleepDisabled),
};
@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options
                                  reason:(NSString*)reason HARBOR_SINCE(10.9);
- (void)endActivity:(id<NSObject>)activity HARBOR_SINCE(10.9);
@end

HARBOR_NONNULL_END
