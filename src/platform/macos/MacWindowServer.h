// The window server by Core Graphics.
#pragma once

#import <CoreGraphics/CoreGraphics.h>

#include "platform/WindowServer.h"

namespace harbor {

// A picture that Core Graphics took.
class MacPicture : public Picture {
 public:
  // Takes the image over.
  explicit MacPicture(CGImageRef image) : image_(image) {}
  MacPicture(const MacPicture&) = delete;
  MacPicture& operator=(const MacPicture&) = delete;
  ~MacPicture() override { CGImageRelease(image_); }

  CGImageRef image() const { return image_; }

 private:
  CGImageRef image_;
};

class MacWindowServer : public WindowServer {
 public:
  Rect mainDisplayBounds() const override;
  Rect mainScreenFrame() const override;
  WindowLevel levelForKey(WindowLevelKey key) const override;
  std::vector<WindowInfo> windowList(WindowListOptions options) const override;
  // The window that is in use is in front of all others here.
  WindowNumber windowInUse() const override { return kNoWindow; }
  WindowNumber windowNumberAtPoint(Point point, WindowNumber below = kNoWindow) const override;
  std::shared_ptr<const Picture> pictureOfWindow(WindowNumber number) const override;
  void requestPictures() override;
  bool mayWithholdPictures() const override { return true; }
  std::optional<std::string> wallpaperUnavailableReason() const override { return std::nullopt; }
  Subscription onDisplayChange(std::function<void()> handler) override;
  // The window server does not tell; nothing is ever reported.
  Subscription onFrontWindowChange(std::function<void()> handler) override;
};

}  // namespace harbor
