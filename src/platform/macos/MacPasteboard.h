// The general pasteboard.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/Pasteboard.h"

namespace harbor {

class MacPasteboard : public Pasteboard {
 public:
  explicit MacPasteboard(const Workspace& workspace) : workspace_(workspace) {}

  std::int64_t changeCount() const override;
  bool hasRichText() const override;
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
