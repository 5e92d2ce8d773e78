// One overlay as a borderless NSWindow.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/OverlayWindows.h"

@class HarborDrawingView;

namespace harbor {

class MacOverlayWindow : public OverlayWindow {
 public:
  explicit MacOverlayWindow(const OverlayWindowSpec& spec);
  ~MacOverlayWindow() override;

  void setBackgroundColour(const Colour& colour) override;
  void setIgnoresMouseEvents() override;
  void setLevel(WindowLevel level) override;
  void setCollectionBehaviour(CollectionBehaviour behaviour) override;
  void setFrame(const Rect& frame) override;
  void setContents(const Image& image) override;
  void setDrawing(const Drawing& drawing, const Rect& frame) override;
  void orderFrontRegardless() override;
  void orderBelow(WindowNumber number) override;
  void orderOut() override;
  void onDisplaced(std::function<void()>) override {}

 private:
  NSWindow* window_;
  HarborDrawingView* drawingView_ = nil;  // made with the first drawing
};

}  // namespace harbor
