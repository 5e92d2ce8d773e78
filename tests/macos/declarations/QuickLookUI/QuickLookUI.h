// What the Mac platform uses of Quick Look.
#pragma once

#import <AppKit/AppKit.h>

HARBOR_NONNULL_BEGIN

@class QLPreviewPanel;

@protocol QLPreviewItem <NSObject>
@property(readonly, nullable) NSURL* previewItemURL;
@end
@interface NSURL (QLPreviewItem) <QLPreviewItem>
@end

@protocol QLPreviewPanelDataSource
- (NSInteger)numberOfPreviewItemsInPreviewPanel:(nullable QLPreviewPanel*)panel;
- (nullable id<QLPreviewItem>)previewPanel:(nullable QLPreviewPanel*)panel
                        previewItemAtIndex:(NSInteger)index;
@end

@protocol QLPreviewPanelDelegate <NSWindowDelegate>
@end

HARBOR_SINCE(10.6)
@interface QLPreviewPanel : NSPanel
@property(class, readonly, nullable) QLPreviewPanel* sharedPreviewPanel;
@property(weak, nullable) id<QLPreviewPanelDataSource> dataSource;
@property(weak, nullable) id<QLPreviewPanelDelegate> delegate;
- (void)updateController;
- (void)reloadData;
@end

@interface NSObject (QLPreviewPanelController)
- (BOOL)acceptsPreviewPanelControl:(nullable QLPreviewPanel*)panel;
- (void)beginPreviewPanelControl:(nullable QLPreviewPanel*)panel;
- (void)endPreviewPanelControl:(nullable QLPreviewPanel*)panel;
@end

HARBOR_NONNULL_END
