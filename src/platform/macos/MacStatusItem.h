// The icon in the menu bar.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/StatusItem.h"

@class HarborStatusItemTarget;

namespace harbor {

class MacStatusItem : public StatusItem {
 public:
  MacStatusItem();
  ~MacStatusItem() override;

  bool hasButton() const override;
  void setImage(std::string_view name, ImageMode mode) override;
  void setAction(std::function<void()> clicked) override;
  void popUp(Menu menu, Offset offset, std::function<void()> didClose) override;

 private:
  NSStatusItem* item_;
  HarborStatusItemTarget* target_;
};

}  // namespace harbor
