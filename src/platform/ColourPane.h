// A small window whose one control is a colour well. It shows what it is told and reports what the user does.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/Colour.h"

namespace harbor {

// What a user does to a pane; called on the main thread. The pane may be destroyed from within
// viewDidDisappear.
struct ColourPaneEvents {
  std::function<void()> colourChanged;     // the user chose a colour in the well; also while still choosing
  std::function<void()> viewDidDisappear;  // the user closed the window; comes once
};

class ColourPane {
 public:
  virtual ~ColourPane() = default;

  // The background and the corner radius, in points, of the container that the well lies in.
  virtual void setContainer(const Colour& background, double cornerRadius) = 0;
  // Shows the colour; that reports no change.
  virtual void setWellColour(const Colour& colour) = 0;
  virtual Colour wellColour() const = 0;

  virtual void setTitle(const std::string& title) = 0;
  // Shows the window.
  virtual void showWindow() = 0;
  // Puts the shown window in front of all others of its level.
  virtual void orderFrontRegardless() = 0;
};

class ColourPanes {
 public:
  virtual ~ColourPanes() = default;

  // A pane whose window cannot be resized and is not shown yet; null when it cannot be made. Destroying it
  // closes its window without reporting anything.
  virtual std::unique_ptr<ColourPane> make(ColourPaneEvents events) = 0;
};

}  // namespace harbor
