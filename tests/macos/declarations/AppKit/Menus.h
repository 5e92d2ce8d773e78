// Menus and the status bar.
#pragma once

#import <AppKit/Controls.h>

HARBOR_NONNULL_BEGIN

@class NSMenu;

@interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)title
                       action:(nullable SEL)action
                keyEquivalent:(NSString*)keyEquivalent;
@property NSEventModifierFlags keyEquivalentModifierMask;
@property(nullable, copy) NSAttributedString* attributedTitle;
@property(nullable, copy) NSString* toolTip;
@property(nullable, strong) NSMenu* submenu;
@property(nullable) SEL action;
@property(nullable, weak) id target;
@property(nullable, strong) id representedObject;
@property NSInteger tag;
@property NSControlStateValue state;
@property(getter=isEnabled) BOOL enabled;
@end

@protocol NSMenuDelegate <NSObject>
@optional
- (void)menuDidClose:(NSMenu*)menu;
@end

@interface NSMenu : NSObject
- (instancetype)initWithTitle:(NSString*)title;
@property(nullable, weak) id<NSMenuDelegate> delegate;
@property BOOL autoenablesItems;
- (void)addItem:(NSMenuItem*)item;
- (BOOL)popUpMenuPositioningItem:(nullable NSMenuItem*)item
                      atLocation:(NSPoint)location
                          inView:(nullable NSView*)view HARBOR_SINCE(10.6);
@end

@interface NSStatusBarButton : NSButton
@end

static const CGFloat NSSquareStatusItemLength = -2.0;

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button HARBOR_SINCE(10.10);
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

HARBOR_NONNULL_END
