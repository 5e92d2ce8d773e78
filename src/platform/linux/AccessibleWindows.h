// What the toolkit tells screen readers of the program's own windows: that they are windows, and not mere
// places in which controls lie.
#pragma once

namespace harbor {

// For every window that the program shows from now on.
void installAccessibleWindows();

}  // namespace harbor
