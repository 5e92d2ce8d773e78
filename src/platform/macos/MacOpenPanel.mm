#import "platform/macos/MacOpenPanel.h"

#import "platform/macos/MacValues.h"

@interface HarborOpenPanelDelegate : NSObject <NSOpenSavePanelDelegate>
- (instancetype)initWithTest:(std::function<bool(const harbor::FileUrl&)>)shouldEnable;
@end

@implementation HarborOpenPanelDelegate {
  std::function<bool(const harbor::FileUrl&)> _shouldEnable;
}

- (instancetype)initWithTest:(std::function<bool(const harbor::FileUrl&)>)shouldEnable {
  if ((self = [super init])) _shouldEnable = std::move(shouldEnable);
  return self;
}

- (BOOL)panel:(id)sender shouldEnableURL:(NSURL*)url {
  const auto item = harbor::fileUrlOf(url);
  return item && (!_shouldEnable || _shouldEnable(*item));
}

@end

namespace harbor {

std::optional<FileUrl> MacOpenPanel::run(const OpenPanelRequest& request) {
  NSOpenPanel* const panel = NSOpenPanel.openPanel;
  panel.allowsMultipleSelection = NO;
  panel.canChooseDirectories = YES;
  panel.canChooseFiles = NO;
  panel.directoryURL = nsUrl(request.directory);
  // The panel holds its delegate weakly; this variable holds it until the panel is closed.
  __attribute__((objc_precise_lifetime)) HarborOpenPanelDelegate* const delegate =
      [[HarborOpenPanelDelegate alloc] initWithTest:request.shouldEnable];
  panel.delegate = delegate;
  panel.title = shownString(request.title);
  panel.message = shownString(request.message);

  [NSApp activateIgnoringOtherApps:YES];
  if ([panel runModal] != NSModalResponseOK) return std::nullopt;
  return fileUrlOf(panel.URL);
}

}  // namespace harbor
