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

  // The same as a click on the icon.
  void openMenu();

 private:
  NSStatusItem* item_;
  HarborStatusItemTarget* target_;
  bool isOpen_ = false;
};

}  // namespace harbor
