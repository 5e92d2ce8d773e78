// Colour panes: a container with a colour well in a fixed window.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/ColourPane.h"
#include "platform/macos/ViewWindow.h"

@class HarborActionTarget;

namespace harbor {

class MacColourPane : public ColourPane {
 public:
  explicit MacColourPane(ColourPaneEvents events);
  ~MacColourPane() override;

  void setContainer(const Colour& background, double cornerRadius) override;
  void setWellColour(const Colour& colour) override;
  Colour wellColour() const override;
  void setTitle(const std::string& title) override;
  void showWindow() override;
  void orderFrontRegardless() override;

 private:
  NSView* viewContainerView1_;
  NSColorWell* customColorWell_;
  HarborActionTarget* customColorChanged_;
  ViewWindow window_;
};

class MacColourPanes : public ColourPanes {
 public:
  std::unique_ptr<ColourPane> make(ColourPaneEvents events) override;
};

}  // namespace harbor
