// The application, the workspace, the pasteboard, events.
#pragma once

#import <Foundation/Foundation.h>

HARBOR_NONNULL_BEGIN

@class NSWindow, NSEvent;

typedef HARBOR_ENUM(NSInteger, NSApplicationActivationPolicy){
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
    NSApplicationActivationPolicyProhibited = 2,
};
typedef HARBOR_ENUM(NSUInteger, NSApplicationTerminateReply){
    NSTerminateCancel = 0,
    NSTerminateNow = 1,
    NSTerminateLater = 2,
};
typedef NSInteger NSModalResponse;
enum : NSModalResponse { NSModalResponseOK = 1, NSModalResponseCancel = 0 };

HARBOR_EXPORT NSNotificationName const NSApplicationDidChangeScreenParametersNotification;

@class NSApplication;
@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (void)applicationWillTerminate:(NSNotification*)notification;
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application HARBOR_SINCE(12.0);
@end

@interface NSResponder : NSObject
@end

@class NSMenu;

@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy HARBOR_SINCE(10.6);
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps HARBOR_SINCE_UNTIL(10.0, 14.0);
- (void)activate HARBOR_SINCE(14.0);
- (void)run;
- (void)terminate:(nullable id)sender;
- (void)hide:(nullable id)sender;
- (void)hideOtherApplications:(nullable id)sender;
- (void)unhideAllApplications:(nullable id)sender;
- (void)arrangeInFront:(nullable id)sender;
- (void)orderFrontStandardAboutPanel:(nullable id)sender;
@property(nullable, strong) NSMenu* mainMenu;
@property(nullable, strong) NSMenu* windowsMenu;
- (NSModalResponse)runModalForWindow:(NSWindow*)window;
- (void)stopModal;
- (void)postEvent:(NSEvent*)event atStart:(BOOL)atStart;
- (nullable NSWindow*)windowWithWindowNumber:(NSInteger)windowNumber;
- (NSApplicationActivationPolicy)activationPolicy HARBOR_SINCE(10.6);
@property(nullable, readonly, weak) NSWindow* modalWindow;
@property(nullable, readonly, strong) NSEvent* currentEvent;
@end
HARBOR_EXPORT NSApplication* _Null_unspecified NSApp;

typedef HARBOR_ENUM(NSUInteger, NSEventType){
    NSEventTypeLeftMouseUp = 2,         NSEventTypeRightMouseUp = 4,
    NSEventTypeMouseMoved = 5,          NSEventTypeKeyDown = 10,
    NSEventTypeLeftMouseDragged = 6,    NSEventTypeRightMouseDragged = 7,
    NSEventTypeApplicationDefined = 15,
};
typedef HARBOR_OPTIONS(unsigned long long, NSEventMask){
    NSEventMaskLeftMouseUp = 1ULL << NSEventTypeLeftMouseUp,
    NSEventMaskRightMouseUp = 1ULL << NSEventTypeRightMouseUp,
    NSEventMaskMouseMoved = 1ULL << NSEventTypeMouseMoved,
    NSEventMaskKeyDown = 1ULL << NSEventTypeKeyDown,
    NSEventMaskLeftMouseDragged = 1ULL << NSEventTypeLeftMouseDragged,
    NSEventMaskRightMouseDragged = 1ULL << NSEventTypeRightMouseDragged,
};
typedef HARBOR_OPTIONS(NSUInteger, NSEventModifierFlags){
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20,
};

@class NSGraphicsContext;
@interface NSEvent : NSObject <NSCopying>
@property(class, readonly) NSPoint mouseLocation;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask
                                             handler:(void (^)(NSEvent* event))handler HARBOR_SINCE(10.6);
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent* event))handler
    HARBOR_SINCE(10.6);
@property(readonly) unsigned short keyCode;
@property(nullable, readonly, weak) NSWindow* window;
+ (void)removeMonitor:(id)monitor HARBOR_SINCE(10.6);
+ (nullable NSEvent*)otherEventWithType:(NSEventType)type
                               location:(NSPoint)location
                          modifierFlags:(NSEventModifierFlags)flags
                              timestamp:(NSTimeInterval)time
                           windowNumber:(NSInteger)window
                                context:(nullable NSGraphicsContext*)unusedPassNil
                                subtype:(short)subtype
                                  data1:(NSInteger)data1
                                  data2:(NSInteger)data2;
@end

@interface NSRunningApplication : NSObject
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(int32_t)pid HARBOR_SINCE(10.6);
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier
    HARBOR_SINCE(10.6);
@property(nullable, readonly, copy) NSString* localizedName;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSURL* bundleURL;
@property(readonly) int32_t processIdentifier;
@property(readonly) NSApplicationActivationPolicy activationPolicy;
@end

HARBOR_EXPORT NSNotificationName const NSWorkspaceWillSleepNotification;
HARBOR_EXPORT NSNotificationName const NSWorkspaceDidWakeNotification;
HARBOR_EXPORT NSNotificationName const NSWorkspaceActiveSpaceDidChangeNotification HARBOR_SINCE(10.6);

@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration HARBOR_SINCE(10.15);
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(readonly, copy) NSArray<NSRunningApplication*>* runningApplications HARBOR_SINCE(10.6);
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication HARBOR_SINCE(10.7);
- (nullable NSString*)fullPathForApplication:(NSString*)name HARBOR_SINCE_UNTIL(10.0, 11.0);
- (BOOL)openURL:(NSURL*)url;
- (void)openApplicationAtURL:(NSURL*)url
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(nullable void (^)(NSRunningApplication* _Nullable application,
                                                NSError* _Nullable error))handler HARBOR_SINCE(10.15);
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)urls HARBOR_SINCE(10.6);
@end

typedef NSString* NSPasteboardType;
HARBOR_EXPORT NSPasteboardType const NSPasteboardTypeString HARBOR_SINCE(10.6);
HARBOR_EXPORT NSPasteboardType const NSPasteboardTypeRTF HARBOR_SINCE(10.6);

@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
@property(readonly) NSInteger changeCount;
@property(nullable, readonly, copy) NSArray<NSPasteboardType>* types;
- (nullable NSPasteboardType)availableTypeFromArray:(NSArray<NSPasteboardType>*)types;
- (nullable NSString*)stringForType:(NSPasteboardType)type;
- (NSInteger)clearContents HARBOR_SINCE(10.6);
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type;
@end

HARBOR_NONNULL_END
