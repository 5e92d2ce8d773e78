#import "platform/macos/MacPreviewPanel.h"

#import "platform/macos/MacValues.h"

@implementation HarborPreviewSource

- (NSInteger)numberOfPreviewItemsInPreviewPanel:(QLPreviewPanel*)panel {
  return self.previewItem ? 1 : 0;
}

- (id<QLPreviewItem>)previewPanel:(QLPreviewPanel*)panel previewItemAtIndex:(NSInteger)index {
  return self.previewItem;
}

@end

namespace harbor {

void MacPreviewPanel::preview(const FileUrl& item) {
  source_.previewItem = nsUrl(item);
  QLPreviewPanel* const panel = QLPreviewPanel.sharedPreviewPanel;
  [panel makeKeyAndOrderFront:nil];
  [panel updateController];
  // A panel that shows already keeps its controller and has to be told of the new item. One that has not
  // found its controller must not be asked.
  if (panel.dataSource == source_) [panel reloadData];
}

}  // namespace harbor
