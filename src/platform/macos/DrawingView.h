// A view that shows a drawing of the core, scaled to its bounds.
#pragma once

#import <AppKit/AppKit.h>

#include "base/Drawing.h"

namespace harbor {

// Draws in the current context of a flipped view.
void draw(const Drawing& drawing, NSRect frame);

}  // namespace harbor

@interface HarborDrawingView : NSView
- (void)setDrawing:(const harbor::Drawing&)drawing;
@end
