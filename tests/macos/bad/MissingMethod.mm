// A class lacks a method that its protocol demands.

#import <QuickLookUI/QuickLookUI.h>

@interface Source : NSObject <QLPreviewPanelDataSource>
@end

@implementation Source

- (NSInteger)numberOfPreviewItemsInPreviewPanel:(QLPreviewPanel*)panel {
  return 1;
}

@end
