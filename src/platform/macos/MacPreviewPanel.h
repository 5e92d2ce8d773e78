// The shared Quick Look panel. It looks for a controller among the responders of the key window, so the
// review window's controller hands it the source that is kept here.
#pragma once

#import <Quartz/Quartz.h>

#include "platform/PreviewPanel.h"

// The one item that the panel shows.
@interface HarborPreviewSource : NSObject <QLPreviewPanelDataSource, QLPreviewPanelDelegate>
@property(strong) NSURL* previewItem;
@end

namespace harbor {

class MacPreviewPanel : public PreviewPanel {
 public:
  void preview(const FileUrl& item) override;

  HarborPreviewSource* source() const { return source_; }

 private:
  HarborPreviewSource* source_ = [[HarborPreviewSource alloc] init];
};

}  // namespace harbor
