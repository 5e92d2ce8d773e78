// Controls and the table view.
#pragma once

#import <AppKit/Windows.h>

HARBOR_NONNULL_BEGIN

typedef NSInteger NSControlStateValue;
enum : NSControlStateValue {
  NSControlStateValueMixed = -1,
  NSControlStateValueOff = 0,
  NSControlStateValueOn = 1,
};

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property NSInteger tag;
@property(getter=isEnabled) BOOL enabled;
@property NSTextAlignment alignment;
- (void)performClick:(nullable id)sender;
@property(copy) NSString* stringValue;
- (NSInteger)sendActionOn:(NSEventMask)mask;
@end

typedef HARBOR_ENUM(NSUInteger, NSButtonType){
    NSButtonTypePushOnPushOff = 1,
    NSButtonTypeToggle = 2,
    NSButtonTypeSwitch = 3,
    NSButtonTypeMomentaryPushIn = 7,
};

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action HARBOR_SINCE(10.12);
+ (instancetype)buttonWithImage:(NSImage*)image
                         target:(nullable id)target
                         action:(nullable SEL)action HARBOR_SINCE(10.12);
+ (instancetype)checkboxWithTitle:(NSString*)title
                           target:(nullable id)target
                           action:(nullable SEL)action HARBOR_SINCE(10.12);
- (void)setButtonType:(NSButtonType)type;
@property(copy) NSString* title;
@property(getter=isBordered) BOOL bordered;
@property(copy) NSString* keyEquivalent;
@property(nullable, strong) NSImage* image;
@property NSControlStateValue state;
@property BOOL allowsMixedState;
@end

@interface NSTextField : NSControl
+ (instancetype)labelWithString:(NSString*)text HARBOR_SINCE(10.12);
+ (instancetype)wrappingLabelWithString:(NSString*)text HARBOR_SINCE(10.12);
@property NSLineBreakMode lineBreakMode HARBOR_SINCE(10.10);
@property BOOL usesSingleLineMode HARBOR_SINCE(10.10);
@property(nullable, copy) NSColor* textColor;
@end

@interface NSImageView : NSControl
+ (instancetype)imageViewWithImage:(NSImage*)image HARBOR_SINCE(10.12);
@end

@interface NSColorWell : NSControl
@property(copy) NSColor* color;
- (void)deactivate;
@end

typedef HARBOR_ENUM(NSUInteger, NSProgressIndicatorStyle){
    NSProgressIndicatorStyleBar = 0,
    NSProgressIndicatorStyleSpinning = 1,
};
@interface NSProgressIndicator : NSView
@property(getter=isIndeterminate) BOOL indeterminate;
@property NSProgressIndicatorStyle style;
- (void)startAnimation:(nullable id)sender;
- (void)stopAnimation:(nullable id)sender;
@end

@interface NSScrollView : NSView
@property(nullable, strong) NSView* documentView;
@property BOOL hasVerticalScroller;
@end

typedef NSString* NSUserInterfaceItemIdentifier;
@interface NSView (NSUserInterfaceItemIdentification)
@property(nullable, copy) NSUserInterfaceItemIdentifier identifier;
@end

@interface NSTableCellView : NSView
@property(nullable, weak) NSTextField* textField;
@end

@class NSTableView;
@interface NSTableColumn : NSObject
- (instancetype)initWithIdentifier:(NSUserInterfaceItemIdentifier)identifier;
@property(copy) NSUserInterfaceItemIdentifier identifier;
@property(copy) NSString* title;
@property CGFloat width;
@property(nullable, copy) NSSortDescriptor* sortDescriptorPrototype;
@end

@protocol NSTableViewDataSource <NSObject>
@optional
- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView;
- (void)tableView:(NSTableView*)tableView
    sortDescriptorsDidChange:(NSArray<NSSortDescriptor*>*)oldDescriptors;
@end
@protocol NSTableViewDelegate <NSObject>
@optional
- (nullable NSView*)tableView:(NSTableView*)tableView
           viewForTableColumn:(nullable NSTableColumn*)tableColumn
                          row:(NSInteger)row HARBOR_SINCE(10.7);
@end

@interface NSTableView : NSControl
@property(nullable, weak) id<NSTableViewDataSource> dataSource;
@property(nullable, weak) id<NSTableViewDelegate> delegate;
@property(copy) NSArray<NSSortDescriptor*>* sortDescriptors;
- (void)addTableColumn:(NSTableColumn*)column;
- (nullable __kindof NSView*)makeViewWithIdentifier:(NSUserInterfaceItemIdentifier)identifier
                                              owner:(nullable id)owner HARBOR_SINCE(10.7);
- (void)reloadData;
- (void)reloadDataForRowIndexes:(NSIndexSet*)rows columnIndexes:(NSIndexSet*)columns HARBOR_SINCE(10.6);
- (void)noteNumberOfRowsChanged;
@property(readonly) NSInteger numberOfColumns;
@property(readonly) NSInteger numberOfRows;
@end

HARBOR_NONNULL_END
