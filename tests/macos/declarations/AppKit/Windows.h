// Windows, views, alerts and the open panel.
#pragma once

#import <AppKit/Application.h>
#import <AppKit/Drawing.h>

HARBOR_NONNULL_BEGIN

@class CALayer, NSScreen, NSView, NSViewController, NSButton, NSLayoutDimension, NSLayoutXAxisAnchor,
    NSLayoutYAxisAnchor;

typedef NSInteger NSWindowLevel;
typedef HARBOR_OPTIONS(NSUInteger, NSWindowStyleMask){
    NSWindowStyleMaskBorderless = 0,     NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskClosable = 1 << 1,  NSWindowStyleMaskMiniaturizable = 1 << 2,
    NSWindowStyleMaskResizable = 1 << 3,
};
typedef HARBOR_OPTIONS(NSUInteger, NSWindowCollectionBehavior){
    NSWindowCollectionBehaviorDefault = 0,
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorTransient = 1 << 3,
    NSWindowCollectionBehaviorStationary = 1 << 4,
};
typedef HARBOR_ENUM(NSUInteger, NSBackingStoreType){NSBackingStoreBuffered = 2};
typedef HARBOR_ENUM(NSInteger, NSWindowOrderingMode){
    NSWindowAbove = 1,
    NSWindowBelow = -1,
    NSWindowOut = 0,
};

#define NSNormalWindowLevel 0
#define NSScreenSaverWindowLevel 1000

@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow*)sender;
- (void)windowWillClose:(NSNotification*)notification;
@end

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)isDeferred;
+ (instancetype)windowWithContentViewController:(NSViewController*)controller HARBOR_SINCE(10.10);
+ (NSInteger)windowNumberAtPoint:(NSPoint)point
     belowWindowWithWindowNumber:(NSInteger)windowNumber HARBOR_SINCE(10.6);
@property(copy) NSString* title;
@property(nullable, strong) NSView* contentView;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property NSWindowStyleMask styleMask;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior HARBOR_SINCE(10.5);
@property BOOL ignoresMouseEvents;
@property(getter=isOpaque) BOOL opaque;
@property(copy) NSColor* backgroundColor;
@property CGFloat alphaValue;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property BOOL hidesOnDeactivate;
@property(readonly) NSInteger windowNumber;
@property(readonly) NSRect frame;
@property(readonly, getter=isMiniaturized) BOOL miniaturized;
- (void)deminiaturize:(nullable id)sender;
- (void)setFrame:(NSRect)frame display:(BOOL)shouldDisplay;
- (void)orderOut:(nullable id)sender;
- (void)orderFrontRegardless;
- (void)orderWindow:(NSWindowOrderingMode)place relativeTo:(NSInteger)otherWindow;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)center;
- (void)close;
- (void)performClose:(nullable id)sender;
- (void)performMiniaturize:(nullable id)sender;
@end

@interface NSPanel : NSWindow
@end

@interface NSWindowController : NSResponder
- (instancetype)initWithWindow:(nullable NSWindow*)window;
- (void)showWindow:(nullable id)sender;
@end

@interface NSScreen : NSObject
@property(class, readonly, strong, nullable) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@end

typedef float NSLayoutPriority;
static const NSLayoutPriority NSLayoutPriorityRequired = 1000;
typedef HARBOR_ENUM(NSInteger, NSLayoutConstraintOrientation){
    NSLayoutConstraintOrientationHorizontal = 0,
    NSLayoutConstraintOrientationVertical = 1,
};

@interface NSLayoutConstraint : NSObject
@property CGFloat constant;
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints HARBOR_SINCE(10.10);
@end
@interface NSLayoutAnchor<AnchorType> : NSObject
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor;
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor constant:(CGFloat)c;
- (NSLayoutConstraint*)constraintLessThanOrEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor
                                                constant:(CGFloat)c;
@end
@interface NSLayoutXAxisAnchor : NSLayoutAnchor <NSLayoutXAxisAnchor*>
@end
@interface NSLayoutYAxisAnchor : NSLayoutAnchor <NSLayoutYAxisAnchor*>
@end
@interface NSLayoutDimension : NSLayoutAnchor <NSLayoutDimension*>
- (NSLayoutConstraint*)constraintEqualToConstant:(CGFloat)c;
- (NSLayoutConstraint*)constraintGreaterThanOrEqualToConstant:(CGFloat)c;
@end

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame;
@property NSRect frame;
@property(readonly) NSRect bounds;
@property(getter=isHidden) BOOL hidden;
@property BOOL needsDisplay;
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
@property(readonly, getter=isFlipped) BOOL flipped;
@property(nullable, copy) NSString* toolTip;
@property(nullable, readonly, strong) NSWindow* window;
@property BOOL translatesAutoresizingMaskIntoConstraints HARBOR_SINCE(10.7);
@property(readonly, strong) NSLayoutXAxisAnchor* leadingAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutXAxisAnchor* trailingAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutXAxisAnchor* centerXAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutYAxisAnchor* topAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutYAxisAnchor* bottomAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutYAxisAnchor* centerYAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutDimension* widthAnchor HARBOR_SINCE(10.11);
@property(readonly, strong) NSLayoutDimension* heightAnchor HARBOR_SINCE(10.11);
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;
@property(readonly) NSSize intrinsicContentSize HARBOR_SINCE(10.7);
@property(readonly) NSEdgeInsets alignmentRectInsets HARBOR_SINCE(10.7);
- (void)setContentHuggingPriority:(NSLayoutPriority)priority
                   forOrientation:(NSLayoutConstraintOrientation)orientation HARBOR_SINCE(10.7);
- (void)invalidateIntrinsicContentSize;
- (void)drawRect:(NSRect)dirtyRect;
- (void)setAccessibilityLabel:(nullable NSString*)label HARBOR_SINCE(10.10);
- (void)setAccessibilityHelp:(nullable NSString*)help HARBOR_SINCE(10.10);
@end

@interface NSText : NSView
- (void)cut:(nullable id)sender;
- (void)copy:(nullable id)sender;
- (void)paste:(nullable id)sender;
- (void)selectAll:(nullable id)sender;
@end

@interface NSViewController : NSResponder
@property(strong) NSView* view;
- (instancetype)init;
- (void)viewDidLoad HARBOR_SINCE(10.10);
- (void)viewDidDisappear HARBOR_SINCE(10.10);
@end

typedef HARBOR_ENUM(NSUInteger, NSAlertStyle){
    NSAlertStyleWarning = 0,
    NSAlertStyleInformational = 1,
    NSAlertStyleCritical = 2,
};
enum : NSModalResponse { NSAlertFirstButtonReturn = 1000 };

@interface NSAlert : NSObject
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
@property NSAlertStyle alertStyle;
@property BOOL showsSuppressionButton HARBOR_SINCE(10.5);
@property(nullable, readonly, strong) NSButton* suppressionButton HARBOR_SINCE(10.5);
@property(readonly, copy) NSArray<NSButton*>* buttons;
- (NSButton*)addButtonWithTitle:(NSString*)title;
@property(readonly, strong) NSWindow* window;
- (NSModalResponse)runModal;
@end

@protocol NSOpenSavePanelDelegate <NSObject>
@optional
- (BOOL)panel:(id)sender shouldEnableURL:(NSURL*)url HARBOR_SINCE(10.6);
@end

@interface NSSavePanel : NSPanel
@property(nullable, copy) NSURL* directoryURL HARBOR_SINCE(10.6);
@property(nullable, copy) NSString* message;
@property(nullable, weak) id<NSOpenSavePanelDelegate> delegate;
@property(nullable, readonly, copy) NSURL* URL;
- (NSModalResponse)runModal;
@end
@interface NSOpenPanel : NSSavePanel
@property(class, readonly, strong) NSOpenPanel* openPanel;
@property BOOL allowsMultipleSelection;
@property BOOL canChooseDirectories;
@property BOOL canChooseFiles;
@end

HARBOR_NONNULL_END
