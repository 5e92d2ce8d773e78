// A window of the program around a view that is built in code: what the colour panes, the preferences and the
// review window share.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

#include "base/Colour.h"

@class HarborWindowDelegate;

namespace harbor {

class ViewWindow {
 public:
  enum class Sizing { fixed, resizable };

  // Not shown yet. `viewDidDisappear` comes once, after the user closed the window; the window may be
  // destroyed from within.
  ViewWindow(NSViewController* controller, Sizing sizing, std::function<void()> viewDidDisappear);
  // Closes the window without reporting anything.
  ~ViewWindow();
  ViewWindow(const ViewWindow&) = delete;
  ViewWindow& operator=(const ViewWindow&) = delete;

  void setTitle(const std::string& title);
  void showWindow();
  void orderFrontRegardless();

 private:
  NSWindow* window_;
  NSWindowController* windowController_;
  HarborWindowDelegate* delegate_;
};

// A container view with the background and the corner radius, in points.
void setContainer(NSView* view, const Colour& background, double cornerRadius);

// Places the view in the other one with the same distance, in points, from each edge.
void pinEdges(NSView* view, NSView* outer, double distance);

}  // namespace harbor

// A view controller whose view is made in code.
@interface HarborViewController : NSViewController
- (instancetype)initWithView:(NSView*)view;
@end
