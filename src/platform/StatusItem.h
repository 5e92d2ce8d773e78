// The icon in the status bar (tray).
#pragma once

#include <functional>
#include <string_view>

#include "platform/MenuItem.h"

namespace harbor {

class StatusItem {
 public:
  // How an image follows the bar's colours: a template image is drawn in the bar's own text colour.
  enum class ImageMode { template_, original };

  virtual ~StatusItem() = default;

  // Whether there is a button to configure; without one the two calls below do nothing.
  virtual bool hasButton() const = 0;

  // The button's image, by its name among the application's resources.
  virtual void setImage(std::string_view name, ImageMode mode) = 0;

  // Called on left-mouse-up and on right-mouse-up, and whenever the bar or a second start of the program asks
  // for the menu: the handler answers with popUp before it returns.
  virtual void setAction(std::function<void()> clicked) = 0;

  // Shows the menu at the item; `didClose`, where it is not empty, runs once, after the menu has closed
  // (after the chosen item's action has been started). `offset` is the place relative to the button, in the
  // button's coordinates; a platform whose bar decides where a menu goes ignores it.
  struct Offset {
    double fractionOfWidth = 0.0;
    double y = 0.0;
  };
  virtual void popUp(Menu menu, Offset offset, std::function<void()> didClose) = 0;
};

}  // namespace harbor
