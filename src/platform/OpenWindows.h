// The windows of the program that are open. While there is one, the program is a regular application, so that
// the window takes the keyboard and shows in the task bar; with the last one it becomes an accessory again.
#pragma once

#include "base/Subscription.h"
#include "platform/Application.h"

namespace harbor {

class OpenWindows {
 public:
  explicit OpenWindows(Application& application) : application_(application) {}

  // For a window whose view has loaded: makes the program a regular application and brings it to the front.
  // The window holds the result while it is open. Dropping it stands for the view's disappearing: when no
  // window of any tool is left, the program becomes an accessory and is activated.
  Subscription open();

 private:
  Application& application_;
  int count_ = 0;
};

}  // namespace harbor
