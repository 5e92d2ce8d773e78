// A method that the object's protocol does not have is called.

#import <QuickLookUI/QuickLookUI.h>

NSInteger count(id<QLPreviewPanelDataSource> source) {
  return [source numberOfPreviewItems:nil];
}
