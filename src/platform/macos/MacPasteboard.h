// The general pasteboard.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/Pasteboard.h"

namespace harbor {

class MacPasteboard : public Pasteboard {
 public:
  explicit MacPasteboard(const Workspace& workspace) : workspace_(workspace) {}

  // Contents are read when they are asked for and never held, so a wish has no effect, nor is anything read
  // that is left out.
  Subscription want(Wants) override { return {}; }
  Subscription leaveOut(Refusal) override { return {}; }

  std::int64_t changeCount() const override;
  bool hasRichText() const override;
  void readRichText(std::function<void(const std::string& plainText)> done) override;
  bool isConcealed() const override;
  std::optional<std::string> string() const override;
  // The pasteboard does not tell who wrote: the frontmost application now.
  std::optional<RunningApplication> sourceApplication() const override;
  void clearContents() override;
  void setString(std::string_view text) override;

 private:
  const Workspace& workspace_;
  NSPasteboard* pasteboard_ = NSPasteboard.generalPasteboard;
};

}  // namespace harbor
