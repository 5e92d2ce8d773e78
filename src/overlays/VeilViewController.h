// The preference pane of a veil: one colour well. Choosing a colour there selects the custom colour, stores
// it and re-colours the veil at once.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/Colour.h"
#include "base/Subscription.h"
#include "platform/ColourPane.h"
#include "platform/OpenWindows.h"
#include "platform/PropertyListCoder.h"
#include "platform/SettingsStore.h"

namespace harbor {

// What a pane works with.
struct PaneSurroundings {
  SettingsStore& settings;
  const PropertyListCoder& coder;
  OpenWindows& openWindows;
  ColourPanes& panes;
};

class VeilViewController {
 public:
  struct Binding {
    const char* windowTitle;
    std::string& colourTitle;  // the model's fields, and the keys that they are stored under
    const char* colourTitleKey;
    Colour& customColour;
    const char* customColourKey;
  };

  // Makes the pane and loads its view, which makes the program a regular application. `didDisappear` is
  // called once, after the user closed the window, and may destroy this object.
  VeilViewController(const PaneSurroundings& surroundings, Binding binding, std::function<void()> applyVeil,
                     std::function<void()> didDisappear);
  VeilViewController(const VeilViewController&) = delete;
  VeilViewController& operator=(const VeilViewController&) = delete;

  // Whether the platform could make the pane; without one nothing else may be called.
  bool hasView() const { return pane_ != nullptr; }
  void showWindow();
  void orderFrontRegardless() { pane_->orderFrontRegardless(); }

 private:
  void viewDidLoad();
  void customColorChanged();
  void viewDidDisappear();

  SettingsStore& settings_;
  const PropertyListCoder& coder_;
  OpenWindows& openWindows_;
  Binding binding_;
  std::function<void()> applyVeil_;
  std::function<void()> didDisappear_;
  Subscription openWindow_;  // ends after the pane has gone
  std::unique_ptr<ColourPane> pane_;
};

// Opens the pane of the model into the field, or brings the one that the field holds to the front. Closing
// the window empties the field and then lets the program become an accessory again. The field must outlive
// the pane.
template <typename ViewController, typename Model>
void openOrBringForward(std::unique_ptr<ViewController>& field, const PaneSurroundings& surroundings,
                        Model& model, std::function<void()> applyVeil) {
  if (field) {
    field->orderFrontRegardless();
    return;
  }
  auto opened = std::make_unique<ViewController>(surroundings, model, std::move(applyVeil),
                                                 [&field] { field.reset(); });
  if (!opened->hasView()) return;
  opened->showWindow();
  field = std::move(opened);
  field->orderFrontRegardless();
}

}  // namespace harbor
